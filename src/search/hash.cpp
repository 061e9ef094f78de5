#include "search/hash.h"

#include <algorithm>
#include <bit>

#include "platform/compiler.h"
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

// Neither a mate score nor a large one: so are nearly all, and stored as they are.
constexpr bool is_ordinary(Score value) { return value >= -kLargeScore && value <= kLargeScore; }

constexpr int kEmptyDepth = 128;
static_assert(data_pack(kMoveNone, kEmptyDepth, kBoundNone, 0, 0) == 0);

void forget_dates(HashTable& table) {
    table.date = 0;
    table.used = 0;
}

// No locked instruction: a lost count is only a slightly smaller figure.
void count_used(HashTable& table) { relaxed_store(table.used, relaxed_load(table.used) + 1); }

void update(HashTable& table, HashEntry& entry, std::uint64_t fresh) {
    const std::uint64_t old = relaxed_load(entry.data);
    if (data_date(old) != table.date) {
        count_used(table);
    }
    if (data_depth(old) > data_depth(fresh)) {
        const Move move = data_move(old) != kMoveNone ? data_move(old) : data_move(fresh);
        fresh = data_pack(move, data_depth(old), data_bound(old), table.date, data_value(old));
    } else if (data_move(fresh) == kMoveNone) {
        fresh |= data_move(old);
    }
    relaxed_store(entry.data, fresh);
}

// The higher, the more readily the entry is given up: first by how many searches ago its date was,
// then by how far its rank is below the highest. Inverting the bits gives both: a rank's distance
// from the highest, and of a date, with the next date added, the age modulo 16.
std::uint64_t replace_score(std::uint64_t data, std::uint64_t next_date) {
    static_assert(kHashDates == 1U << (64 - kDateShift));
    static_assert(kRankMask + 1 == 1U << (kDateShift - kRankShift));
    constexpr std::uint64_t kInverted = std::uint64_t{kRankMask ^ kFlippedBit << 2} << kRankShift |
                                        std::uint64_t{kHashDates - 1} << kDateShift;
    return ((data ^ kInverted) + next_date) >> kRankShift;
}

}  // namespace

void hash_init(HashTable& table) { table = HashTable{}; }

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
    table.used = 0;
}

void hash_store(HashTable& table, std::uint64_t key, Move move, int depth, int bound, Score value) {
    HashEntry* const cluster = hash_cluster(table, key);
    const std::uint64_t fresh = data_pack(move, depth, bound, table.date, value);
    if (HashEntry* const entry = cluster_find(cluster, key)) {
        update(table, *entry, fresh);
        return;
    }
    // The place in the cluster makes the low bits of a score, so that of equals the first one goes.
    const std::uint64_t next_date = std::uint64_t{table.date + 1} << kDateShift;
    std::uint64_t best = 0;
    any_of_cluster(cluster, [&](HashEntry& entry, std::uint64_t place) {
        best =
            std::max(best, replace_score(relaxed_load(entry.data), next_date) * kHashClusterSize +
                               kHashClusterSize - 1 - place);
        return false;
    });
    HashEntry& victim = cluster[kHashClusterSize - 1 - (best & (kHashClusterSize - 1))];
    if (data_date(relaxed_load(victim.data)) != table.date) {
        count_used(table);
    }
    relaxed_store(victim.key, key);
    relaxed_store(victim.data, fresh);
}

double hash_full(HashTable& table) {
    const std::uint32_t used = relaxed_load(table.used);
    return table.entry_count == 0 ? 0.0 : static_cast<double>(used) / table.entry_count * 1000;
}

Score value_to_hash(Score value, int ply) {
    if (is_ordinary(value)) {
        return value;
    }
    if (value > kMateBound) {
        return value + ply;
    }
    if (value < -kMateBound) {
        return value - ply;
    }
    if (value < 0 && value > -kMateBound) {
        return value - kLargeScorePerPly * ply;
    }
    return value;
}

Score value_from_hash(Score value, int ply) {
    if (is_ordinary(value)) {
        return value;
    }
    if (value > kMateBound) {
        return value - ply;
    }
    if (value < -kMateBound) {
        return value + ply;
    }
    if (value > 0 && value < kMateBound) {
        return value - kLargeScorePerPly * ply;
    }
    if (value < 0 && value > -kMateBound) {
        return value + kLargeScorePerPly * ply;
    }
    return value;
}

}  // namespace zar
