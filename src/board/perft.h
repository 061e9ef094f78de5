// Counting the leaves of the legal move tree, the classic test of a move generator.
#pragma once

#include <cstdint>

#include "board/board.h"

namespace zar {

// Number of legal move sequences of exactly `depth` plies (0 gives 1). Restores the board. The key
// history must have room for `depth` entries.
[[nodiscard]] std::uint64_t perft(Board& board, int depth);

}  // namespace zar
