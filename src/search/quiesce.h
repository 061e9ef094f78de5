// The quiescence search: captures, some quiet checks, and all ways out of check, until the position
// is calm enough for the static evaluation.
#pragma once

#include "search/types.h"

namespace zar {

// Score of the position for the side to move. `qdepth` is 0 at the horizon and falls by one a ply
// (not in check); the variation goes to `pv_out`, whose first move the caller has cleared.
[[nodiscard]] Score qsearch(Board& board, Score alpha, Score beta, int qdepth, int ply,
                            Line& pv_out, int thread);

// Draw by rule, or by material that nobody can win with.
[[nodiscard]] bool is_draw(Board& board, int thread);

// Narrows the window to the scores that are possible at this ply; true when nothing is left of it,
// with the score to return.
[[nodiscard]] bool mate_distance_cuts(Board& board, Score& alpha, Score& beta, int ply,
                                      Score& score);

}  // namespace zar
