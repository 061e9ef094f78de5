// A fixed set of positions, searched to a fixed depth. The total of nodes is the engine's
// signature: it changes exactly when the search or the evaluation does.
#pragma once

#include <span>
#include <string_view>

namespace zar {

constexpr int kBenchDepth = 8;

// FEN texts: openings, middlegames, tactics, and every kind of ending.
[[nodiscard]] std::span<const std::string_view> bench_positions();

// Searches all positions to `depth` plies with one thread, no book, and 16 MB of hash cleared
// before each; prints a line for each and, last, "N nodes M nps". startup_tables must have run.
void bench_run(int depth);

}  // namespace zar
