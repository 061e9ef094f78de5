// The hook for a database of endgames, which no front end sets yet.
#pragma once

#include "board/board.h"
#include "search/types.h"

namespace zar {

// Asks the database, when there is one: not too deep in the tree for positions with all its men,
// and near the root only after a capture or a pawn move has brought a new ending about. True when
// it knows the position; `score`, in centipawns for the side to move, is set only then.
[[nodiscard]] bool probe_endgame(Board& board, int ply, Score& score, int thread);

}  // namespace zar
