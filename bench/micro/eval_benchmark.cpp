// The evaluation of one position: in a window that every score lies in, so that nothing is left
// out, and in one that most scores miss.

#include "eval/eval.h"
#include "positions.h"

namespace zar::micro {

namespace {

void evaluate_all(benchmark::State& state, Score alpha, Score beta) {
    time_samples(state, calm_samples(), [=](const Sample& sample) {
        benchmark::DoNotOptimize(evaluate(sample.board, alpha, beta, 0));
    });
}

void warm(benchmark::State& state) { evaluate_all(state, -kMaxEval, kMaxEval); }
BENCHMARK(warm)->Name("evaluate/cached");

// Without tables the pawn and material records are computed every time: what a miss in both costs,
// but for the misses in memory.
void cold(benchmark::State& state) {
    eval_tables_free();
    evaluate_all(state, -kMaxEval, kMaxEval);
    eval_tables_allocate(1);
}
BENCHMARK(cold)->Name("evaluate/uncached");

void lazy(benchmark::State& state) {
    constexpr Score kFarScore = 1500;
    evaluate_all(state, kFarScore, kFarScore + 1);
}
BENCHMARK(lazy)->Name("evaluate/lazy");

}  // namespace

}  // namespace zar::micro
