#include "search/stopwatch.h"

#include "gtest/gtest.h"
#include "platform/clock.h"

namespace zar {
namespace {

// Until the clock has moved, so that differences are visible.
void spend_some_time() {
    const double begin = clock_wall_seconds();
    while (clock_wall_seconds() <= begin) {
    }
}

TEST(StopwatchTest, ResetIsAllZeroAndNotRunning) {
    Stopwatch watch = {1, 3, true};
    stopwatch_reset(watch);
    EXPECT_EQ(watch.start, 0);
    EXPECT_EQ(watch.accumulated, 0);
    EXPECT_FALSE(watch.running);
    EXPECT_EQ(stopwatch_elapsed(watch), 0);
}

TEST(StopwatchTest, RunsFromTheGivenTimeOn) {
    Stopwatch watch{};
    const double before = clock_wall_seconds() - 100;
    stopwatch_start(watch, before);
    EXPECT_TRUE(watch.running);
    EXPECT_EQ(watch.start, before);
    EXPECT_GE(stopwatch_elapsed(watch), 100);
}

TEST(StopwatchTest, TimePassesOnlyWhileRunning) {
    Stopwatch watch{};
    stopwatch_start(watch, clock_wall_seconds());
    spend_some_time();
    const double running = stopwatch_elapsed(watch);
    EXPECT_GT(running, 0);
    stopwatch_stop(watch);
    EXPECT_FALSE(watch.running);
    EXPECT_EQ(watch.start, 0);
    const double stopped = stopwatch_elapsed(watch);
    EXPECT_GE(stopped, running);
    EXPECT_EQ(stopped, watch.accumulated);
    spend_some_time();
    EXPECT_EQ(stopwatch_elapsed(watch), stopped);
}

TEST(StopwatchTest, TimesOfSeveralRunsAddUp) {
    Stopwatch watch{};
    watch.accumulated = 100;
    stopwatch_start(watch, clock_wall_seconds());
    spend_some_time();
    EXPECT_GT(stopwatch_elapsed(watch), 100);
    stopwatch_stop(watch);
    EXPECT_GT(watch.accumulated, 100);
}

TEST(StopwatchTest, StoppingAStoppedWatchChangesNothing) {
    Stopwatch watch = {0, 7, false};
    stopwatch_stop(watch);
    EXPECT_EQ(watch.accumulated, 7);
}

TEST(StopwatchTest, ElapsedIsNeverNegative) {
    const Stopwatch watch = {clock_wall_seconds() + 1000, 0, true};
    EXPECT_EQ(stopwatch_elapsed(watch), 0);
}

}  // namespace
}  // namespace zar
