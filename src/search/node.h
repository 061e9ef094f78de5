// The main search below the root: alpha-beta with node types, transposition table, null moves,
// razoring, internal iterative deepening, extensions, pruning and reductions.
#pragma once

#include "search/types.h"

namespace zar {

// What is expected of a node. A cut node becomes an all node once a move has failed to cut, and the
// children of a node of one kind are of the negated kind.
using NodeType = int;
constexpr NodeType kPvNode = 0;
constexpr NodeType kCutNode = 1;
constexpr NodeType kAllNode = -1;

// Score of the position for the side to move, searched `depth` plies deep (below 1: quiescence) at
// `ply` plies from the root. The variation goes to `pv_out`. `ext_flag` tells that the move leading
// here was extended for being a capture.
[[nodiscard]] Score search(Board& board, Score alpha, Score beta, int depth, int ply, Line& pv_out,
                           NodeType node_type, bool ext_flag, int thread);

}  // namespace zar
