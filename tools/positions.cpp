#include "positions.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "commands.h"
#include "message.h"
#include "platform/terminal.h"
#include "position_text.h"
#include "text_line.h"

namespace zar::tools {

namespace {

// The next line that has a position; false when there is none.
bool next_text(PositionInput& input) {
    if (!input.from_lines) {
        ++input.line;
        return input.line == 1;
    }
    while (next_line(std::cin, input.text, input.line)) {
        const std::size_t first = input.text.find_first_not_of(" \t");
        if (first != std::string::npos && input.text[first] != '#') {
            return true;
        }
    }
    return false;
}

}  // namespace

PositionInput positions_of(const std::vector<std::string>& words) {
    PositionInput input;
    input.from_lines = words.empty() ? input_is_redirected() : words.size() == 1 && words[0] == "-";
    input.text = "startpos";
    if (!words.empty()) {
        input.text.clear();
        for (const std::string& word : words) {
            input.text += (input.text.empty() ? "" : " ") + word;
        }
    }
    return input;
}

bool positions_next(PositionInput& input, Board& board) {
    while (next_text(input)) {
        const std::string fault = position_read(board, input.text);
        if (fault.empty()) {
            ++input.count;
            return true;
        }
        ++input.faults;
        complain(input.from_lines
                     ? kStandardInput + (":" + std::to_string(input.line)) + ": " + fault
                     : fault);
    }
    return false;
}

void positions_end(const PositionInput& input) {
    if (input.from_lines) {
        fail_if_input_is_broken(kBadInput);
    }
    if (input.count == 0 && input.faults == 0) {
        complain(std::string(kStandardInput) +
                 ": no position in it (startpos is the start position)");
    }
    if (input.count == 0 || input.faults > 0) {
        throw CLI::RuntimeError(kBadInput);
    }
}

}  // namespace zar::tools
