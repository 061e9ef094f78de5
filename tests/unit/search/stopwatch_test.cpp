#include "search/stopwatch.h"

#include "gtest/gtest.h"
#include "platform/clock.h"

namespace zar {
namespace {

// Processor time is spent until the clock has moved, so that differences are visible.
void spend_some_time() {
    const double wall = clock_wall_seconds();
    const double cpu = clock_cpu_seconds();
    while (clock_wall_seconds() <= wall || clock_cpu_seconds() <= cpu) {
    }
}

TEST(StopwatchTest, ResetIsAllZeroAndNotRunning) {
    Stopwatch watch = {1, 2, 3, 4, true};
    stopwatch_reset(watch);
    EXPECT_EQ(watch.start_wall, 0);
    EXPECT_EQ(watch.start_cpu, 0);
    EXPECT_EQ(watch.accumulated_wall, 0);
    EXPECT_EQ(watch.accumulated_cpu, 0);
    EXPECT_FALSE(watch.running);
    EXPECT_EQ(stopwatch_elapsed(watch), 0);
    EXPECT_EQ(stopwatch_cpu(watch), 0);
    EXPECT_EQ(stopwatch_load(watch), 0);
}

TEST(StopwatchTest, RunsFromTheGivenTimeOn) {
    Stopwatch watch{};
    const double before = clock_wall_seconds() - 100;
    stopwatch_start(watch, before);
    EXPECT_TRUE(watch.running);
    EXPECT_EQ(watch.start_wall, before);
    EXPECT_GE(stopwatch_elapsed(watch), 100);
    EXPECT_LE(watch.start_cpu, clock_cpu_seconds());
}

TEST(StopwatchTest, TimePassesOnlyWhileRunning) {
    Stopwatch watch{};
    stopwatch_start(watch, clock_wall_seconds());
    spend_some_time();
    const double running = stopwatch_elapsed(watch);
    EXPECT_GT(running, 0);
    EXPECT_GT(stopwatch_cpu(watch), 0);
    stopwatch_stop(watch);
    EXPECT_FALSE(watch.running);
    EXPECT_EQ(watch.start_wall, 0);
    EXPECT_EQ(watch.start_cpu, 0);
    const double stopped = stopwatch_elapsed(watch);
    EXPECT_GE(stopped, running);
    EXPECT_EQ(stopped, watch.accumulated_wall);
    spend_some_time();
    EXPECT_EQ(stopwatch_elapsed(watch), stopped);
}

TEST(StopwatchTest, TimesOfSeveralRunsAddUp) {
    Stopwatch watch{};
    watch.accumulated_wall = 100;
    watch.accumulated_cpu = 50;
    stopwatch_start(watch, clock_wall_seconds());
    spend_some_time();
    EXPECT_GT(stopwatch_elapsed(watch), 100);
    EXPECT_GT(stopwatch_cpu(watch), 50);
    stopwatch_stop(watch);
    EXPECT_GT(watch.accumulated_wall, 100);
    EXPECT_GT(watch.accumulated_cpu, 50);
}

TEST(StopwatchTest, StoppingAStoppedWatchChangesNothing) {
    Stopwatch watch = {0, 0, 7, 3, false};
    stopwatch_stop(watch);
    EXPECT_EQ(watch.accumulated_wall, 7);
    EXPECT_EQ(watch.accumulated_cpu, 3);
}

TEST(StopwatchTest, ElapsedIsNeverNegative) {
    const Stopwatch watch = {clock_wall_seconds() + 1000, clock_cpu_seconds() + 1000, 0, 0, true};
    EXPECT_EQ(stopwatch_elapsed(watch), 0);
    EXPECT_EQ(stopwatch_cpu(watch), 0);
    EXPECT_EQ(stopwatch_load(watch), 0);
}

TEST(StopwatchTest, LoadIsProcessorOverWallTimeAndAtMostOne) {
    EXPECT_EQ(stopwatch_load({0, 0, 4, 1, false}), 0.25);
    EXPECT_EQ(stopwatch_load({0, 0, 4, 4, false}), 1);
    EXPECT_EQ(stopwatch_load({0, 0, 4, 9, false}), 1);
    EXPECT_EQ(stopwatch_load({0, 0, 0, 9, false}), 0);
    EXPECT_EQ(stopwatch_load({0, 0, 4, 0, false}), 0);
    EXPECT_EQ(stopwatch_load({0, 0, -1, -1, false}), 0);
}

}  // namespace
}  // namespace zar
