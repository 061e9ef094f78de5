// Positions from outside, which may be wrong.
#pragma once

#include <string>

#include "board/board.h"

namespace zar::tools {

// Sets up a position. Empty when it is one, else the code of the fault; the board is then not to
// be used. Warnings of the engine are passed over.
[[nodiscard]] std::string position_error(Board& board, const std::string& fen);

// The same, with what is wrong in words instead of the code.
[[nodiscard]] std::string position_fault(Board& board, const std::string& fen);

}  // namespace zar::tools
