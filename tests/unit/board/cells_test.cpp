#include "board/cells.h"

#include <array>

#include "board/geometry.h"
#include "board/piece.h"
#include "gtest/gtest.h"
#include "support/board_support.h"
#include "support/search_support.h"

namespace zar {
namespace {

using test::board_of;

constexpr std::array<int, 6> kAskedBits = {kWhiteBit,     kBlackBit,  kWhitePawnBit,
                                           kBlackPawnBit, kKnightBit, kKingBit};

bool has_bit(const Board& board, Square square, int bit) {
    return (board_piece(board, square) & bit) != 0;
}

// Squares of the board and the rows of the edge that a pawn on its last rank looks at.
template <typename Action>
void for_each_cell(Action action) {
    for (int row = kFirstLine - 1; row <= kLastLine + 1; ++row) {
        for (int column = kFirstLine; column <= kLastLine; ++column) {
            action(square_make(row, column));
        }
    }
}

TEST(Cells, BesideMeansTheTwoNeighboursInTheRow) {
    test::for_each_position(20, [](const Board& board) {
        for_each_cell([&](Square square) {
            for (const int bit : kAskedBits) {
                const bool left = has_bit(board, square - 1, bit);
                const bool right = has_bit(board, square + 1, bit);
                ASSERT_EQ(has_beside(board, square, bit), left || right) << square << ' ' << bit;
                ASSERT_EQ(has_on_both_sides(board, square, bit), left && right) << square;
            }
        });
    });
}

TEST(Cells, AroundMeansTheSquareAndItsEightNeighbours) {
    test::for_each_position(20, [](const Board& board) {
        for (const Square square : square_from_64) {
            for (const int bit : kAskedBits) {
                bool expected = has_bit(board, square, bit);
                for (const int step : king_steps) {
                    expected = expected || has_bit(board, square + step, bit);
                }
                ASSERT_EQ(has_around(board, square, bit), expected) << square << ' ' << bit;
            }
        }
    });
}

TEST(Cells, AManBehindTheNextFileIsNotNear) {
    const Board board = board_of("4k3/8/8/8/2n1K1n1/8/8/8 w - - 0 1");
    EXPECT_FALSE(has_around(board, kE4, kBlackBit));
    EXPECT_FALSE(has_beside(board, kE4, kBlackBit));
    EXPECT_TRUE(has_around(board, kD4, kBlackBit));
    EXPECT_TRUE(has_around(board, kF4, kBlackBit));
    EXPECT_TRUE(has_around(board, kH5, kBlackBit));
    EXPECT_TRUE(has_around(board, kB3, kBlackBit));
}

// By a walk over the mailbox.
Square walked_end(const Board& board, Square from, Square step) {
    Square to = from + step;
    while (board_piece(board, to) == kEmpty) {
        to += step;
    }
    return to;
}

template <int kStep>
void compare_rays(const Board& board) {
    for (const Square square : square_from_64) {
        const Square end = walked_end(board, square, kStep);
        ASSERT_EQ(end_of_ray<kStep>(board, square), end) << square << ' ' << kStep;
        ASSERT_EQ(empty_cells<kStep>(board, square), (end - square) / kStep - 1);
    }
}

void compare_all_rays(const Board& board) {
    compare_rays<1>(board);
    compare_rays<-1>(board);
    compare_rays<15>(board);
    compare_rays<-15>(board);
    compare_rays<16>(board);
    compare_rays<-16>(board);
    compare_rays<17>(board);
    compare_rays<-17>(board);
}

TEST(Cells, RaysEndAtMenAndEdges) {
    test::for_each_position(40, compare_all_rays);
    compare_all_rays(board_of("7k/8/8/8/8/8/8/K7 w - - 0 1"));
    compare_all_rays(board_of("k7/8/8/8/8/8/8/7K w - - 0 1"));
}

TEST(Cells, ALineFromCornerToCornerIsEmptyBetween) {
    const Board board = board_of("k6r/8/8/8/8/8/8/B3K3 w - - 0 1");
    EXPECT_EQ(empty_cells<17>(board, kA1), 6);
    EXPECT_EQ(empty_cells<-17>(board, kH8), 6);
    EXPECT_EQ(empty_cells<16>(board, kA1), 6);
    EXPECT_EQ(empty_cells<-15>(board, kA8), 7);
    EXPECT_EQ(empty_cells<15>(board, kH1), 6);
}

}  // namespace
}  // namespace zar
