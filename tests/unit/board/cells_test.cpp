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

TEST(Cells, AManBehindTheNextFileIsNotNear) {
    const Board board = board_of("4k3/8/8/8/2n1K1n1/8/8/8 w - - 0 1");
    EXPECT_FALSE(has_beside(board, kE4, kBlackBit));
    EXPECT_TRUE(has_beside(board, kD4, kBlackBit));
    EXPECT_TRUE(has_beside(board, kF4, kBlackBit));
    EXPECT_TRUE(has_beside(board, kH4, kBlackBit));
}

}  // namespace
}  // namespace zar
