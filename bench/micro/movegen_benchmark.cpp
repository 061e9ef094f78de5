// Generators, for one position, and making a move and taking it back.

#include "positions.h"

namespace zar::micro {

namespace {

void captures(benchmark::State& state) {
    MoveList list;
    time_samples(state, calm_samples(), [&](const Sample& sample) {
        gen_captures(list, sample.board);
        benchmark::DoNotOptimize(list);
    });
}
BENCHMARK(captures)->Name("generate/captures");

void quiets(benchmark::State& state) {
    MoveList list;
    time_samples(state, calm_samples(), [&](const Sample& sample) {
        gen_quiets(list, sample.board);
        benchmark::DoNotOptimize(list);
    });
}
BENCHMARK(quiets)->Name("generate/quiets");

void quiet_checks(benchmark::State& state) {
    MoveList list;
    time_samples(state, calm_samples(), [&](Sample& sample) {
        gen_quiet_checks(list, sample.board);
        benchmark::DoNotOptimize(list);
    });
}
BENCHMARK(quiet_checks)->Name("generate/quiet_checks");

void all_pseudo(benchmark::State& state) {
    MoveList list;
    time_samples(state, calm_samples(), [&](Sample& sample) {
        gen_moves(list, sample.board);
        benchmark::DoNotOptimize(list);
    });
}
BENCHMARK(all_pseudo)->Name("generate/pseudo_legal");

void all_legal(benchmark::State& state) {
    MoveList list;
    time_samples(state, calm_samples(), [&](Sample& sample) {
        gen_legal_moves(list, sample.board);
        benchmark::DoNotOptimize(list);
    });
}
BENCHMARK(all_legal)->Name("generate/legal");

void evasions(benchmark::State& state) {
    MoveList list;
    time_samples(state, check_samples(), [&](Sample& sample) {
        gen_evasions(list, sample.board, sample.attack);
        benchmark::DoNotOptimize(list);
    });
}
BENCHMARK(evasions)->Name("generate/evasions");

void evasions_pseudo(benchmark::State& state) {
    MoveList list;
    time_samples(state, check_samples(), [&](Sample& sample) {
        gen_evasions_pseudo(list, sample.board, sample.attack);
        benchmark::DoNotOptimize(list);
    });
}
BENCHMARK(evasions_pseudo)->Name("generate/evasions_pseudo_legal");

void pseudo_test(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::legal, [](Move move, Board& board) {
        benchmark::DoNotOptimize(move_is_pseudo(move, board));
    });
}
BENCHMARK(pseudo_test)->Name("generate/is_pseudo_legal");

void make_and_undo(Move move, Board& board) {
    UndoInfo undo;
    move_do(board, move, undo);
    benchmark::ClobberMemory();
    move_undo(board, move, undo);
}

void make_all(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::legal, make_and_undo);
}
BENCHMARK(make_all)->Name("make/all_moves");

void make_captures(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::captures, make_and_undo);
}
BENCHMARK(make_captures)->Name("make/captures");

void make_null(benchmark::State& state) {
    time_samples(state, calm_samples(), [](Sample& sample) {
        UndoInfo undo;
        move_do_null(sample.board, undo);
        benchmark::ClobberMemory();
        move_undo_null(sample.board, undo);
    });
}
BENCHMARK(make_null)->Name("make/null");

}  // namespace

}  // namespace zar::micro
