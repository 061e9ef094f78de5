#include "frontend/difficulty.h"

#include <string>

#include "frontend/option.h"
#include "gtest/gtest.h"

namespace zar {
namespace {

TEST(Difficulty, TheDepthLimitGrowsByTwoALevel) {
    constexpr int limits[] = {2, 4, 6, 8, 10, 12, 14, 16, 18, 20};
    for (int level = 0; level < 10; ++level) {
        for (int thread = 0; thread < 4; ++thread) {
            EXPECT_EQ(difficulty_depth_limit(level, thread), limits[level]) << level;
        }
    }
}

TEST(Difficulty, AtFullStrengthTheMainThreadStopsSooner) {
    EXPECT_EQ(difficulty_depth_limit(10, 0), 50);
    for (int thread = 1; thread < 4; ++thread) {
        EXPECT_EQ(difficulty_depth_limit(10, thread), 100);
    }
}

TEST(Difficulty, StrangeLevelsKeepToUsefulDepths) {
    for (const int level : {-1000, -5, -1}) {
        EXPECT_EQ(difficulty_depth_limit(level, 0), 2) << level;
    }
    EXPECT_EQ(difficulty_depth_limit(11, 0), 24);
    EXPECT_EQ(difficulty_depth_limit(48, 0), 98);
    EXPECT_EQ(difficulty_depth_limit(1000, 0), 100);
}

TEST(Difficulty, SelectiveSearchNeedsLevelNine) {
    for (int level = -1; level <= 12; ++level) {
        EXPECT_EQ(difficulty_allows_selective_search(level), level >= 9) << level;
    }
}

TEST(Difficulty, TheBookNeedsLevelFour) {
    for (int level = -1; level <= 12; ++level) {
        EXPECT_EQ(difficulty_allows_book(level), level >= 4) << level;
    }
}

TEST(Difficulty, TheLevelIsReadFromItsOption) {
    struct Row {
        const char* text;
        int level;
    };
    option_defaults();
    EXPECT_EQ(difficulty_level(), 10);
    for (const Row& row : {Row{"0", 0}, Row{"7", 7}, Row{"11", 11}, Row{"-3", -3}, Row{"x", 0},
                           Row{"1000", 1000}, Row{"1001", 1000}, Row{"-999999999999", -1000}}) {
        option_set("Difficulty Level", row.text);
        EXPECT_EQ(difficulty_level(), row.level) << row.text;
    }
    option_defaults();
}

}  // namespace
}  // namespace zar
