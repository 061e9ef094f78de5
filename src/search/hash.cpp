#include "search/hash.h"

#include <algorithm>
#include <atomic>
#include <bit>

#include "platform/memory.h"
#include "search/types.h"

namespace zar {

HashTable hash_table{};

namespace {

constexpr int kClusterSize = 4;
constexpr int kLeastMegabytes = 16;
constexpr int kMostMegabytes = 1024;
constexpr int kFallbackMegabytes = 128;

// Scores beyond this are shifted by some centipawns a ply.
constexpr Score kLargeScore = 3000;
constexpr int kLargeScorePerPly = 40;

std::uint64_t load(const std::uint64_t& word) {
    // atomic_ref takes no const object before C++26; loading does not write.
    return std::atomic_ref(const_cast<std::uint64_t&>(word)).load(std::memory_order_relaxed);
}

void store(std::uint64_t& word, std::uint64_t value) {
    std::atomic_ref(word).store(value, std::memory_order_relaxed);
}

constexpr std::uint64_t pack(Move move, int depth, int bound, std::uint32_t date, Score value) {
    return std::uint64_t{move} | std::uint64_t{static_cast<std::uint8_t>(depth)} << 16 |
           static_cast<std::uint64_t>(bound & 3) << 24 | std::uint64_t{date & 15} << 28 |
           std::uint64_t{static_cast<std::uint16_t>(value)} << 32;
}

constexpr Move data_move(std::uint64_t data) { return static_cast<Move>(data); }

constexpr int data_depth(std::uint64_t data) { return static_cast<int>(data >> 16 & 255); }

constexpr int data_bound(std::uint64_t data) { return static_cast<int>(data >> 24 & 3); }

constexpr std::uint32_t data_date(std::uint64_t data) {
    return static_cast<std::uint32_t>(data >> 28 & 15);
}

constexpr Score data_value(std::uint64_t data) { return static_cast<std::int16_t>(data >> 32); }

constexpr std::uint64_t kEmptyData = pack(kMoveNone, kHashEmptyDepth, kBoundNone, 0, 0);

void set_ages(HashTable& table) {
    for (std::uint32_t date = 0; date < kHashDates; ++date) {
        table.age[date] = (table.date - date) % kHashDates;
    }
}

HashEntry* cluster_of(const HashTable& table, std::uint64_t key) {
    return table.entries + (key & table.slot_mask);
}

// No locked instruction: a lost count is only a slightly smaller figure.
void count_used(HashTable& table) {
    std::atomic_ref used(table.used);
    used.store(used.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

void update(HashTable& table, HashEntry& entry, std::uint64_t old, std::uint64_t fresh) {
    if (data_date(old) != table.date) {
        count_used(table);
    }
    if (data_depth(old) > data_depth(fresh)) {
        const Move move = data_move(old) != kMoveNone ? data_move(old) : data_move(fresh);
        fresh = pack(move, data_depth(old), data_bound(old), table.date, data_value(old));
    } else if (data_move(fresh) == kMoveNone) {
        fresh |= data_move(old);
    }
    store(entry.data, fresh);
}

// The higher, the more readily the entry is given up.
int replace_score(const HashTable& table, std::uint64_t data) {
    const int age = static_cast<int>(table.age[data_date(data)]);
    return (age * 256 - data_depth(data)) * 4 - data_bound(data);
}

}  // namespace

void hash_init(HashTable& table) {
    table = HashTable{};
    set_ages(table);
}

void hash_alloc(HashTable& table, int megabytes) {
    const int wanted =
        megabytes < kLeastMegabytes ? kFallbackMegabytes : std::min(megabytes, kMostMegabytes);
    const auto bytes = std::bit_floor(static_cast<std::uint32_t>(wanted) << 20);
    const std::uint32_t slots = bytes / sizeof(HashEntry);
    table.slot_mask = slots - 1;
    table.entry_count = slots + kClusterSize - 1;
    table.entries = static_cast<HashEntry*>(checked_malloc(table.entry_count * sizeof(HashEntry)));
    hash_clear(table);
}

void hash_free(HashTable& table) {
    memory_free(table.entries);
    table.entries = nullptr;
    table.entry_count = 0;
    table.slot_mask = 0;
}

void hash_clear(HashTable& table) {
    table.date = 0;
    set_ages(table);
    table.used = 0;
    std::fill_n(table.entries, table.entry_count, HashEntry{0, kEmptyData});
}

void hash_new_search(HashTable& table) {
    table.date = (table.date + 1) % kHashDates;
    set_ages(table);
    table.used = 0;
}

bool hash_probe(const HashTable& table, std::uint64_t key, HashHit& hit) {
    const HashEntry* cluster = cluster_of(table, key);
    for (int i = 0; i < kClusterSize; ++i) {
        if (load(cluster[i].key) == key) {
            const std::uint64_t data = load(cluster[i].data);
            hit = {data_move(data), data_depth(data), data_bound(data), data_value(data)};
            return true;
        }
    }
    return false;
}

void hash_store(HashTable& table, std::uint64_t key, Move move, int depth, int bound, Score value) {
    HashEntry* cluster = cluster_of(table, key);
    const std::uint64_t fresh = pack(move, depth, bound, table.date, value);
    HashEntry* victim = cluster;
    std::uint64_t victim_data = 0;
    int victim_score = kNoScore;
    for (int i = 0; i < kClusterSize; ++i) {
        const std::uint64_t data = load(cluster[i].data);
        if (load(cluster[i].key) == key) {
            update(table, cluster[i], data, fresh);
            return;
        }
        const int score = replace_score(table, data);
        if (score > victim_score) {
            victim = cluster + i;
            victim_data = data;
            victim_score = score;
        }
    }
    if (data_date(victim_data) != table.date) {
        count_used(table);
    }
    store(victim->key, key);
    store(victim->data, fresh);
}

double hash_full(HashTable& table) {
    const std::uint32_t used = std::atomic_ref(table.used).load(std::memory_order_relaxed);
    return table.entry_count == 0 ? 0.0 : static_cast<double>(used) / table.entry_count * 1000;
}

Score value_to_hash(Score value, int ply) {
    if (value > kMateBound) {
        return value + ply;
    }
    if (value < -kMateBound) {
        return value - ply;
    }
    if (value < -kLargeScore && value > -kMateBound) {
        return value - kLargeScorePerPly * ply;
    }
    return value;
}

Score value_from_hash(Score value, int ply) {
    if (value > kMateBound) {
        return value - ply;
    }
    if (value < -kMateBound) {
        return value + ply;
    }
    if (value > kLargeScore && value < kMateBound) {
        return value - kLargeScorePerPly * ply;
    }
    if (value < -kLargeScore && value > -kMateBound) {
        return value + kLargeScorePerPly * ply;
    }
    return value;
}

}  // namespace zar
