#include "eval/draws.h"

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of_men;
using Draws = test::EvalTest;

struct Row {
    const char* men;
    bool drawn;
};

// The same verdict is expected in all four ways to turn the board round.
void expect_draws(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const std::string fen = fen_of_men(row.men);
        for (const std::string& turned : {fen, test::fen_flip_files(fen)}) {
            for (const std::string& position : {turned, test::fen_swap_colors(turned)}) {
                EXPECT_EQ(is_recognised_draw(board_of(position), 0), row.drawn) << position;
            }
        }
    }
}

TEST_F(Draws, FiveMenOrMoreAreNeverRecognised) {
    expect_draws({
        {"w Ke1 ke8 Bc1 Bf4 ba3", false},
        {"w Ke1 Pa4 Pa5 Pa6 ka8", false},
    });
}

TEST_F(Draws, BareMaterial) {
    for (const char* men :
         {"w Ke1 ke8", "w Ke1 ke8 Nb1", "b Ke1 ke8 Nb1", "w Ke1 ke8 Bc1", "b Ke1 ke8 Bc1"}) {
        expect_draws({{men, true}});
    }
    expect_draws({
        {"w Ke1 ke8 Ra1", false},
        {"w Ke1 ke8 Qa1", false},
        {"w Ke1 ke8 Nb1 Ng1", false},
        {"w Ke1 ke8 Nb1 Bc1", false},
        {"w Ke1 ke8 Nb1 nb8", false},
        {"w Ke1 ke8 Nb1 bc8", false},
        {"w Ke1 ke8 Ra1 ra8", false},
        {"w Ke1 ke8 Qa1 qh8", false},
        {"w Ke1 ke8 Pa4 pa5", false},
        {"w Ke1 ke8 Pa4 nb8", false},
        {"w Ke1 Pa7 Nd4 ka8", false},
        {"w Ke1 Pa4 Pa5 ka8", false},
    });
}

TEST_F(Draws, BishopsOfOneShadeAreADraw) {
    expect_draws({
        {"w Ke1 ke8 Bc1 bf8", true},
        {"w Ke1 ke8 Bc1 bc8", false},
        {"b Ke1 ke8 Bf1 bc8", true},
    });
}

TEST_F(Draws, AWrongBishopDoesNotHelpARookPawn) {
    // a8 is light, c1 dark.
    expect_draws({
        {"w Ke1 Pa4 Bc1 ka8", true},
        {"b Ke1 Pa4 Bc1 kb7", true},
        {"w Ke1 Pa7 Bc1 kb7", true},
        {"w Ke1 Pa4 Bc1 kc7", false},
        {"w Ke1 Pa4 Bf1 ka8", false},
        {"w Ke1 Pb4 Bc1 kb8", false},
    });
}

TEST_F(Draws, ADefenderRightBeforeThePawnHolds) {
    expect_draws({
        {"w Kd5 Pe6 ke7", true},
        {"b Kd5 Pe6 ke7", true},
        {"w Kd4 Pe5 ke6", true},
        {"w Ka1 Pe2 ke3", true},
        {"b Kc4 Pd5 ke6", false},  // beside the file
        {"b Kc4 Pd5 kd8", false},  // three squares before it
    });
}

TEST_F(Draws, BeforeASeventhRankPawnStalemateDecides) {
    expect_draws({
        {"w Kd6 Pe7 ke8", true},  // any move gives the pawn away or stalemates
        {"w Kf6 Pe7 ke8", true},
        {"w Ke6 Pe7 ke8", false},
        {"b Kd6 Pe7 ke8", false},  // Black must step aside
        {"b Kf6 Pe7 ke8", false},
        {"b Ke6 Pe7 ke8", true},
        {"b Kd5 Pe7 ke8", true},
        {"w Kd5 Pe7 ke8", false},
        {"w Kb6 Pa7 ka8", true},
        {"b Kb6 Pa7 ka8", true},  // the corner holds anyway
    });
}

TEST_F(Draws, ADefenderTwoSquaresBeforeThePawnHoldsExceptAgainstASixthRankPawn) {
    expect_draws({
        {"b Kd6 Pe6 ke8", true},
        {"w Kd6 Pe6 ke8", false},  // beside the pawn
        {"w Kf6 Pe6 ke8", false},
        {"w Kd5 Pe6 ke8", true},
        {"w Kd5 Pe5 ke7", true},  // beside it, on the fifth rank
        {"w Ka1 Pe2 ke4", true},
        {"b Ka1 Pe2 ke4", true},
    });
}

TEST_F(Draws, TheOppositionHoldsWithTheAttackerToMove) {
    expect_draws({
        {"w Kd4 Pe4 kd6", true},  // beside the pawn
        {"b Kd4 Pe4 kd6", false},
        {"w Kf6 Pe6 kf8", true},
        {"w Kd6 Pe6 kc8", false},  // not before the king
        {"w Ke4 Pe3 ke6", true},   // right before the pawn
        {"b Ke4 Pe3 ke6", false},
        {"w Kd5 Pe4 kd7", true},  // diagonally before it
        {"w Kf5 Pe4 kf7", true},
        {"w Ke5 Pe4 ke7", true},
        {"w Kd6 Pe5 kd8", false},  // the pawn has come too far
        {"w Ke6 Pe5 ke8", false},
        {"w Ke5 Pe3 ke7", false},  // two ranks before it
        {"w Kd2 Pe5 kd4", false},  // behind it
        {"w Kc4 Pe4 kc6", false},  // two files away
    });
}

TEST_F(Draws, ARookPawnDoesNotPassTheCorner) {
    expect_draws({
        {"w Kh1 Pa2 kb8", true},
        {"b Kb6 Pa5 kb8", true},
        {"w Kc7 Pa6 ka8", true},
        {"w Kb6 Pa6 kc8", false},
        {"w Kh1 Pb2 kb8", false},
    });
}

TEST_F(Draws, AKingShutInBeforeItsRookPawn) {
    expect_draws({
        {"w Ka7 Pa6 kc7", true},
        {"b Ka7 Pa6 kc8", true},
        {"w Ka7 Pa5 kc6", true},
        {"w Ka7 Pa6 kc6", false},  // level with the pawn
        {"w Ka4 Pa2 kc3", false},  // a pawn on its second rank counts as on its third
        {"b Ka4 Pa2 kc4", true},
        {"b Ka5 Pa3 kc4", true},
        {"w Ka7 Pa6 kd7", false},
        {"w Kb6 Pa6 kd7", false},
    });
}

TEST_F(Draws, TheVerdictNeedsNoTables) {
    eval_tables_free();
    expect_draws({{"w Ke1 ke8 Nb1", true}, {"w Ke1 ke8 Ra1", false}});
}

}  // namespace
}  // namespace zar
