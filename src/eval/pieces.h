// Mobility, outposts, rooks and queens on good files and ranks, and pieces gathered before the
// enemy king.
#pragma once

#include "board/board.h"
#include "eval/pawns.h"
#include "eval/score.h"

namespace zar {

// The terms of one colour's pieces, its own view, before the group's scale. `press_king`: the enemy
// king needs shelter, so rooks near its file count.
[[nodiscard]] PackedPair evaluate_pieces(const Board& board, Color color, const PawnRecord& pawns,
                                         bool press_king);

}  // namespace zar
