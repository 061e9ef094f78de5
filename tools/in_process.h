// The engine's search within the tools, without an opening book.
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

// The deepest iteration that the engine makes, at full strength.
constexpr int kDeepest = 49;

// The engine's options of these names.
struct Settings {
    int threads = 1;  // 1..4
    int hash = 256;   // megabytes, 16..1024
    int level = 10;   // Difficulty Level, 0..10
    int lines = 1;    // MultiPV, 1..4
};

// Ready to set positions up and to search.
void in_process_start(const Settings& settings);

// Ends the threads.
void in_process_end();

// Searches with an empty hash table; the results are then in search_thread(0). Hooks may be set
// before.
void in_process_search(Board& board, const Effort& effort);

// The nodes of all threads in the search that has ended.
[[nodiscard]] std::uint64_t in_process_nodes();

// "+0.33" in pawns or "#-3" in moves to mate, White's view of a score of the side to move.
[[nodiscard]] std::string score_text(Score score, Color turn);

}  // namespace zar::tools
