// What a sequence of captures on one square is worth, found by lifting men off a board of letters.
#pragma once

#include "board/board.h"
#include "board/move.h"

namespace zar::test {

// Centipawns that the mover wins or loses when both sides then capture on the to-square with their
// least valuable man as long as it pays. Of equal men takes first: the one that stood behind the
// mover (behind the man taken en passant), then those that see the square already, pieces in the
// order of their list and the pawn of the higher file first, then those that others uncover, in the
// order in which they come into sight.
[[nodiscard]] Score swap_off(Move move, const Board& board);

}  // namespace zar::test
