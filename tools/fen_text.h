// Positions as the tools read and write them.
#pragma once

#include <string>
#include <vector>

#include "board/board.h"
#include "board/fen.h"

namespace zar::tools {

// The position of a command line, where the fields of a FEN come as one word or as several; the
// start position when there are none.
[[nodiscard]] inline std::string fen_of_words(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text.empty() ? std::string(kStartFen) : text;
}

[[nodiscard]] inline std::string fen_of(const Board& board) {
    char text[kFenSize];
    board_to_fen(board, text, kFenSize);
    return text;
}

}  // namespace zar::tools
