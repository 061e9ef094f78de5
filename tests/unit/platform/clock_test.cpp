#include "platform/clock.h"

#include <chrono>
#include <ctime>
#include <thread>

#include "gtest/gtest.h"

namespace zar {
namespace {

TEST(Clock, WallTimeNeverGoesBackAndCountsInSeconds) {
    const double begin = clock_wall_seconds();
    double last = begin;
    for (int i = 0; i < 1000; ++i) {
        const double now = clock_wall_seconds();
        ASSERT_GE(now, last);
        last = now;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    // A sleep is never shorter than asked for; how much longer it is nobody can say.
    EXPECT_GE(clock_wall_seconds() - begin, 0.049);
    EXPECT_LT(clock_wall_seconds() - begin, 49.0);
}

TEST(Clock, TheSeedIsTheCalendarTime) {
    const auto before = static_cast<unsigned>(std::time(nullptr));
    const unsigned seed = clock_seed();
    const auto after = static_cast<unsigned>(std::time(nullptr));
    EXPECT_LE(before, seed);
    EXPECT_LE(seed, after);
}

}  // namespace
}  // namespace zar
