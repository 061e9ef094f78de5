#include "eval/passers.h"

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using Passers = test::EvalTest;

// The pawns are White's. The endgame bonus is 20 + the promise times the factor of the rank (26,
// 77, 154, 256 over 256, rounded); the promise is 120, 900 if unstoppable or else 80 if it may step
// on, 20 for each step of the enemy king and -5 for each of the own one to the square in front.
struct Row {
    const char* what;
    const char* fen;
    ScorePair score;
};

void expect_scores(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        for (const bool swapped : {false, true}) {
            const std::string fen = swapped ? test::fen_swap_colors(row.fen) : row.fen;
            const Board board = board_of(fen);
            PawnRecord pawns;
            evaluate_pawns(pawns, board, 0);
            EXPECT_EQ(evaluate_passers(board, swapped ? kBlack : kWhite, pawns), row.score)
                << row.what << "\n"
                << fen;
            EXPECT_EQ(evaluate_passers(board, swapped ? kWhite : kBlack, pawns), ScorePair{})
                << row.what << "\n"
                << fen;
        }
    }
}

TEST_F(Passers, OnTheFirstRanksOnlyTheMinimumCounts) {
    expect_scores({
        {"rank 2", "8/8/8/8/8/8/P6k/K7 w - - 0 1", {10, 20}},
        {"rank 2, king far", "7k/8/8/8/8/8/P7/K7 w - - 0 1", {10, 20}},
        {"rank 3", "7k/8/8/8/8/P7/8/K7 w - - 0 1", {10, 20}},
        {"rank 3, king near", "8/8/8/1k6/8/P7/8/7K w - - 0 1", {10, 20}},
    });
}

TEST_F(Passers, TheBonusGrowsWithTheRank) {
    // Black's knight keeps the pawn from being unstoppable. Kings on h1 and h8 are 7 files away.
    expect_scores({
        {"rank 4: 120 + 80 + 140 - 35 = 305", "7k/8/8/8/P7/5n2/8/7K w - - 0 1", {16, 51}},
        {"rank 5: 305", "7k/8/8/P7/8/5n2/8/7K w - - 0 1", {28, 112}},
        {"rank 6: 305", "7k/8/P7/8/8/5n2/8/7K w - - 0 1", {46, 203}},
        {"rank 7: 305", "7k/P7/8/8/8/5n2/8/7K w - - 0 1", {70, 325}},
    });
}

TEST_F(Passers, KingsCountByTheirDistanceToTheStopSquare) {
    expect_scores({
        {"120 + 80 + 40 - 35 = 205", "8/2k5/P7/8/8/5n2/8/7K w - - 0 1", {46, 143}},
        {"120 + 80 + 140 - 5 = 335", "7k/8/PK6/8/8/5n2/8/8 w - - 0 1", {46, 222}},
    });
}

TEST_F(Passers, TheStopSquareMustBeEmptyAndSafe) {
    expect_scores({
        {"blocked: 225", "n6k/P7/8/8/8/8/8/7K w - - 0 1", {70, 245}},
        {"king takes: 120 + 20 - 35 = 105", "1k6/8/P7/8/8/5n2/8/7K w - - 0 1", {46, 83}},
        {"attacked: 225", "1r5k/P7/8/8/8/8/8/7K w - - 0 1", {70, 245}},
        {"defended by the rook behind: 305", "1r5k/P7/8/8/8/8/8/R6K w - - 0 1", {70, 325}},
        {"attacked from behind too: 225", "1r5k/P7/8/8/8/8/8/r6K w - - 0 1", {70, 245}},
        {"own piece in the way: 225", "N6k/P7/8/8/8/8/1r6/7K w - - 0 1", {70, 245}},
    });
}

TEST_F(Passers, ABareKingTooFarAwayCannotStopAPawn) {
    expect_scores({
        {"rank 7: 120 + 900 + 140 - 35 = 1125", "7k/P7/8/8/8/8/8/K7 w - - 0 1", {70, 1145}},
        {"rank 5: 120 + 900 + 140 - 25 = 1135", "7k/8/8/P7/8/8/8/K7 w - - 0 1", {28, 361}},
        {"4 steps for 3: 120 + 900 + 80 - 35 = 1065", "4k3/8/8/P7/8/8/8/7K w - - 0 1", {28, 340}},
        {"4 steps for 3 and to move: 245", "4k3/8/8/P7/8/8/8/7K b - - 0 1", {28, 94}},
        {"5 steps for 3 and to move: 1085", "5k2/8/8/P7/8/8/8/7K b - - 0 1", {28, 346}},
        {"3 steps for 3: 120 + 80 + 60 - 35 = 225", "3k4/8/8/P7/8/8/8/7K w - - 0 1", {28, 88}},
        {"a pawn is no piece: 1125", "7k/P7/8/8/8/7p/7P/K7 w - - 0 1", {70, 1145}},
    });
}

TEST_F(Passers, AnOwnManAheadTakesTheTimeAway) {
    expect_scores({
        // 120 + 140 - 0 = 260, the own king on the stop square.
        {"own king", "8/K7/P7/8/8/8/8/7k w - - 0 1", {46, 176}},
        // 120 + 80 + 140 - 35 = 305, the stop square is free.
        {"own knight", "N7/8/P7/8/8/7K/8/7k w - - 0 1", {46, 203}},
    });
}

TEST_F(Passers, AKingBesideThePawnEscortsIt) {
    expect_scores({
        // 120 + 900 + 20 - 5 = 1035; Black's king is one step from c8.
        {"centre", "3k4/1K6/2P5/8/8/8/8/8 w - - 0 1", {46, 643}},
        // 120 + 900 + 60 - 5 = 1075
        {"rook pawn, king beside", "3k4/1K6/P7/8/8/8/8/8 b - - 0 1", {46, 667}},
        // The king on the c-file's last squares bars its own pawn but can step aside:
        // 120 + 900 + 40 - 0 = 1060
        {"centre, king ahead", "8/2K1k3/2P5/8/8/8/8/8 w - - 0 1", {46, 658}},
        // 120 + 80 + 40 - 5 = 235
        {"too far from the pawn", "1K6/4k3/2P5/8/8/8/8/8 w - - 0 1", {46, 161}},
        {"too far from the corner", "8/4k3/1K6/2P5/8/8/8/8 b - - 0 1", {28, 91}},
    });
}

TEST_F(Passers, AllPassedPawnsAreAddedAndOnlyTheFrontOneOfAFile) {
    // a4: 120 + 900 + 140 - 20 = 1140
    expect_scores({
        {"two files", "7k/8/8/8/P7/8/7P/K7 w - - 0 1", {16 + 10, 136 + 20}},
        {"one file", "7k/8/8/8/P7/P7/8/K7 w - - 0 1", {16, 136}},
    });
}

TEST_F(Passers, APromiseIsNeverNegative) {
    set_level(-10);
    expect_scores({{"rank 7", "7k/P7/8/8/8/5n2/8/7K w - - 0 1", {-69, -20}}});
}

TEST_F(Passers, LowerLevelsScaleTheTermsDown) {
    set_level(9);
    // 108 + 72 + 7 x 18 - 7 x 4 = 278
    expect_scores({{"rank 7", "7k/P7/8/8/8/5n2/8/7K w - - 0 1", {63, 18 + 278}}});
}

}  // namespace
}  // namespace zar
