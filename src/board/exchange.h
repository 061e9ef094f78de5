// Static exchange evaluation: what a sequence of captures on one square is worth.
#pragma once

#include "board/board.h"
#include "board/move.h"

namespace zar {

// Centipawns that the mover (the colour of the man on the from-square, whoever is to move) wins or
// loses by this move when both sides then capture on the to-square with their least valuable man as
// long as it pays. Pins, checks and promotions inside the exchange are not considered. The move may
// be any with a man on its from-square.
[[nodiscard]] Score see(Move move, const Board& board);

// Is see(move, board) >= threshold? Cheaper, since it looks for the next capture only while the
// answer is open: most exchanges are settled by the first.
[[nodiscard]] bool see_at_least(Move move, const Board& board, Score threshold);

}  // namespace zar
