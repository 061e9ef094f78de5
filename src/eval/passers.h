// Passed pawns: how far they have come, whether they can be stopped, and how near the kings are.
#pragma once

#include "board/board.h"
#include "eval/pawns.h"
#include "eval/score.h"

namespace zar {

// The bonus of one colour's passed pawns, its own view, before the group's scale.
[[nodiscard]] ScorePair evaluate_passers(const Board& board, Color color, const PawnRecord& pawns);

}  // namespace zar
