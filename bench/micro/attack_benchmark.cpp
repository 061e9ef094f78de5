// Tests of attacks and exchanges, for one square, position or move.

#include "board/exchange.h"
#include "positions.h"

namespace zar::micro {

namespace {

// Around the king, where the engine asks most.
void square_attacked(benchmark::State& state) {
    time_samples(state, calm_samples(), [](const Sample& sample) {
        const Board& board = sample.board;
        for (const int step : king_steps) {
            const Square square = board_king(board, board.turn) + step;
            benchmark::DoNotOptimize(is_attacked(board, square, color_opposite(board.turn)));
        }
    });
    report_each(state, calm_samples().size() * king_steps.size());
}
BENCHMARK(square_attacked)->Name("attack/is_attacked");

void checkers_when_calm(benchmark::State& state) {
    Attack attack;
    time_samples(state, calm_samples(), [&](const Sample& sample) {
        attack_set(attack, sample.board);
        benchmark::DoNotOptimize(attack);
    });
}
BENCHMARK(checkers_when_calm)->Name("attack/attack_set");

void checkers_in_check(benchmark::State& state) {
    Attack attack;
    time_samples(state, check_samples(), [&](const Sample& sample) {
        attack_set(attack, sample.board);
        benchmark::DoNotOptimize(attack);
    });
}
BENCHMARK(checkers_in_check)->Name("attack/attack_set_in_check");

void gives_check(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::pseudo, [](Move move, Board& board) {
        benchmark::DoNotOptimize(move_is_check(move, board));
    });
}
BENCHMARK(gives_check)->Name("attack/move_is_check");

void is_legal(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::pseudo, [](Move move, Board& board) {
        benchmark::DoNotOptimize(move_is_legal(move, board));
    });
}
BENCHMARK(is_legal)->Name("attack/move_is_legal");

void is_legal_in_check(benchmark::State& state) {
    time_moves(state, check_samples(), &Sample::pseudo, [](Move move, Board& board) {
        benchmark::DoNotOptimize(move_is_legal(move, board));
    });
}
BENCHMARK(is_legal_in_check)->Name("attack/move_is_legal_in_check");

void exchange_captures(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::captures,
               [](Move move, Board& board) { benchmark::DoNotOptimize(see(move, board)); });
}
BENCHMARK(exchange_captures)->Name("exchange/see_captures");

void exchange_all(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::legal,
               [](Move move, Board& board) { benchmark::DoNotOptimize(see(move, board)); });
}
BENCHMARK(exchange_all)->Name("exchange/see_all_moves");

void threshold_captures(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::captures, [](Move move, Board& board) {
        benchmark::DoNotOptimize(see_at_least(move, board, 0));
    });
}
BENCHMARK(threshold_captures)->Name("exchange/see_at_least_captures");

void threshold_all(benchmark::State& state) {
    time_moves(state, calm_samples(), &Sample::legal, [](Move move, Board& board) {
        benchmark::DoNotOptimize(see_at_least(move, board, 0));
    });
}
BENCHMARK(threshold_all)->Name("exchange/see_at_least_all_moves");

}  // namespace

}  // namespace zar::micro
