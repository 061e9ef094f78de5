#include "eval/score.h"

#include "gtest/gtest.h"

namespace zar {
namespace {

TEST(Score, PairsAddAndSubtractPhaseByPhase) {
    const ScorePair left{10, -20};
    const ScorePair right{3, 5};
    EXPECT_TRUE(left + right == (ScorePair{13, -15}));
    EXPECT_TRUE(left - right == (ScorePair{7, -25}));
    ScorePair sum = left;
    sum += right;
    EXPECT_TRUE(sum == left + right);
    sum -= right;
    EXPECT_TRUE(sum == left);
    EXPECT_TRUE(left * 3 == (ScorePair{30, -60}));
}

TEST(Score, PackedPairsAddAndSubtractPhaseByPhase) {
    constexpr ScorePair kPairs[] = {{0, 0},    {1, 0},      {0, 1},         {-1, 0},
                                    {0, -1},   {-1, -1},    {300, -5},      {-300, 5},
                                    {7, 2000}, {-7, -2000}, {30000, -30000}};
    for (const ScorePair left : kPairs) {
        EXPECT_EQ(unpack(pack(left)), left);
        for (const ScorePair right : kPairs) {
            PackedPair sum = pack(left);
            sum += pack(right);
            EXPECT_EQ(unpack(sum), left + right);
            EXPECT_EQ(unpack(pack(left) - pack(right)), left - right);
        }
    }
}

TEST(Score, WeighingTruncatesTowardZeroOnBothSides) {
    EXPECT_EQ(weigh(300, 205), 240);
    EXPECT_EQ(weigh(-300, 205), -240);
    EXPECT_EQ(weigh(-1, 255), 0);
    EXPECT_EQ(weigh(77, 256), 77);
    EXPECT_EQ(weigh(77, 0), 0);
    EXPECT_TRUE(weigh(ScorePair{-40, 60}, 333) == (ScorePair{-52, 78}));
}

TEST(Score, BlendGoesFromOpeningToEndgame) {
    const ScorePair score{100, -60};
    EXPECT_EQ(blend(score, 0), 100);
    EXPECT_EQ(blend(score, 256), -60);
    EXPECT_EQ(blend(score, 128), 20);
    EXPECT_EQ(blend(ScorePair{740, 810}, 43), 751);
}

TEST(Score, BlendTruncatesTowardZeroOnBothSides) {
    EXPECT_EQ(blend(ScorePair{1, 0}, 1), 0);
    EXPECT_EQ(blend(ScorePair{-1, 0}, 1), 0);
    EXPECT_EQ(blend(ScorePair{-740, -810}, 43), -751);
}

}  // namespace
}  // namespace zar
