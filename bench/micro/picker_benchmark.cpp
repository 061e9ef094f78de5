// The pickers, serving all moves of one position without a move from the table and with empty
// histories.

#include "positions.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/order.h"

namespace zar::micro {

namespace {

constexpr int kLeastMegabytes = 16;

// The pickers fetch entries of the table, so there has to be one.
class EmptyTables {
  public:
    EmptyTables() {
        search_tables_clear(0);
        hash_alloc(hash_table, kLeastMegabytes);
    }
    EmptyTables(const EmptyTables&) = delete;
    EmptyTables& operator=(const EmptyTables&) = delete;
    ~EmptyTables() { hash_free(hash_table); }
};

void serve_all(benchmark::State& state, Samples& samples) {
    const EmptyTables tables;
    time_samples(state, samples, [](Sample& sample) {
        Picker picker;
        picker_init(picker, sample.board, sample.attack, 0, kMoveNone, 0);
        while (const Move move = next_move(picker, 0)) {
            benchmark::DoNotOptimize(move);
        }
    });
}

void serve_all_quiescence(benchmark::State& state, Samples& samples, bool include_checks) {
    const EmptyTables tables;
    time_samples(state, samples, [=](Sample& sample) {
        Picker picker;
        qpicker_init(picker, sample.board, sample.attack, include_checks, 0);
        while (const Move move = next_qmove(
                   picker, [](Move) { return false; }, 0)) {
            benchmark::DoNotOptimize(move);
        }
    });
}

void main_calm(benchmark::State& state) { serve_all(state, calm_samples()); }
BENCHMARK(main_calm)->Name("picker/main");

void main_in_check(benchmark::State& state) { serve_all(state, check_samples()); }
BENCHMARK(main_in_check)->Name("picker/main_in_check");

void q_calm(benchmark::State& state) { serve_all_quiescence(state, calm_samples(), false); }
BENCHMARK(q_calm)->Name("picker/quiescence");

void q_with_checks(benchmark::State& state) { serve_all_quiescence(state, calm_samples(), true); }
BENCHMARK(q_with_checks)->Name("picker/quiescence_with_checks");

void q_in_check(benchmark::State& state) { serve_all_quiescence(state, check_samples(), false); }
BENCHMARK(q_in_check)->Name("picker/quiescence_in_check");

}  // namespace

}  // namespace zar::micro
