// What the option "Difficulty Level" (0 to 10, 10 is full strength) means for the search: how deep
// it may go, whether it may prune, whether it may use the book. What it means for the evaluation is
// told in eval/weights.h. The header includes nothing of the engine and is open to every layer.
#pragma once

namespace zar {

constexpr int kFullLevel = 10;

// The level now set, held within -1000..1000; levels outside 0..10 are taken as they are.
[[nodiscard]] int difficulty_level();

// Iterative deepening stays below this depth in plies, 2..100. At full strength the main thread
// (thread 0) stops sooner than the workers.
[[nodiscard]] constexpr int difficulty_depth_limit(int level, int thread) {
    if (level == kFullLevel) {
        return thread == 0 ? 50 : 100;
    }
    const int limit = (200 * level + 50) / 100 + 2;
    return limit < 2 ? 2 : (limit > 100 ? 100 : limit);
}

// May the search use null moves, verification, futility, delta pruning and late-move reductions?
[[nodiscard]] constexpr bool difficulty_allows_selective_search(int level) { return level > 8; }

// May the engine answer from its opening book?
[[nodiscard]] constexpr bool difficulty_allows_book(int level) { return level > 3; }

}  // namespace zar
