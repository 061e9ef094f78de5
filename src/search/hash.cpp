#include "search/hash.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <climits>
#include <utility>

#include "platform/memory.h"
#include "search/types.h"

namespace zar {

HashTable hash_table{};

namespace {

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

// The draft with its high bit flipped and the bound behind it: the rank of a result among others.
constexpr std::uint32_t kRankMask = 0x3FF;
constexpr std::uint32_t kFlippedBit = 0x80;

constexpr int kValueShift = 32;
constexpr int kRankShift = 50;
constexpr int kDraftShift = 52;
constexpr int kDateShift = 60;

constexpr std::uint64_t pack(Move move, int depth, int bound, std::uint32_t date, Score value) {
    const std::uint32_t draft = static_cast<std::uint8_t>(depth) ^ kFlippedBit;
    const std::uint32_t rank = draft << 2 | static_cast<std::uint32_t>(bound & 3);
    return std::uint64_t{move} | std::uint64_t{static_cast<std::uint16_t>(value)} << kValueShift |
           std::uint64_t{rank} << kRankShift | std::uint64_t{date} << kDateShift;
}

constexpr Move data_move(std::uint64_t data) { return static_cast<Move>(data); }

constexpr int data_depth(std::uint64_t data) {
    return static_cast<int>((data >> kDraftShift & 255) ^ kFlippedBit);
}

constexpr int data_bound(std::uint64_t data) { return static_cast<int>(data >> kRankShift & 3); }

// depth * 4 + bound
constexpr int data_rank(std::uint64_t data) {
    return static_cast<int>((data >> kRankShift & kRankMask) ^ kFlippedBit << 2);
}

constexpr std::uint32_t data_date(std::uint64_t data) {
    return static_cast<std::uint32_t>(data >> kDateShift);
}

constexpr Score data_value(std::uint64_t data) {
    return static_cast<std::int16_t>(data >> kValueShift);
}

constexpr int kEmptyDepth = 128;
static_assert(pack(kMoveNone, kEmptyDepth, kBoundNone, 0, 0) == 0);

void set_ages(HashTable& table) {
    for (std::uint32_t date = 0; date < kHashDates; ++date) {
        table.age[date] = (table.date - date) % kHashDates;
    }
}

void forget_dates(HashTable& table) {
    table.date = 0;
    set_ages(table);
    table.used = 0;
}

HashEntry* cluster_of(const HashTable& table, std::uint64_t key) {
    return table.entries + (key & table.slot_mask);
}

// Calls action(entry, place) for the entries of a cluster in turn, until one call gives true; true
// when one did. Spelt out, since GCC keeps it a loop otherwise: 20 instructions a node.
template <typename Action>
bool any_of_cluster(HashEntry* cluster, Action action) {
    return [&]<int... kPlace>(std::integer_sequence<int, kPlace...>) {
        return (action(cluster[kPlace], kPlace) || ...);
    }
    (std::make_integer_sequence<int, kHashClusterSize>());
}

// The entry that holds the position; null when there is none.
HashEntry* find(HashEntry* cluster, std::uint64_t key) {
    HashEntry* found = nullptr;
    any_of_cluster(cluster, [&](HashEntry& entry, int) {
        if (load(entry.key) != key) {
            return false;
        }
        found = &entry;
        return true;
    });
    return found;
}

// No locked instruction: a lost count is only a slightly smaller figure.
void count_used(HashTable& table) {
    std::atomic_ref used(table.used);
    used.store(used.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

void update(HashTable& table, HashEntry& entry, std::uint64_t fresh) {
    const std::uint64_t old = load(entry.data);
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
    constexpr int kRanksPerAge = kRankMask + 1;
    return static_cast<int>(table.age[data_date(data)]) * kRanksPerAge - data_rank(data);
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
    table.entry_count = slots + kHashClusterSize - 1;
    table.entries = static_cast<HashEntry*>(checked_malloc(table.entry_count * sizeof(HashEntry)));
    forget_dates(table);
}

void hash_free(HashTable& table) {
    memory_free(table.entries, table.entry_count * sizeof(HashEntry));
    table.entries = nullptr;
    table.entry_count = 0;
    table.slot_mask = 0;
}

void hash_clear(HashTable& table) {
    forget_dates(table);
    memory_clear(table.entries, table.entry_count * sizeof(HashEntry));
}

void hash_new_search(HashTable& table) {
    table.date = (table.date + 1) % kHashDates;
    set_ages(table);
    table.used = 0;
}

bool hash_probe(const HashTable& table, std::uint64_t key, HashHit& hit) {
    const HashEntry* const entry = find(cluster_of(table, key), key);
    if (entry == nullptr) {
        return false;
    }
    const std::uint64_t data = load(entry->data);
    hit = {data_move(data), data_depth(data), data_bound(data), data_value(data)};
    return true;
}

void hash_store(HashTable& table, std::uint64_t key, Move move, int depth, int bound, Score value) {
    HashEntry* const cluster = cluster_of(table, key);
    const std::uint64_t fresh = pack(move, depth, bound, table.date, value);
    if (HashEntry* const entry = find(cluster, key)) {
        update(table, *entry, fresh);
        return;
    }
    // The place in the cluster makes the low bits of a score, so that of equals the first one goes.
    int best = INT_MIN;
    any_of_cluster(cluster, [&](HashEntry& entry, int place) {
        best = std::max(best, replace_score(table, load(entry.data)) * kHashClusterSize +
                                  kHashClusterSize - 1 - place);
        return false;
    });
    HashEntry& victim = cluster[kHashClusterSize - 1 - (best & (kHashClusterSize - 1))];
    if (data_date(load(victim.data)) != table.date) {
        count_used(table);
    }
    store(victim.key, key);
    store(victim.data, fresh);
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
