// Positions with at most four men that are known draws, so that the search need not look further.
#pragma once

#include "board/board.h"

namespace zar {

// is_recognised_draw for at most four men.
[[nodiscard]] bool few_men_are_drawn(const Board& board, int thread);

// False means only that no draw is known. Draws by bare material come with every move right; king
// and pawn against king by the rules of opposition; bishop and rook pawn against a king that holds
// the wrong corner.
[[nodiscard]] inline bool is_recognised_draw(const Board& board, int thread) {
    constexpr int kMostMen = 4;
    return board.total_count <= kMostMen && few_men_are_drawn(board, thread);
}

}  // namespace zar
