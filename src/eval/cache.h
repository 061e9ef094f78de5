// Direct-mapped caches of 16-byte records, one table for each search thread. A thread reads and
// writes its own table only, so nothing is locked; the command thread allocates, clears and frees
// while no search runs. Without a table the caller computes afresh.
#pragma once

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include "platform/memory.h"

namespace zar {

constexpr int kMaxEvalThreads = 4;

// Record: trivially copyable, with a field `lock`; an empty entry is all zeros.
template <typename Record, std::size_t kEntryCount>
struct RecordCache {
    static_assert(sizeof(Record) == 16);
    static_assert(std::has_single_bit(kEntryCount));

    // Null where a thread has no table.
    std::array<Record*, kMaxEvalThreads> table{};
};

// The half of the key that an entry stores; the other half chooses the entry.
[[nodiscard]] constexpr std::uint32_t cache_lock(std::uint64_t key) noexcept {
    return static_cast<std::uint32_t>(key >> 32);
}

// The entry of a key, to be compared with the key's lock; null when the thread has no table.
template <typename Record, std::size_t kEntryCount>
[[nodiscard]] Record* cache_entry(const RecordCache<Record, kEntryCount>& cache, std::uint64_t key,
                                  int thread) {
    assert(thread >= 0 && thread < kMaxEvalThreads);
    Record* const table = cache.table[static_cast<std::size_t>(thread)];
    return table == nullptr ? nullptr : table + (key & (kEntryCount - 1));
}

template <typename Record, std::size_t kEntryCount>
void cache_clear(RecordCache<Record, kEntryCount>& cache) {
    for (Record* const table : cache.table) {
        if (table != nullptr) {
            memory_clear(table, kEntryCount * sizeof(Record));
        }
    }
}

template <typename Record, std::size_t kEntryCount>
void cache_free(RecordCache<Record, kEntryCount>& cache) {
    for (Record*& table : cache.table) {
        memory_free(table, kEntryCount * sizeof(Record));
        table = nullptr;
    }
}

// Cleared tables for threads 0 .. thread_count - 1, in place of the old ones.
template <typename Record, std::size_t kEntryCount>
void cache_allocate(RecordCache<Record, kEntryCount>& cache, int thread_count) {
    assert(thread_count >= 1 && thread_count <= kMaxEvalThreads);
    cache_free(cache);
    for (std::size_t thread = 0; thread < static_cast<std::size_t>(thread_count); ++thread) {
        cache.table[thread] = static_cast<Record*>(checked_malloc(kEntryCount * sizeof(Record)));
    }
}

}  // namespace zar
