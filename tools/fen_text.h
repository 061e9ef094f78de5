// Positions as the tools read and write them.
#pragma once

#include <string>
#include <vector>

#include "board/board.h"
#include "board/fen.h"

namespace zar::tools {

// The position of a command line, where the fields of a FEN come as one word or as several; the
// start position when there are none. An empty word is a bad FEN like any other.
[[nodiscard]] inline std::string fen_of_words(const std::vector<std::string>& words) {
    if (words.empty()) {
        return std::string(kStartFen);
    }
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

[[nodiscard]] inline std::string fen_of(const Board& board) {
    char text[kFenSize];
    board_to_fen(board, text, kFenSize);
    return text;
}

}  // namespace zar::tools
