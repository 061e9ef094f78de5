#include "eval/patterns.h"

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of_men;
using Patterns = test::EvalTest;

struct Row {
    const char* men;
    ScorePair score;
};

// White's view, and the opposite with colours exchanged.
void expect_scores(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const std::string fen = fen_of_men(row.men);
        EXPECT_EQ(evaluate_patterns(board_of(fen)), row.score) << fen;
        const std::string swapped = test::fen_swap_colors(fen);
        EXPECT_EQ(evaluate_patterns(board_of(swapped)), ScorePair{} - row.score) << swapped;
    }
}

TEST_F(Patterns, TheStartPositionHasNone) {
    EXPECT_EQ(evaluate_patterns(board_of(kStartFen)), ScorePair{});
}

TEST_F(Patterns, ABishopInTheEnemyCornerIsTrappedByAPawn) {
    expect_scores({
        {"w Ke1 ke8 Ba7 pb6", {-75, -75}},
        {"w Ke1 ke8 Bb8 pc7", {-75, -75}},
        {"w Ke1 ke8 Bh7 pg6", {-75, -75}},
        {"w Ke1 kd7 Bg8 pf7", {-75, -75}},
        {"w Ke1 ke8 Ba7 pb5", {0, 0}},
        {"w Ke1 ke8 Ba7 Pb6", {0, 0}},
        {"w Ke1 ke8 Na7 pb6", {0, 0}},
        {"w Ke1 ke8 ba7 pb6", {0, 0}},
        {"w Ke1 ke8 Ba7 pc7", {0, 0}},
    });
}

TEST_F(Patterns, EachCornerIsPenalisedOnce) {
    expect_scores({
        {"w Ke1 ke8 Ba7 pb6 Bb8 pc7", {-75, -75}},
        {"w Ke1 kd7 Bh7 pg6 Bg8 pf7", {-75, -75}},
        {"w Ke1 ke8 Ba7 pb6 Bh7 pg6", {-150, -150}},
    });
}

TEST_F(Patterns, ABishopOnTheThirdRankFromTheEdgeIsHalfTrapped) {
    expect_scores({
        {"w Ke1 ke8 Ba6 pb5", {-37, -37}},
        {"w Ke1 ke8 Bh6 pg5", {-37, -37}},
        {"w Ke1 ke8 Ba6 pb5 Bh6 pg5", {-74, -74}},
        {"w Ke1 ke8 Ba6 pb5 Ba7 pb6", {-112, -112}},
    });
}

TEST_F(Patterns, ABishopIsShutInByABlockedCentrePawn) {
    expect_scores({
        {"w Kh1 kh8 Pd2 Nd3 Bc1", {-25, 0}},
        {"w Kh1 kh8 Pd2 nd3 Bc1", {-25, 0}},
        {"w Kh1 kh8 Pd2 Pd3 Bc1", {-25, 0}},
        {"w Kh1 kh8 Pe2 ne3 Bf1", {-25, 0}},
        {"w Kh1 kh8 Pd2 Nd3 Bc1 Pe2 Ne3 Bf1", {-50, 0}},
        {"w Kh1 kh8 Pd2 Bc1", {0, 0}},
        {"w Kh1 kh8 Pd2 Nd3 Bf1", {0, 0}},
        {"w Kh1 kh8 pd2 Nd3 Bc1", {0, 0}},
        {"w Kh1 kh8 Pe2 Ne3 Bc1", {0, 0}},
    });
}

TEST_F(Patterns, ARookIsShutInByItsKing) {
    expect_scores({
        {"w Kc1 ke8 Ra1", {-25, 0}},
        {"w Kc1 ke8 Ra2", {-25, 0}},
        {"w Kc1 ke8 Rb1", {-25, 0}},
        {"w Kb1 ke8 Ra1", {-25, 0}},
        {"w Kb1 ke8 Ra2", {-25, 0}},
        {"w Kb1 ke8 Ra1 Ra2", {-25, 0}},
        {"w Kf1 ke8 Rh1", {-25, 0}},
        {"w Kf1 ke8 Rh2", {-25, 0}},
        {"w Kf1 ke8 Rg1", {-25, 0}},
        {"w Kg1 ke8 Rh1", {-25, 0}},
        {"w Kg1 ke8 Rh2", {-25, 0}},
        {"w Kb1 ke8 Rc1", {0, 0}},
        {"w Kb1 ke8 Rb2", {0, 0}},
        {"w Kc1 ke8 Rb2", {0, 0}},
        {"w Kg1 ke8 Rf1", {0, 0}},
        {"w Kd1 ke8 Ra1", {0, 0}},
        {"w Kg1 ke8 Ra1", {0, 0}},
        {"w Kb1 ke8 ra2", {0, 0}},
    });
}

TEST_F(Patterns, PenaltiesFollowTheLevel) {
    set_level(9);
    expect_scores({
        {"w Ke1 ke8 Ba7 pb6", {-67, -67}},
        {"w Ke1 ke8 Ba6 pb5", {-33, -33}},
        {"w Kh1 kh8 Pd2 Nd3 Bc1", {-22, 0}},
        {"w Kc1 ke8 Ra1", {-22, 0}},
    });
}

}  // namespace
}  // namespace zar
