#include "eval/king.h"

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using test::board_swap_colors;
using King = test::EvalTest;

// White's shelter; Black's is the same with colours exchanged.
struct Row {
    const char* what;
    const char* fen;
    int penalty;
};

void expect_penalties(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const Board board = board_of(row.fen);
        EXPECT_EQ(king_shelter_penalty(board, kWhite), row.penalty) << row.what << "\n" << row.fen;
        EXPECT_EQ(king_shelter_penalty(board_swap_colors(board), kBlack), row.penalty)
            << row.what << "\n"
            << row.fen;
    }
}

TEST_F(King, AFullWallHasNoAirHole) {
    expect_penalties({
        {"g1", "4k3/8/8/8/8/8/5PPP/6K1 w - - 0 1", 11},
        {"b1", "4k3/8/8/8/8/8/PPP5/1K6 w - - 0 1", 11},
        {"a1", "4k3/8/8/8/8/8/PP6/K7 w - - 0 1", 11},
    });
}

TEST_F(King, TheOwnFileCountsByTheRankOfItsPawn) {
    // The g-file is open: 36.
    expect_penalties({
        {"none", "4k3/8/8/8/8/8/8/7K w - - 0 1", 72 + 36},
        {"rank 7", "4k3/7P/8/8/8/8/8/7K w - - 0 1", 70 + 36},
        {"rank 6", "4k3/8/7P/8/8/8/8/7K w - - 0 1", 64 + 36},
        {"rank 5", "4k3/8/8/7P/8/8/8/7K w - - 0 1", 54 + 36},
        {"rank 4", "4k3/8/8/8/7P/8/8/7K w - - 0 1", 40 + 36},
        {"rank 3", "4k3/8/8/8/8/7P/8/7K w - - 0 1", 22 + 36},
        {"rank 2", "4k3/8/8/8/8/8/7P/7K w - - 0 1", 0 + 36},
        {"the rearmost counts", "4k3/8/8/7P/8/7P/8/7K w - - 0 1", 22 + 36},
    });
}

TEST_F(King, TheNeighbourTowardTheCentreHasItsTable) {
    // On the h-file there is no other neighbour; its pawn on h2 costs nothing.
    expect_penalties({
        {"rank 7", "4k3/6P1/8/8/8/8/7P/7K w - - 0 1", 35},
        {"rank 6", "4k3/8/6P1/8/8/8/7P/7K w - - 0 1", 32},
        {"rank 5", "4k3/8/8/6P1/8/8/7P/7K w - - 0 1", 26},
        {"rank 4", "4k3/8/8/8/6P1/8/7P/7K w - - 0 1", 18},
        {"rank 3", "4k3/8/8/8/8/6P1/7P/7K w - - 0 1", 14},
    });
}

TEST_F(King, TheNeighbourTowardTheEdgeHasItsTable) {
    expect_penalties({
        {"rank 7", "4k3/7P/8/8/8/8/5PP1/6K1 w - - 0 1", 35},
        {"rank 6", "4k3/8/7P/8/8/8/5PP1/6K1 w - - 0 1", 32},
        {"rank 5", "4k3/8/8/7P/8/8/5PP1/6K1 w - - 0 1", 27},
        {"rank 4", "4k3/8/8/8/7P/8/5PP1/6K1 w - - 0 1", 19},
        {"rank 3", "4k3/8/8/8/8/7P/5PP1/6K1 w - - 0 1", 9},
        {"none", "4k3/8/8/8/8/8/5PP1/6K1 w - - 0 1", 36},
    });
}

TEST_F(King, NeighboursTakeTheirRoleFromTheKingsFile) {
    // A pawn on rank 4 costs 18 toward the centre and 19 toward the edge, one on rank 5 26 and 27,
    // one on the own third rank 22.
    expect_penalties({
        {"b", "4k3/8/8/P7/2P5/1P6/8/1K6 w - - 0 1", 27 + 18 + 22},
        {"c", "4k3/8/8/1P6/3P4/2P5/8/2K5 w - - 0 1", 27 + 18 + 22},
        {"d", "4k3/8/8/2P5/4P3/3P4/8/3K4 w - - 0 1", 27 + 19 + 22},
        {"e", "3k4/8/8/3P4/5P2/4P3/8/4K3 w - - 0 1", 27 + 19 + 22},
        {"f", "3k4/8/8/6P1/4P3/5P2/8/5K2 w - - 0 1", 27 + 18 + 22},
        {"g", "3k4/8/8/7P/5P2/6P1/8/6K1 w - - 0 1", 27 + 18 + 22},
    });
}

TEST_F(King, PawnsBehindTheKingDoNotShield) {
    expect_penalties({
        {"all behind", "4k3/8/8/8/8/6K1/5PPP/8 w - - 0 1", 72 + 36 + 36},
        {"level counts", "4k3/8/8/8/8/5PKP/8/8 w - - 0 1", 72 + 14 + 9},
        {"one ahead", "4k3/8/8/8/6P1/6K1/5P1P/8 w - - 0 1", 40 + 36 + 36},
    });
}

TEST_F(King, ARightToCastleHalvesTheWorstOfTheCentre) {
    expect_penalties({
        // e1: 72 + 36 + 0 = 108, g1: 11.
        {"no right", "4k3/8/8/8/8/8/5PPP/4K2R w - - 0 1", 108},
        {"king side", "4k3/8/8/8/8/8/5PPP/4K2R w K - 0 1", 59},
        // b1: 0 + 14 + 9 = 23; (144 + 23) / 2.
        {"queen side", "4k3/8/8/8/8/P1P5/1P6/R3K3 w Q - 0 1", 83},
        // The best of 23 and 11; the king in the centre has 72 + 36 + 0.
        {"both", "4k3/8/8/8/8/P1P5/1P3PPP/R3K2R w KQ - 0 1", 59},
        // The king is safe where it is: 11; castling would mean 72 + 0 + 36.
        {"not needed", "4k3/8/8/8/8/8/3PPP2/4K2R w K - 0 1", 11},
    });
}

}  // namespace
}  // namespace zar
