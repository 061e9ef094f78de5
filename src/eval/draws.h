// Positions with at most four men that are known draws, so that the search need not look further.
#pragma once

#include "board/board.h"

namespace zar {

// False means only that no draw is known. Draws by bare material come with every move right; king
// and pawn against king by the rules of opposition; bishop and rook pawn against a king that holds
// the wrong corner.
[[nodiscard]] bool is_recognised_draw(const Board& board, int thread);

}  // namespace zar
