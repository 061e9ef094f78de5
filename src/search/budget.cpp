#include "search/budget.h"

#include <algorithm>
#include <csetjmp>

#include "frontend/option.h"
#include "platform/clock.h"
#include "search/parameters.h"

namespace zar {

namespace {

constexpr Score kScoreDrop = 49;
constexpr Score kEasyMargin = 149;
constexpr double kEasyShare = 0.6;    // of the target, for a move that stood out from the start
constexpr double kStableShare = 0.4;  // ... for a search that has not changed its mind
constexpr double kHashfullInterval = 1.0;     // seconds
constexpr double kFirstIterationGrace = 0.2;  // seconds

[[noreturn]] void abandon(SearchThread& self) { std::longjmp(self.return_point, 1); }

bool nodes_are_spent(const SearchThread& self) {
    const SearchLimits& limits = search_shared.limits;
    return limits.limit_nodes_set && nodes_of_all_threads(self) >= limits.limit_nodes;
}

void apply_limits(const SearchThread& self) {
    const SearchLimits& limits = search_shared.limits;
    RootStability& stability = search_shared.stability;
    if (limits.limit_depth_set && self.iteration_depth > limits.limit_depth) {
        stability.stop_search = true;
    }
    if (nodes_are_spent(self)) {
        stability.stop_search = true;
    }
    if (!limits.limit_time_set) {
        return;
    }
    const double elapsed = self.elapsed;
    if (elapsed >= limits.time_limit) {
        stability.stop_search = true;
    }
    if (elapsed >= limits.time_target && !stability.score_dropped &&
        !stability.score_dropped_last && self.root_index == 0) {
        stability.stop_search = true;
    }
}

// The first iteration may run on for a moment when the hard limit has passed or "stop" has come, so
// that nearly every search has seen all moves. With many queens on the board it could take minutes.
bool first_iteration_is_over(const SearchThread& self, bool stopped) {
    const SearchLimits& limits = search_shared.limits;
    const double elapsed = self.elapsed;
    const bool out_of_time =
        limits.limit_time_set && !limits.limit_infinite && elapsed >= limits.time_limit;
    if (!stopped && !out_of_time) {
        return false;
    }
    double& since = search_shared.stability.overdue_time;
    since = std::min(since, elapsed);
    return elapsed >= since + kFirstIterationGrace;
}

}  // namespace

void search_reset() {
    search_shared.limits = SearchLimits{};
    search_shared.limits.start_time = clock_wall_seconds();
    search_shared.stability = RootStability{};
    for (SearchThread& thread : search_threads) {
        thread.nodes = 0;
        thread.selective_depth = 0;
        thread.poll_countdown = 0;  // the first node looks at the input
        thread.hashfull_time = 0;
        thread.abort_allowed = false;
        thread.elapsed = 0;
        thread.reduce_one = option_get_bounded("ZARXReduceOne");
        thread.check_plies_limit = 1 - thread.reduce_one;
        thread.stop.store(false, std::memory_order_relaxed);
    }
}

void elapsed_update(int thread) {
    SearchThread& self = search_thread(thread);
    self.elapsed = stopwatch_elapsed(self.stopwatch);
}

void poll(int thread) {
    SearchThread& self = search_thread(thread);
    if (thread != 0) {
        if (self.stop.load(std::memory_order_relaxed)) {
            abandon(self);
        }
        return;
    }
    elapsed_update(thread);
    if (self.elapsed - self.hashfull_time >= kHashfullInterval) {
        search_shared.hooks.report_hashfull();
        self.hashfull_time = self.elapsed;
    }
    const bool stopped = search_shared.hooks.poll_input();
    apply_limits(self);
    if (!self.abort_allowed && !first_iteration_is_over(self, stopped)) {
        return;
    }
    if (stopped || (search_shared.stability.stop_search && !search_shared.limits.limit_infinite)) {
        abandon(self);
    }
}

void budget_line_started() {
    search_shared.stability.score_dropped = false;
    search_shared.stability.best_changed = false;
}

void budget_note_new_best() {
    search_shared.stability.best_changed = true;
    search_shared.stability.easy_move = false;
    search_shared.stability.stop_search = false;
}

void budget_note_score(Score score, int depth) {
    RootStability& stability = search_shared.stability;
    if (depth <= 1) {
        return;
    }
    stability.score_dropped = score < stability.previous_score - kScoreDrop;
    if (stability.score_dropped) {
        stability.easy_move = false;
        stability.stop_search = false;
    }
}

void budget_note_first_iteration(const MoveList& root) {
    search_shared.stability.easy_move =
        root.size > 1 && root.value[0] > root.value[1] + kEasyMargin;
}

bool budget_line_done(Score score, int depth, bool last_line) {
    const SearchThread& self = search_thread(0);
    const SearchLimits& limits = search_shared.limits;
    RootStability& stability = search_shared.stability;
    if (depth >= 2) {
        stability.score_dropped_last = stability.score_dropped;
        stability.score_dropped = false;
    }
    stability.previous_score = score;
    if (limits.limit_depth_set && last_line && limits.limit_depth <= depth) {
        stability.stop_search = true;
    }
    if (nodes_are_spent(self)) {
        stability.stop_search = true;
    }
    if (limits.limit_time_set) {
        const double elapsed = self.elapsed;
        const bool dropped = stability.score_dropped_last;
        if ((elapsed >= limits.time_target && !dropped) ||
            (elapsed >= kEasyShare * limits.time_target && stability.easy_move) ||
            (elapsed >= kStableShare * limits.time_target && !dropped && !stability.best_changed)) {
            stability.stop_search = true;
        }
    }
    return self.stop.load(std::memory_order_relaxed) ||
           (stability.stop_search && !limits.limit_infinite);
}

}  // namespace zar
