#include "eval/rank_mask.h"

#include "gtest/gtest.h"

namespace zar {
namespace {

TEST(RankMask, RanksAreCountedFromTheOwnSide) {
    EXPECT_EQ(relative_rank(kA1, kWhite), 1);
    EXPECT_EQ(relative_rank(kH8, kWhite), 8);
    EXPECT_EQ(relative_rank(kE2, kBlack), 7);
    EXPECT_EQ(relative_rank(kC7, kBlack), 2);
}

TEST(RankMask, SetsOfRanksAroundAPawn) {
    EXPECT_EQ(rank_bit(1), 0b00000001);
    EXPECT_EQ(rank_bit(8), 0b10000000);
    EXPECT_EQ(ranks_behind(1), 0);
    EXPECT_EQ(ranks_behind(4), 0b00000111);
    EXPECT_EQ(ranks_up_to(4), 0b00001111);
    EXPECT_EQ(ranks_up_to(8), 0b11111111);
    EXPECT_EQ(ranks_ahead(4), 0b11110000);
    EXPECT_EQ(ranks_ahead(8), 0);
    EXPECT_EQ(ranks_from(4), 0b11111000);
    EXPECT_EQ(ranks_from(1), 0b11111111);
}

TEST(RankMask, TablesAgreeWithCountingForEverySet) {
    for (int mask = 0; mask < 256; ++mask) {
        int count = 0;
        int lowest = 0;
        int highest = 0;
        int reversed = 0;
        for (int rank = 1; rank <= 8; ++rank) {
            if ((mask >> (rank - 1)) % 2 == 1) {
                ++count;
                lowest = lowest == 0 ? rank : lowest;
                highest = rank;
                reversed += 1 << (8 - rank);
            }
        }
        EXPECT_EQ(rank_count(mask), count) << mask;
        EXPECT_EQ(rank_lowest(mask), lowest) << mask;
        EXPECT_EQ(rank_highest(mask), highest) << mask;
        EXPECT_EQ(ranks_reversed(mask), reversed) << mask;
    }
}

}  // namespace
}  // namespace zar
