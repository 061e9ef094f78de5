// The transposition table: one table of search results, shared by all threads without locks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "board/types.h"
#include "platform/compiler.h"
#include "platform/memory.h"
#include "search/hash_entry.h"

namespace zar {

constexpr std::uint32_t kHashDates = 16;

struct alignas(kCacheLine) HashTable {
    HashEntry* entries;
    std::uint32_t
        entry_count;          // slots and three more, so that a cluster may start at the last slot
    std::uint32_t slot_mask;  // number of slots, a power of two, less 1
    std::uint32_t date;       // of the current search, 0..15
    // Every thread reads the fields above and need not wait for the line that others write.
    std::array<std::byte, kCacheLine> apart;
    std::uint32_t used;  // entries written under the current date; relaxed, threads may lose counts
};
static_assert(offsetof(HashTable, used) >= kCacheLine);

// The one table. Allocated, freed and cleared by the command thread while no search runs.
extern HashTable hash_table;

// What a probe found. `value` is still relative to the node it was stored at.
struct HashHit {
    Move move;
    int depth;
    int bound;
    Score value;
};

// Empty and without memory. To be called before anything else.
void hash_init(HashTable& table);

// Allocates the largest power of two that fits into this many megabytes, all entries empty. Above
// 1024 counts as 1024; below 16 gives 128 MB.
void hash_alloc(HashTable& table, int megabytes);

// Releases the memory; harmless when there is none.
void hash_free(HashTable& table);

// Forgets all results and dates.
void hash_clear(HashTable& table);

// Starts a new date, by which older entries are told from those of the current search.
void hash_new_search(HashTable& table);

// The entries that may hold the position.
[[nodiscard]] inline HashEntry* hash_cluster(const HashTable& table, std::uint64_t key) noexcept {
    return table.entries + (key & table.slot_mask);
}

// Looks a position up; false when it is not there. Does not refresh the entry's date.
[[nodiscard]] inline bool hash_probe(const HashTable& table, std::uint64_t key,
                                     HashHit& hit) noexcept {
    const HashEntry* const entry = cluster_find(hash_cluster(table, key), key);
    if (entry == nullptr) {
        return false;
    }
    const std::uint64_t data = relaxed_load(entry->data);
    hit = {data_move(data), data_depth(data), data_bound(data), data_value(data)};
    return true;
}

// Tells the processor that the position will be looked up soon. A cluster may begin at any slot and
// so lie in two cache lines.
inline void hash_prefetch(const HashTable& table, std::uint64_t key) noexcept {
    const HashEntry* const cluster = hash_cluster(table, key);
    prefetch(cluster);
    prefetch(cluster + kHashClusterSize - 1);
}

// Stores a result: draft in plies (its low 8 bits are kept), bound 1..3, value by value_to_hash
// (its low 16 bits are kept). A deeper result of the same position keeps its value and takes only a
// missing move; otherwise the entry of the cluster goes that is oldest, shallowest, and least
// exact.
void hash_store(HashTable& table, std::uint64_t key, Move move, int depth, int bound, Score value);

// Share of entries written by the current search, in thousandths; 0 for a table without memory.
[[nodiscard]] double hash_full(HashTable& table);

// Mate scores, and large scores by another scale, are stored relative to the node rather than the
// root. The two conversions are no exact inverses of each other between 3000 and the mate range.
[[nodiscard]] Score value_to_hash(Score value, int ply);
[[nodiscard]] Score value_from_hash(Score value, int ply);

}  // namespace zar
