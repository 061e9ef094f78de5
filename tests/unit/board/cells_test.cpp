#include "board/cells.h"

#include <array>

#include "board/geometry.h"
#include "board/piece.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/search_support.h"

namespace zar {
namespace {

using test::board_of;

constexpr std::array<unsigned, 6> kAskedBits = {kWhiteBit,     kBlackBit,  kWhitePawnBit,
                                                kBlackPawnBit, kKnightBit, kKingBit};

bool has_bit(const Board& board, Square square, unsigned bit) {
    return (static_cast<unsigned>(board_piece(board, square)) & bit) != 0;
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
            for (const unsigned bit : kAskedBits) {
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
            for (const unsigned bit : kAskedBits) {
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

int walked(const Board& board, Square square, int step) {
    int count = 0;
    for (Square to = square + step; board_piece(board, to) == kEmpty; to += step) {
        ++count;
    }
    return count;
}

TEST(Cells, EmptyCellsAreCountedUpToMenAndEdges) {
    const auto compare = [](const Board& board) {
        for (const Square square : square_from_64) {
            ASSERT_EQ(empty_cells_beside(board, square),
                      walked(board, square, -1) + walked(board, square, 1))
                << square;
        }
    };
    test::for_each_position(40, compare);
    compare(board_of("7k/8/8/8/8/8/8/K7 w - - 0 1"));
    EXPECT_EQ(empty_cells_beside(board_of("7k/8/8/8/R7/8/8/K7 w - - 0 1"), kA4), 7);
    EXPECT_EQ(empty_cells_beside(board_of("6k1/8/8/8/7R/8/8/K7 w - - 0 1"), kH4), 7);
}

}  // namespace
}  // namespace zar
