// From "go" to a result: the start of a search, iterative deepening with aspiration windows and
// several principal variations, and the search of the root moves.
#pragma once

#include "search/types.h"

namespace zar {

// Searches the position under search_shared.limits until a stop rule ends it, with all threads, or
// takes a move from the opening book. The results are then in the threads' records; with no legal
// move they stay empty. The board is restored. hash_table and the evaluation's tables must be
// allocated and the workers created.
void search_run(Board& board);

// What a thread has found: of the lines that its newest iteration has searched, or of the iteration
// before while it has searched none, the one with the highest score, the earlier one of equals.
// That is the line which the front end shows first. Line 0 of an empty record before there is a
// result.
[[nodiscard]] const RootResult& search_result(int thread);

// One thread's search of search_shared's root, by iterative deepening. Returns when it has ended or
// has been abandoned.
void thread_search(int thread);

}  // namespace zar
