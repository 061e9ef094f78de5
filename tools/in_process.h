// The engine's search within the tools: one thread, full strength, no opening book.
#pragma once

#include <cstdint>
#include <string>

#include "board/board.h"
#include "board/types.h"

namespace zar::tools {

// How long to search: to a depth in plies, or for a time in seconds when the depth is 0.
struct Effort {
    int depth = 0;
    double seconds = 0;
};

// The deepest iteration that the engine makes.
constexpr int kDeepest = 49;

// Ready to set positions up and to search, with so many best lines (1..4).
void in_process_start(int lines);

// Searches with an empty hash table; the results are then in search_thread(0). Hooks may be set
// before.
void in_process_search(Board& board, const Effort& effort);

// The nodes of all threads in the search that has ended.
[[nodiscard]] std::uint64_t in_process_nodes();

// "+0.33" in pawns or "#-3" in moves to mate, White's view of a score of the side to move.
[[nodiscard]] std::string score_text(Score score, Color turn);

}  // namespace zar::tools
