#include "eval/cache.h"

#include "gtest/gtest.h"

namespace zar {
namespace {

struct Entry {
    std::uint32_t lock;
    std::uint32_t value[3];
};

using Cache = RecordCache<Entry, 8>;

TEST(RecordCache, WithoutTablesThereIsNoEntry) {
    const Cache cache;
    EXPECT_EQ(cache_entry(cache, 5, 0), nullptr);
    EXPECT_EQ(cache_entry(cache, 5, kMaxEvalThreads - 1), nullptr);
}

TEST(RecordCache, TheKeyIsSplitIntoEntryAndLock) {
    Cache cache;
    cache_allocate(cache, 1);
    EXPECT_EQ(cache_entry(cache, 0x1234567800000005, 0), cache.table[0] + 5);
    EXPECT_EQ(cache_entry(cache, 0x1234567800000FFD, 0), cache.table[0] + 5);
    EXPECT_EQ(cache_lock(0x1234567800000005), 0x12345678U);
    cache_free(cache);
}

TEST(RecordCache, AllocationGivesClearedTablesToTheFirstThreadsOnly) {
    Cache cache;
    cache_allocate(cache, 2);
    EXPECT_EQ(cache_entry(cache, 3, 0)->lock, 0U);
    EXPECT_EQ(cache_entry(cache, 3, 1)->lock, 0U);
    EXPECT_EQ(cache_entry(cache, 3, 2), nullptr);
    cache_allocate(cache, 4);
    EXPECT_EQ(cache_entry(cache, 3, 3)->lock, 0U);
    cache_allocate(cache, 1);
    EXPECT_EQ(cache_entry(cache, 3, 1), nullptr);
    cache_free(cache);
    EXPECT_EQ(cache_entry(cache, 3, 0), nullptr);
}

TEST(RecordCache, ThreadsHaveTablesOfTheirOwn) {
    Cache cache;
    cache_allocate(cache, 2);
    cache_entry(cache, 3, 0)->lock = 7;
    EXPECT_EQ(cache_entry(cache, 3, 1)->lock, 0U);
    cache_free(cache);
}

TEST(RecordCache, ClearingEmptiesEveryEntryOfEveryThread) {
    Cache cache;
    cache_allocate(cache, 2);
    for (std::uint64_t key = 0; key < 8; ++key) {
        *cache_entry(cache, key, 0) = {1, {2, 3, 4}};
        *cache_entry(cache, key, 1) = {1, {2, 3, 4}};
    }
    cache_clear(cache);
    for (std::uint64_t key = 0; key < 8; ++key) {
        for (int thread = 0; thread < 2; ++thread) {
            const Entry& entry = *cache_entry(cache, key, thread);
            EXPECT_EQ(entry.lock + entry.value[0] + entry.value[1] + entry.value[2], 0U) << key;
        }
    }
    cache_free(cache);
}

}  // namespace
}  // namespace zar
