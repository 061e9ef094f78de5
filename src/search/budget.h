// When the running search stops: the poll that the searches call every few thousand nodes, and the
// rules applied after each completed line. The budget itself is computed by "go".
#pragma once

#include <algorithm>

#include "search/types.h"

namespace zar {

constexpr int kPollInterval = 4096;  // nodes

// Limits, counters and flags as they are before a search; results and tables stay.
void search_reset();

// Reads the thread's stopwatch into its record.
void elapsed_update(int thread);

// The nodes of all threads as far as one of them can tell: its own, times the number of threads.
[[nodiscard]] inline std::uint64_t nodes_of_all_threads(const SearchThread& self) {
    return static_cast<std::uint64_t>(search_shared.thread_count) * self.nodes;
}

// Looks at input and limits, and leaves the search by a jump to the thread's return point when it
// is to end at once. Workers only look at their `stop`.
void poll(int thread);

// Counts a node at this ply and polls when it is time.
inline void count_node(int ply, int thread) {
    SearchThread& self = search_thread(thread);
    self.nodes += 1;
    self.selective_depth = std::max(self.selective_depth, ply);
    if (--self.poll_countdown <= 0) {
        self.poll_countdown = kPollInterval;
        poll(thread);
    }
}

// Clears what is judged line by line.
void budget_line_started();

// A root move other than the first has raised alpha: think on.
void budget_note_new_best();

// Compares a score just reported with the one accepted last: a drop by half a pawn or more lets the
// search think on, a recovery takes that back. Nothing is judged in the first iteration.
void budget_note_score(Score score, int depth);

// Judges after the first iteration whether one move stands out.
void budget_note_first_iteration(const MoveList& root);

// Applies the stop rules after an accepted score; true when the search ends here.
[[nodiscard]] bool budget_line_done(Score score, int depth, bool last_line);

}  // namespace zar
