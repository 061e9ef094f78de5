// What the benchmarks work on: the positions of the bench and some that follow them. The same on
// every machine, made at the first call.
#pragma once

#include <cstddef>
#include <vector>

#include "benchmark/benchmark.h"
#include "board/attack.h"
#include "board/board.h"
#include "board/make.h"
#include "board/move.h"
#include "board/movegen.h"

namespace zar::micro {

// A position, with what the benchmarks would not want to compute while the clock runs.
struct Sample {
    Board board;
    Attack attack;  // the checkers of the side to move
    MoveList legal;
    MoveList pseudo;    // of gen_moves out of check, of gen_evasions_pseudo in check
    MoveList captures;  // of gen_captures; empty in check
};

using Samples = std::vector<Sample>;

// The bench positions whose side to move is not in check, and every sixth position that a legal
// move makes of one, as long as it is not in check either.
Samples& calm_samples();

// All positions in check that a legal move makes of a bench position.
Samples& check_samples();

// Reports the mean time of one of `count` things done in each iteration.
inline void report_each(benchmark::State& state, std::size_t count) {
    using benchmark::Counter;
    state.counters["each"] =
        Counter(static_cast<double>(count), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

// Times action(sample) for all samples, and reports the time for one.
template <typename Action>
void time_samples(benchmark::State& state, Samples& samples, Action action) {
    for ([[maybe_unused]] const auto iteration : state) {
        for (Sample& sample : samples) {
            action(sample);
        }
    }
    report_each(state, samples.size());
}

// Times action(move, board) for all moves of one list of each sample, and reports the time for one.
template <typename Action>
void time_moves(benchmark::State& state, Samples& samples, MoveList Sample::*list, Action action) {
    std::size_t count = 0;
    for (const Sample& sample : samples) {
        count += static_cast<std::size_t>((sample.*list).size);
    }
    for ([[maybe_unused]] const auto iteration : state) {
        for (Sample& sample : samples) {
            const MoveList& moves = sample.*list;
            for (std::size_t i = 0; i < static_cast<std::size_t>(moves.size); ++i) {
                action(moves.move[i], sample.board);
            }
        }
    }
    report_each(state, count);
}

}  // namespace zar::micro
