// Misplaced pieces on fixed squares: bishops trapped by pawns in the enemy's corners, bishops
// behind their own blocked centre pawns, rooks shut in by their king.
#pragma once

#include "board/board.h"
#include "eval/score.h"

namespace zar {

// White's view. The group has no scale.
[[nodiscard]] ScorePair evaluate_patterns(const Board& board);

}  // namespace zar
