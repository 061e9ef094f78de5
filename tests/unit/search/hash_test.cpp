#include "search/hash.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>
#include <vector>

#include "gtest/gtest.h"
#include "search/types.h"
#include "support/search_support.h"

namespace zar {
namespace {

// A table of its own for every test, 16 MB.
class Hash : public ::testing::Test {
  protected:
    void SetUp() override {
        hash_init(table);
        hash_alloc(table, 16);
    }

    void TearDown() override { hash_free(table); }

    // The n-th key of the cluster that starts at this slot.
    std::uint64_t key_at(std::uint64_t slot, std::uint64_t n) const {
        return (n + 1) * (std::uint64_t{table.slot_mask} + 1) + slot;
    }

    bool is_stored(std::uint64_t key) const {
        HashHit hit;
        return hash_probe(table, key, hit);
    }

    HashHit found(std::uint64_t key) const {
        HashHit hit{};
        EXPECT_TRUE(hash_probe(table, key, hit)) << key;
        return hit;
    }

    void start_searches(int count) {
        for (int i = 0; i < count; ++i) {
            hash_new_search(table);
        }
    }

    HashTable table{};
};

// The data word as the header describes it.
std::uint64_t data_word(Move move, int depth, int bound, std::uint32_t date, Score value) {
    return std::uint64_t{move} | std::uint64_t{static_cast<std::uint16_t>(value)} << 32 |
           static_cast<std::uint64_t>(bound) << 50 | static_cast<std::uint64_t>(depth ^ 128) << 52 |
           std::uint64_t{date} << 60;
}

TEST(HashSize, NoMemoryAfterInit) {
    HashTable table;
    hash_init(table);
    EXPECT_EQ(table.entries, nullptr);
    EXPECT_EQ(table.entry_count, 0u);
    EXPECT_EQ(table.slot_mask, 0u);
    EXPECT_EQ(table.date, 0u);
    EXPECT_EQ(table.used, 0u);
    EXPECT_EQ(hash_full(table), 0.0);
}

struct SizeRow {
    int megabytes;
    std::uint32_t slots;
};

class HashSizes : public ::testing::TestWithParam<SizeRow> {};

TEST_P(HashSizes, LargestPowerOfTwoThatFitsPlusThreeEntries) {
    HashTable table;
    hash_init(table);
    hash_alloc(table, GetParam().megabytes);
    EXPECT_EQ(table.slot_mask, GetParam().slots - 1);
    EXPECT_EQ(table.entry_count, GetParam().slots + 3);
    ASSERT_NE(table.entries, nullptr);
    const HashEntry empty = {0, data_word(0, 128, 0, 0, 0)};
    const bool all_empty = std::all_of(
        table.entries, table.entries + table.entry_count,
        [&](const HashEntry& entry) { return entry.key == empty.key && entry.data == empty.data; });
    EXPECT_TRUE(all_empty);
    hash_free(table);
    EXPECT_EQ(table.entries, nullptr);
    EXPECT_EQ(table.entry_count, 0u);
    EXPECT_EQ(table.slot_mask, 0u);
    hash_free(table);
}

// Below 16 MB there are 128 of them.
INSTANTIATE_TEST_SUITE_P(Megabytes, HashSizes,
                         ::testing::Values(SizeRow{16, 1'048'576}, SizeRow{31, 1'048'576},
                                           SizeRow{32, 2'097'152}, SizeRow{48, 2'097'152},
                                           SizeRow{15, 8'388'608}, SizeRow{8, 8'388'608},
                                           SizeRow{0, 8'388'608}, SizeRow{-2147483647, 8'388'608}),
                         [](const auto& row) { return "Row" + std::to_string(row.index); });

TEST(HashSize, MoreThan1024MegabytesAreTakenAs1024) {
    HashTable table;
    hash_init(table);
    hash_alloc(table, 2147483647);
    EXPECT_EQ(table.slot_mask, 67'108'864u - 1);
    EXPECT_EQ(table.entry_count, 67'108'864u + 3);
    hash_free(table);
}

TEST_F(Hash, EveryFieldComesBack) {
    hash_new_search(table);
    hash_store(table, 0x123456789ABCDEF0, 0xFEDC, 0, kBoundUpper, -32768);
    hash_store(table, 0x223456789ABCDEF1, 1, 255, kBoundExact, 32767);
    HashHit hit = found(0x123456789ABCDEF0);
    EXPECT_EQ(hit.move, 0xFEDC);
    EXPECT_EQ(hit.depth, 0);
    EXPECT_EQ(hit.bound, kBoundUpper);
    EXPECT_EQ(hit.value, -32768);
    hit = found(0x223456789ABCDEF1);
    EXPECT_EQ(hit.move, 1);
    EXPECT_EQ(hit.depth, 255);
    EXPECT_EQ(hit.bound, kBoundExact);
    EXPECT_EQ(hit.value, 32767);
    EXPECT_FALSE(is_stored(0x123456789ABCDEF1));
}

TEST_F(Hash, AValueKeepsItsLowSixteenBits) {
    hash_new_search(table);
    hash_store(table, 77, 0, 1, kBoundUpper, -29743 - 40 * 100);
    EXPECT_EQ(found(77).value, -29743 - 40 * 100 + 65536);
}

TEST_F(Hash, AllBitsOfTheKeyAreCompared) {
    hash_new_search(table);
    constexpr std::uint64_t key = 0x0123456789ABCDEF;
    hash_store(table, key, 9, 3, kBoundExact, 5);
    for (int bit = 0; bit < 64; ++bit) {
        EXPECT_FALSE(is_stored(key ^ std::uint64_t{1} << bit)) << bit;
    }
    EXPECT_TRUE(is_stored(key));
}

TEST_F(Hash, AClusterMayStartAtTheLastSlot) {
    hash_new_search(table);
    const std::uint64_t last = table.slot_mask;
    for (std::uint64_t n = 0; n < 4; ++n) {
        hash_store(table, key_at(last, n), static_cast<Move>(n + 1), 5, kBoundExact, 0);
    }
    for (std::uint64_t n = 0; n < 4; ++n) {
        EXPECT_EQ(found(key_at(last, n)).move, n + 1);
        EXPECT_EQ(table.entries[last + n].key, key_at(last, n));
    }
}

TEST_F(Hash, ADeeperResultKeepsItsValueAndBound) {
    hash_new_search(table);
    hash_store(table, 1000, 11, 8, kBoundExact, 50);
    hash_store(table, 1000, 22, 7, kBoundLower, 90);
    const HashHit hit = found(1000);
    EXPECT_EQ(hit.move, 11);
    EXPECT_EQ(hit.depth, 8);
    EXPECT_EQ(hit.bound, kBoundExact);
    EXPECT_EQ(hit.value, 50);
}

TEST_F(Hash, AShallowerResultFillsAMissingMove) {
    hash_new_search(table);
    hash_store(table, 1000, 0, 8, kBoundUpper, -50);
    hash_store(table, 1000, 22, 0, kBoundLower, 90);
    const HashHit hit = found(1000);
    EXPECT_EQ(hit.move, 22);
    EXPECT_EQ(hit.depth, 8);
    EXPECT_EQ(hit.bound, kBoundUpper);
    EXPECT_EQ(hit.value, -50);
}

TEST_F(Hash, AShallowerResultRefreshesTheDate) {
    hash_new_search(table);
    hash_store(table, 1000, 11, 8, kBoundExact, 50);
    hash_new_search(table);
    hash_store(table, 1000, 22, 7, kBoundLower, 90);
    EXPECT_EQ(table.used, 1u);
    EXPECT_EQ(table.entries[1000].data, data_word(11, 8, kBoundExact, 2, 50));
    hash_store(table, 1000, 22, 7, kBoundLower, 90);
    EXPECT_EQ(table.used, 1u);
}

TEST_F(Hash, AnEquallyDeepResultReplaces) {
    hash_new_search(table);
    hash_store(table, 1000, 11, 8, kBoundExact, 50);
    hash_store(table, 1000, 22, 8, kBoundLower, 90);
    const HashHit hit = found(1000);
    EXPECT_EQ(hit.move, 22);
    EXPECT_EQ(hit.bound, kBoundLower);
    EXPECT_EQ(hit.value, 90);
}

TEST_F(Hash, NoMoveKeepsTheMoveOfTheSamePosition) {
    hash_new_search(table);
    hash_store(table, 1000, 11, 3, kBoundExact, 50);
    hash_store(table, 1000, 0, 5, kBoundUpper, -90);
    const HashHit hit = found(1000);
    EXPECT_EQ(hit.move, 11);
    EXPECT_EQ(hit.depth, 5);
    EXPECT_EQ(hit.bound, kBoundUpper);
    EXPECT_EQ(hit.value, -90);
}

TEST_F(Hash, NoMoveClearsTheMoveOfAVictim) {
    hash_new_search(table);
    for (std::uint64_t n = 0; n < 4; ++n) {
        hash_store(table, key_at(7, n), 99, 10, kBoundExact, 1);
    }
    hash_store(table, key_at(7, 4), 0, 2, kBoundUpper, -3);
    const HashHit hit = found(key_at(7, 4));
    EXPECT_EQ(hit.move, 0);
    EXPECT_EQ(hit.depth, 2);
    EXPECT_EQ(hit.bound, kBoundUpper);
    EXPECT_EQ(hit.value, -3);
}

TEST_F(Hash, AnEmptyEntryCountsAsDeepAndOfDateZero) {
    // At date 0 a shallow result is given up before an empty entry, a deeper one is not.
    hash_store(table, key_at(7, 0), 1, 127, kBoundExact, 0);
    hash_store(table, key_at(7, 1), 2, 129, kBoundLower, 0);
    EXPECT_FALSE(is_stored(key_at(7, 0)));
    hash_store(table, key_at(7, 2), 3, 5, kBoundLower, 0);
    EXPECT_TRUE(is_stored(key_at(7, 1)));
    // Later the empty ones are the older ones.
    hash_new_search(table);
    hash_store(table, key_at(9, 0), 1, 1, kBoundUpper, 0);
    hash_store(table, key_at(9, 1), 2, 1, kBoundUpper, 0);
    EXPECT_TRUE(is_stored(key_at(9, 0)));
    EXPECT_TRUE(is_stored(key_at(9, 1)));
}

TEST_F(Hash, TheOldestThenShallowestThenLeastExactThenFirstEntryGoes) {
    test::Dice dice(7);
    for (int round = 0; round < 3000; ++round) {
        table.date = static_cast<std::uint32_t>(dice.below(16));
        hash_new_search(table);
        // Few different values, so that ties are common.
        std::vector<std::tuple<int, int, int, int>> order;
        std::array<std::uint64_t, 4> keys{};
        for (std::size_t i = 0; i < 4; ++i) {
            const auto age = static_cast<int>(dice.below(round % 2 == 0 ? 2 : 16));
            const auto depth = static_cast<int>(dice.below(round % 3 == 0 ? 256 : 3));
            const auto bound = static_cast<int>(1 + dice.below(3));
            const std::uint32_t date = (table.date + 16 - static_cast<std::uint32_t>(age)) % 16;
            keys[i] = key_at(50, i);
            table.entries[50 + i] = {keys[i], data_word(5, depth, bound, date, 17)};
            order.emplace_back(-age, depth, bound, static_cast<int>(i));
        }
        const auto victim = *std::min_element(order.begin(), order.end());
        hash_store(table, key_at(50, 4), 6, 1, kBoundExact, 18);
        EXPECT_TRUE(is_stored(key_at(50, 4)));
        for (std::size_t i = 0; i < 4; ++i) {
            ASSERT_EQ(is_stored(keys[i]), static_cast<int>(i) != std::get<3>(victim))
                << "round " << round << " entry " << i;
        }
        EXPECT_EQ(table.used, std::get<0>(victim) == 0 ? 0u : 1u);
    }
}

TEST_F(Hash, DatesFollowEachOtherAndBeginAnew) {
    for (std::uint32_t search = 1; search <= 40; ++search) {
        hash_new_search(table);
        EXPECT_EQ(table.date, search % 16);
    }
}

TEST_F(Hash, EntriesFromSixteenSearchesAgoLookCurrent) {
    hash_new_search(table);
    hash_store(table, 1000, 11, 8, kBoundExact, 50);
    start_searches(16);
    hash_store(table, 1000, 11, 9, kBoundExact, 50);
    EXPECT_EQ(table.used, 0u);
    start_searches(15);
    hash_store(table, 1000, 11, 10, kBoundExact, 50);
    EXPECT_EQ(table.used, 1u);
}

TEST_F(Hash, AProbeDoesNotRefreshTheDate) {
    hash_new_search(table);
    hash_store(table, 1000, 11, 8, kBoundExact, 50);
    const std::uint64_t data = table.entries[1000].data;
    hash_new_search(table);
    EXPECT_TRUE(is_stored(1000));
    EXPECT_EQ(table.entries[1000].data, data);
    EXPECT_EQ(table.used, 0u);
}

TEST_F(Hash, FullnessCountsEntriesOfTheCurrentSearch) {
    hash_new_search(table);
    for (std::uint64_t slot = 0; slot < 8000; slot += 4) {
        hash_store(table, key_at(slot, 0), 1, 5, kBoundExact, 0);
    }
    EXPECT_EQ(table.used, 2000u);
    EXPECT_DOUBLE_EQ(hash_full(table), 2000.0 / 1048579.0 * 1000.0);
    // The same positions again, and victims of the same date, are no new ones.
    hash_store(table, key_at(0, 0), 1, 5, kBoundExact, 0);
    EXPECT_EQ(table.used, 2000u);
}

TEST_F(Hash, FullnessIsZeroAtTheStartOfEverySearch) {
    hash_new_search(table);
    hash_store(table, 1000, 11, 8, kBoundExact, 50);
    EXPECT_GT(hash_full(table), 0.0);
    hash_new_search(table);
    EXPECT_EQ(hash_full(table), 0.0);
    EXPECT_TRUE(is_stored(1000));
}

TEST_F(Hash, ClearingForgetsResultsAndDates) {
    start_searches(5);
    hash_store(table, 1000, 11, 8, kBoundExact, 50);
    hash_clear(table);
    EXPECT_FALSE(is_stored(1000));
    EXPECT_EQ(table.date, 0u);
    EXPECT_EQ(table.used, 0u);
    EXPECT_EQ(table.entries[1000].data, data_word(0, 128, 0, 0, 0));
    EXPECT_EQ(table.entry_count, 1'048'579u);
}

// A value in low..high changes by `per_ply` centipawns a ply.
struct ShiftRow {
    Score low;
    Score high;
    int per_ply;
};

// Positive values of the large band are shifted on the way out only: the asymmetry is wanted.
constexpr std::array<ShiftRow, 5> shifts_in = {{{-32768, -29745, -1},
                                                {-29744, -29744, 0},
                                                {-29743, -3001, -40},
                                                {-3000, 29744, 0},
                                                {29745, 32767, 1}}};
constexpr std::array<ShiftRow, 7> shifts_out = {{{-32768, -29745, 1},
                                                 {-29744, -29744, 0},
                                                 {-29743, -3001, 40},
                                                 {-3000, 3000, 0},
                                                 {3001, 29743, -40},
                                                 {29744, 29744, 0},
                                                 {29745, 32767, -1}}};

template <std::size_t kRows>
void expect_shifts(const std::array<ShiftRow, kRows>& rows, Score (*convert)(Score, int)) {
    Score next = -32768;
    for (const ShiftRow& row : rows) {
        ASSERT_EQ(row.low, next);
        for (Score value = row.low; value <= row.high; ++value) {
            for (const int ply : {0, 1, 2, 3, 10, 100, 254, 255}) {
                const Score expected = value + row.per_ply * ply;
                if (convert(value, ply) != expected) {
                    FAIL() << value << " at ply " << ply << " becomes " << convert(value, ply)
                           << ", not " << expected;
                }
            }
        }
        next = row.high + 1;
    }
    EXPECT_EQ(next, 32768);
}

TEST(HashValue, IsMadeRelativeToTheNode) { expect_shifts(shifts_in, value_to_hash); }

TEST(HashValue, IsMadeRelativeToTheRoot) { expect_shifts(shifts_out, value_from_hash); }

TEST(HashValue, MateDistancesSurviveTheTable) {
    for (int ply = 0; ply < 100; ++ply) {
        EXPECT_EQ(value_from_hash(value_to_hash(29900, ply), ply), 29900);
        EXPECT_EQ(value_from_hash(value_to_hash(-29900, ply), ply), -29900);
        EXPECT_EQ(value_from_hash(value_to_hash(-5000, ply), ply), -5000);
    }
    EXPECT_EQ(value_from_hash(value_to_hash(5000, 10), 10), 4600);
}

}  // namespace
}  // namespace zar
