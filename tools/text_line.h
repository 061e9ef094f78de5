// Lines of a text from outside, of whatever system it comes.
#pragma once

#include <istream>
#include <string>
#include <string_view>

namespace zar::tools {

// Reads the next line without its line end, be it "\n" or "\r\n", and counts it; false when there
// is none. The byte-order mark that some editors put in front of UTF-8 is no part of the first
// line.
[[nodiscard]] inline bool next_line(std::istream& text, std::string& line, int& number) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (!std::getline(text, line)) {
        return false;
    }
    ++number;
    if (number == 1 && line.starts_with(byte_order_mark)) {
        line.erase(0, byte_order_mark.size());
    }
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return true;
}

// A text of unknown origin as a part of a message: cut when it is long, and without characters that
// a terminal might take for commands.
[[nodiscard]] inline std::string printable(std::string_view text) {
    constexpr std::size_t most = 100;
    std::string shown(text.substr(0, most));
    for (char& letter : shown) {
        const auto code = static_cast<unsigned char>(letter);
        if (code < ' ' || code == 0x7F) {
            letter = '?';
        }
    }
    return shown + (text.size() > most ? "..." : "");
}

[[nodiscard]] inline std::string in_quotes(std::string_view text) {
    return "'" + printable(text) + "'";
}

}  // namespace zar::tools
