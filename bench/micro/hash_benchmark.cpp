// The hash table, by its size in megabytes: in a large one every key misses the processor's caches.

#include <vector>

#include "positions.h"
#include "search/hash.h"

namespace zar::micro {

namespace {

constexpr std::size_t kKeyCount = 1U << 17;

// The same numbers on every machine; none is 0.
std::vector<std::uint64_t> make_keys(std::uint64_t seed) {
    std::vector<std::uint64_t> keys(kKeyCount);
    for (std::uint64_t& key : keys) {
        seed ^= seed << 13;
        seed ^= seed >> 7;
        seed ^= seed << 17;
        key = seed;
    }
    return keys;
}

constexpr std::uint64_t kStoredSeed = 0x9E3779B97F4A7C15;
constexpr std::uint64_t kOtherSeed = 0xD1B54A32D192ED03;

// A table that holds results of the first keys.
class FilledTable {
  public:
    explicit FilledTable(const benchmark::State& state) : stored_(make_keys(kStoredSeed)) {
        hash_alloc(hash_table, static_cast<int>(state.range(0)));
        store_all();
    }
    FilledTable(const FilledTable&) = delete;
    FilledTable& operator=(const FilledTable&) = delete;
    ~FilledTable() { hash_free(hash_table); }

    [[nodiscard]] const std::vector<std::uint64_t>& stored() const { return stored_; }

    // Results of the keys, each XORed with `change`, whose low half must be 0: the same clusters,
    // but other positions.
    void store_all(std::uint64_t change = 0) const {
        constexpr int kDepth = 5;
        constexpr int kLower = 2;
        for (const std::uint64_t key : stored_) {
            hash_store(hash_table, key ^ change, static_cast<Move>(key & 0xFFF), kDepth, kLower, 0);
        }
    }

  private:
    std::vector<std::uint64_t> stored_;
};

void probe_all(benchmark::State& state, const std::vector<std::uint64_t>& keys) {
    HashHit hit{};
    for ([[maybe_unused]] const auto iteration : state) {
        for (const std::uint64_t key : keys) {
            benchmark::DoNotOptimize(hash_probe(hash_table, key, hit));
        }
    }
    report_each(state, keys.size());
}

void probe_hit(benchmark::State& state) {
    const FilledTable table(state);
    probe_all(state, table.stored());
}
BENCHMARK(probe_hit)->Name("table/probe_hit")->Arg(16)->Arg(256);

void probe_miss(benchmark::State& state) {
    const FilledTable table(state);
    probe_all(state, make_keys(kOtherSeed));
}
BENCHMARK(probe_miss)->Name("table/probe_miss")->Arg(16)->Arg(256);

// Fetched ahead of the probe by some positions, as the search does it.
void probe_prefetched(benchmark::State& state) {
    constexpr std::size_t kAhead = 8;
    const FilledTable table(state);
    const std::vector<std::uint64_t>& keys = table.stored();
    HashHit hit{};
    for ([[maybe_unused]] const auto iteration : state) {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            hash_prefetch(hash_table, keys[(i + kAhead) % keys.size()]);
            benchmark::DoNotOptimize(hash_probe(hash_table, keys[i], hit));
        }
    }
    report_each(state, keys.size());
}
BENCHMARK(probe_prefetched)->Name("table/probe_prefetched")->Arg(16)->Arg(256);

// Results of positions that have one.
void store_again(benchmark::State& state) {
    const FilledTable table(state);
    for ([[maybe_unused]] const auto iteration : state) {
        table.store_all();
    }
    report_each(state, table.stored().size());
}
BENCHMARK(store_again)->Name("table/store_again")->Arg(16)->Arg(256);

// Results of positions that have none, in place of others.
void store_new(benchmark::State& state) {
    const FilledTable table(state);
    std::uint64_t round = 0;
    for ([[maybe_unused]] const auto iteration : state) {
        table.store_all(++round << 32);
    }
    report_each(state, table.stored().size());
}
BENCHMARK(store_new)->Name("table/store_new")->Arg(16)->Arg(256);

}  // namespace

}  // namespace zar::micro
