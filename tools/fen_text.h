// Positions as the tools write them.
#pragma once

#include <string>

#include "board/board.h"
#include "board/fen.h"

namespace zar::tools {

[[nodiscard]] inline std::string fen_of(const Board& board) {
    char text[kFenSize];
    board_to_fen(board, text, kFenSize);
    return text;
}

}  // namespace zar::tools
