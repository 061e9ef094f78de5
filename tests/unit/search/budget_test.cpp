#include "search/budget.h"

#include <csetjmp>

#include "gtest/gtest.h"
#include "support/search_support.h"

namespace zar {
namespace {

int hashfull_lines = 0;
int polls = 0;
bool input_stops = false;

bool poll_leaves(int thread) {
    if (setjmp(search_thread(thread).return_point) != 0) {
        return true;
    }
    poll(thread);
    return false;
}

// Limits and stability are those of the main thread, which has a result unless a test says else.
class Budget : public test::SearchTest {
  protected:
    void SetUp() override {
        SearchTest::SetUp();
        hashfull_lines = 0;
        polls = 0;
        input_stops = false;
        search_shared.hooks.report_hashfull = [] { ++hashfull_lines; };
        search_shared.hooks.poll_input = [] {
            ++polls;
            return input_stops;
        };
        self.abort_allowed = true;
        set_elapsed(0);
        self.root_index = 0;
    }

    void TearDown() override {
        search_reset();
        SearchTest::TearDown();
    }

    void limit_times(double target, double limit) {
        limits.limit_time_set = true;
        limits.time_target = target;
        limits.time_limit = limit;
    }

    void limit_depth(int depth) {
        limits.limit_depth_set = true;
        limits.limit_depth = depth;
    }

    // budget_line_done at this time; every call from the same state.
    bool ends_at(double seconds, int depth = 6, bool last_line = true) {
        const RootStability before = stability;
        self.elapsed = seconds;
        const bool ends = budget_line_done(0, depth, last_line);
        stability = before;
        return ends;
    }

