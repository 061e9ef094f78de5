// Thousands of positions, the same ones in every run: reached by random play, reached by the
// engine's own play, and set up at random.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "board/board.h"
#include "board/make.h"
#include "board/move.h"
#include "gtest/gtest.h"
#include "support/board_support.h"
#include "support/move_support.h"
#include "support/search_support.h"

namespace zar::test {

// Its raw numbers are the same with every library; those of the library's distributions are not.
using Random = std::mt19937_64;

// 0 <= result < n.
[[nodiscard]] inline std::size_t below(Random& random, std::size_t n) {
    return static_cast<std::size_t>(random() % n);
}

struct Game {
    std::string fen;
    std::vector<Move> moves;
};

// Games in which the engine chooses most of the moves, by searches one and two plies deep. Played
// at the first call, which needs the tables of a SearchTest.
[[nodiscard]] const std::vector<Game>& engine_games();

// FENs of legal set-ups: few men and many, promoted men up to nine queens a side, castling rights,
// en passant, pins. In half of them the side to move is in check.
[[nodiscard]] const std::vector<std::string>& set_ups();

// Calls `visit(board)`, board constant, for every position of a game until a fatal failure.
template <typename Visit>
void visit_game(const Game& game, Visit visit) {
    Board board = board_of(game.fen);
    visit(board);
    for (const Move move : game.moves) {
        if (::testing::Test::HasFatalFailure()) {
            return;
        }
        UndoInfo undo;
        move_do(board, move, undo);
        visit(board);
    }
}

// The same for every position that games reach. Their lists have the order that play gives them.
template <typename Visit>
void visit_reached(Visit visit) {
    random_walks(20250718, 5, 60, visit);
    for_each_position(45, visit);
    if (::testing::Test::HasFatalFailure()) {
        return;  // an engine that has failed already might not live through its games
    }
    for (const Game& game : engine_games()) {
        if (::testing::Test::HasFatalFailure()) {
            return;
        }
        visit_game(game, visit);
    }
}

// The same for all set-ups.
template <typename Visit>
void visit_set_ups(Visit visit) {
    for (const std::string& fen : set_ups()) {
        if (::testing::Test::HasFatalFailure()) {
            return;
        }
        const Board board = board_of(fen);
        visit(board);
    }
}

template <typename Visit>
void visit_all(Visit visit) {
    visit_reached(visit);
    visit_set_ups(visit);
}

}  // namespace zar::test
