#include "book_lines.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>

#include "board/fen.h"
#include "book_file.h"

namespace zar::tools {

namespace {

// A number from 1 to 65535 with blanks around it, and nothing else.
std::optional<int> weight_of(const std::string& text) {
    std::istringstream words(text);
    std::string word;
    std::string rest;
    words >> word >> rest;
    int weight = 0;
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, weight);
    if (error != std::errc{} || stop != end || !rest.empty() || weight < 1 ||
        weight > kHighestWeight) {
        return std::nullopt;
    }
    return weight;
}

// Plays the moves from the start position and adds each.
void play(BookText& text, const std::string& line, int weight) {
    static Board board;
    board_from_fen(board, kStartFen);
    std::istringstream words(line);
    int plies = 0;
    for (std::string word; plies < text.most_plies && words >> word;) {
        const std::string_view move = book_word(word);
        if (move.empty()) {
            continue;
        }
        if (const std::string fault = book_add_move(text, move, weight, board); !fault.empty()) {
            book_fault(text, fault + ", the rest of the line is dropped");
            return;
        }
        ++plies;
    }
}

}  // namespace

void book_add_line(BookText& text, std::string line) {
    line.erase(std::min(line.find('#'), line.size()));
    int weight = 1;
    if (const std::size_t colon = line.find(':'); colon != std::string::npos) {
        const std::optional<int> found = weight_of(line.substr(0, colon));
        if (!found) {
            book_fault(text, "the weight is no number from 1 to 65535, the line is dropped");
            return;
        }
        weight = *found;
        line.erase(0, colon + 1);
    }
    play(text, line, weight);
}

}  // namespace zar::tools