    SearchThread& self = search_thread(0);
    SearchLimits& limits = search_shared.limits;
    RootStability& stability = search_shared.stability;
};

TEST_F(Budget, ResetClearsLimitsCountersAndFlags) {
    limit_depth(5);
    limit_times(1.0, 2.0);
    limits.limit_infinite = true;
    limits.limit_nodes_set = true;
    limits.only_moves.size = 3;
    stability = {true, true, true, true, true, 99};
    option_set("ZARXReduceOne", "2");
    for (int thread = 0; thread < kMaxThreads; ++thread) {
        SearchThread& each = search_thread(thread);
        each.nodes = 5;
        each.selective_depth = 5;
        each.poll_countdown = 5;
        each.hashfull_time = 5;
        each.abort_allowed = true;
        each.check_plies_limit = 5;
        each.stop = true;
    }
    search_reset();
    EXPECT_FALSE(limits.limit_infinite);
    EXPECT_FALSE(limits.limit_depth_set);
    EXPECT_FALSE(limits.limit_time_set);
    EXPECT_EQ(limits.limit_depth, 0);
    EXPECT_EQ(limits.time_target, 0);
    EXPECT_EQ(limits.time_limit, 0);
    EXPECT_FALSE(limits.limit_nodes_set);
    EXPECT_EQ(limits.only_moves.size, 0);
    EXPECT_FALSE(stability.score_dropped || stability.score_dropped_last);
    EXPECT_FALSE(stability.best_changed || stability.easy_move || stability.stop_search);
    for (int thread = 0; thread < kMaxThreads; ++thread) {
        const SearchThread& each = search_thread(thread);
        EXPECT_EQ(each.nodes, 0u);
        EXPECT_EQ(each.selective_depth, 0);
        EXPECT_EQ(each.hashfull_time, 0);
        EXPECT_FALSE(each.abort_allowed);
        EXPECT_EQ(each.check_plies_limit, -1);
        EXPECT_FALSE(each.stop);
    }
}

TEST_F(Budget, EveryNodeIsCountedAndEvery4096thPolls) {
    search_reset();
    count_node(3, 0);
    EXPECT_EQ(polls, 1);  // the first node looks at the input
    for (int i = 0; i < 4095; ++i) {
        count_node(i % 7, 0);
    }
    EXPECT_EQ(polls, 1);
    count_node(2, 0);
    EXPECT_EQ(polls, 2);
    EXPECT_EQ(self.nodes, 4097u);
    EXPECT_EQ(self.selective_depth, 6);
}

TEST_F(Budget, APollReadsTheStopwatch) {
    set_elapsed(4.0);
    EXPECT_FALSE(poll_leaves(0));
    EXPECT_EQ(self.elapsed, 4.0);
}

TEST_F(Budget, ThePollPrintsTheHashFillOnceASecond) {
    const auto poll_at = [&](double seconds) {
        set_elapsed(seconds);
        EXPECT_FALSE(poll_leaves(0));
        return hashfull_lines;
    };
    EXPECT_EQ(poll_at(0.5), 0);
    EXPECT_EQ(poll_at(0.99), 0);
    EXPECT_EQ(poll_at(1.25), 1);
    EXPECT_EQ(poll_at(2.0), 1);
    EXPECT_EQ(poll_at(2.25), 2);
    EXPECT_EQ(poll_at(9.0), 3);
    EXPECT_EQ(poll_at(9.5), 3);
}

TEST_F(Budget, StopLeavesTheSearch) {
    EXPECT_FALSE(poll_leaves(0));
    input_stops = true;
    EXPECT_TRUE(poll_leaves(0));
    limits.limit_infinite = true;
    EXPECT_TRUE(poll_leaves(0));
    self.abort_allowed = false;
    EXPECT_FALSE(poll_leaves(0));
}

TEST_F(Budget, WorkersOnlyLookAtTheirOwnStop) {
    stability.stop_search = true;
    input_stops = true;
    limit_times(0, 0);
    for (int thread = 1; thread < kMaxThreads; ++thread) {
        EXPECT_FALSE(poll_leaves(thread)) << thread;
        search_thread(thread).stop = true;
        EXPECT_TRUE(poll_leaves(thread)) << thread;
        search_thread(thread).stop = false;
    }
    EXPECT_EQ(polls, 0);
    EXPECT_EQ(hashfull_lines, 0);
}

TEST_F(Budget, ADeeperIterationThanTheLimitLeavesTheSearch) {
    limit_depth(5);
    self.iteration_depth = 5;
    EXPECT_FALSE(poll_leaves(0));
    self.iteration_depth = 6;
    EXPECT_TRUE(poll_leaves(0));
    EXPECT_TRUE(stability.stop_search);
    stability.stop_search = false;
    limits.limit_depth_set = false;
    EXPECT_FALSE(poll_leaves(0));
}

TEST_F(Budget, TheHardLimitLeavesTheSearchWhateverTheScoreDoes) {
    limit_times(1.0, 3.0);
    stability.score_dropped = true;
    self.root_index = 5;
    set_elapsed(2.999);
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(3.0);
    EXPECT_TRUE(poll_leaves(0));
}

TEST_F(Budget, TheTargetLeavesTheSearchOnlyAtAStableFirstMove) {
    limit_times(1.0, 3.0);
    set_elapsed(0.999);
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(1.0);
    self.root_index = 1;
    EXPECT_FALSE(poll_leaves(0));
    self.root_index = 0;
    stability.score_dropped = true;
    EXPECT_FALSE(poll_leaves(0));
    stability.score_dropped = false;
    stability.score_dropped_last = true;
    EXPECT_FALSE(poll_leaves(0));
    stability.score_dropped_last = false;
    EXPECT_TRUE(poll_leaves(0));
}

TEST_F(Budget, WithMoveTimeTheHardLimitComesFirst) {
    limit_times(5 * 0.2, 0.2);
    set_elapsed(0.199);
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(0.2);
    EXPECT_TRUE(poll_leaves(0));
}

TEST_F(Budget, TheNodesOfAllThreadsLeaveTheSearch) {
    limits.limit_nodes_set = true;
    limits.limit_nodes = 10'000;
    search_shared.thread_count = 2;
    self.nodes = 4999;
    EXPECT_FALSE(poll_leaves(0));
    EXPECT_FALSE(ends_at(0));
    self.nodes = 5000;
    EXPECT_TRUE(ends_at(0));
    EXPECT_TRUE(poll_leaves(0));
    stability.stop_search = false;
    limits.limit_infinite = true;
    EXPECT_FALSE(poll_leaves(0));
}

TEST_F(Budget, WithoutAResultTheSearchGoesOnButRemembersToStop) {
    self.abort_allowed = false;
    limit_times(0, 0);
    set_elapsed(9);
    EXPECT_FALSE(poll_leaves(0));
    EXPECT_TRUE(stability.stop_search);
}

TEST_F(Budget, AFirstIterationIsLeftAMomentAfterTheHardLimit) {
    self.abort_allowed = false;
    limit_times(0.1, 1.0);
    set_elapsed(0.999);
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(1.0);
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(1.199);
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(1.25);
    EXPECT_TRUE(poll_leaves(0));
}

TEST_F(Budget, AFirstIterationIsLeftAMomentAfterStop) {
    for (const bool infinite : {true, false}) {
        search_reset();
        limits.limit_infinite = infinite;
        set_elapsed(50);
        input_stops = false;
        EXPECT_FALSE(poll_leaves(0));
        input_stops = true;
        EXPECT_FALSE(poll_leaves(0));
        set_elapsed(50.199);
        EXPECT_FALSE(poll_leaves(0));
        set_elapsed(50.25);
        EXPECT_TRUE(poll_leaves(0));
    }
}

TEST_F(Budget, AFirstIterationIsLeftAMomentAfterALatePonderhit) {
    self.abort_allowed = false;
    limits.limit_infinite = true;
    limit_times(0.1, 1.0);
    set_elapsed(50);
    EXPECT_FALSE(poll_leaves(0));
    limits.limit_infinite = false;
    set_elapsed(51);
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(51.199);
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(51.25);
    EXPECT_TRUE(poll_leaves(0));
}

TEST_F(Budget, AFirstIterationIsNotLeftForTheTargetOrTheDepth) {
    self.abort_allowed = false;
    limit_times(0.1, 100.0);
    limit_depth(0);
    self.iteration_depth = 1;
    for (const double seconds : {1.0, 2.0, 99.0}) {
        set_elapsed(seconds);
        EXPECT_FALSE(poll_leaves(0)) << seconds;
    }
}

TEST_F(Budget, AnInfiniteSearchIsNotLeftForTimeOrDepth) {
    limits.limit_infinite = true;
    limit_times(0, 0);
    limit_depth(1);
    self.iteration_depth = 9;
    set_elapsed(9);
    EXPECT_FALSE(poll_leaves(0));
    EXPECT_TRUE(stability.stop_search);
    limits.limit_infinite = false;  // "ponderhit"
    EXPECT_TRUE(poll_leaves(0));
}

TEST_F(Budget, ALineStartsWithoutDropAndChange) {
    stability = {true, true, true, true, true, 5};
    budget_line_started();
    EXPECT_FALSE(stability.score_dropped);
    EXPECT_FALSE(stability.best_changed);
    EXPECT_TRUE(stability.score_dropped_last);
    EXPECT_TRUE(stability.easy_move);
    EXPECT_TRUE(stability.stop_search);
}

TEST_F(Budget, ANewBestMoveAsksForMoreTime) {
    stability.easy_move = true;
    stability.stop_search = true;
    budget_note_new_best();
    EXPECT_TRUE(stability.best_changed);
    EXPECT_FALSE(stability.easy_move);
    EXPECT_FALSE(stability.stop_search);
}

TEST_F(Budget, ADropOfFiftyCentipawnsIsADrop) {
    stability.previous_score = 100;
    stability.easy_move = true;
    stability.stop_search = true;
    budget_note_score(51, 2);
    EXPECT_FALSE(stability.score_dropped);
    EXPECT_TRUE(stability.easy_move);
    EXPECT_TRUE(stability.stop_search);
    budget_note_score(50, 2);
    EXPECT_TRUE(stability.score_dropped);
    EXPECT_FALSE(stability.easy_move);
    EXPECT_FALSE(stability.stop_search);
    budget_note_score(51, 2);
    EXPECT_FALSE(stability.score_dropped);
}

TEST_F(Budget, NothingIsJudgedInTheFirstIteration) {
    stability.previous_score = 1000;
    budget_note_score(0, 1);
    EXPECT_FALSE(stability.score_dropped);
    stability.score_dropped = true;
    EXPECT_FALSE(budget_line_done(0, 1, true));
    EXPECT_TRUE(stability.score_dropped);
    EXPECT_FALSE(stability.score_dropped_last);
}

TEST_F(Budget, AnEasyMoveIsMoreThan149CentipawnsAhead) {
    MoveList root{};
    root.size = 2;
    root.value[0] = 150;
    root.value[1] = 0;
    budget_note_first_iteration(root);
    EXPECT_TRUE(stability.easy_move);
    root.value[1] = 1;
    budget_note_first_iteration(root);
    EXPECT_FALSE(stability.easy_move);
    root.size = 1;
    root.value[1] = -5000;
    budget_note_first_iteration(root);
    EXPECT_FALSE(stability.easy_move);
}

TEST_F(Budget, AnAcceptedScoreIsTheNextReference) {
    stability.score_dropped = true;
    EXPECT_FALSE(budget_line_done(-77, 2, true));
    EXPECT_EQ(stability.previous_score, -77);
    EXPECT_TRUE(stability.score_dropped_last);
    EXPECT_FALSE(stability.score_dropped);
    EXPECT_FALSE(budget_line_done(-77, 3, true));
    EXPECT_FALSE(stability.score_dropped_last);
}

TEST_F(Budget, TheDepthLimitEndsAfterTheLastLine) {
    limit_depth(6);
    EXPECT_FALSE(ends_at(0, 5));
    EXPECT_FALSE(ends_at(0, 6, false));
    EXPECT_TRUE(ends_at(0, 6));
    EXPECT_TRUE(ends_at(0, 7));
    limit_depth(0);
    EXPECT_TRUE(ends_at(0, 1));
}

TEST_F(Budget, AStableSearchEndsAtTwoFifthsOfTheTarget) {
    limit_times(10, 50);
    EXPECT_FALSE(ends_at(3.99));
    EXPECT_TRUE(ends_at(4.0));
    stability.best_changed = true;
    EXPECT_FALSE(ends_at(9.99));
    EXPECT_TRUE(ends_at(10));
    stability.best_changed = false;
    stability.score_dropped = true;  // becomes the drop of the line completed
    EXPECT_FALSE(ends_at(49));
}

TEST_F(Budget, AnEasyMoveEndsAtThreeFifthsOfTheTarget) {
    limit_times(10, 50);
    stability.best_changed = true;
    stability.easy_move = true;
    EXPECT_FALSE(ends_at(5.99));
    EXPECT_TRUE(ends_at(6.0));
}

TEST_F(Budget, AfterAScoreDropTheSearchRunsOnPastTheTarget) {
    limit_times(10, 50);
    stability.score_dropped = true;
    EXPECT_FALSE(ends_at(49.9));
    set_elapsed(49.9);
    stability.score_dropped_last = true;
    EXPECT_FALSE(poll_leaves(0));
    set_elapsed(50);
    EXPECT_TRUE(poll_leaves(0));
}

TEST_F(Budget, AnInfiniteSearchEndsOnlyByStop) {
    limits.limit_infinite = true;
    limit_times(0, 0);
    limit_depth(1);
    EXPECT_FALSE(ends_at(9));
    self.stop = true;
    EXPECT_TRUE(ends_at(9));
}

TEST_F(Budget, StopEndsALineWithoutLimits) {
    EXPECT_FALSE(ends_at(1e6, 40));
    self.stop = true;
    EXPECT_TRUE(ends_at(0, 1, false));
}

}  // namespace
}  // namespace zar
