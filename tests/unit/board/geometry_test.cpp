#include "board/geometry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <vector>

#include "board/piece.h"
#include "gtest/gtest.h"

namespace zar {
namespace {

struct Cell {
    int row;
    int column;
};

std::vector<Cell> board_cells() {
    std::vector<Cell> cells;
    for (int row = 4; row <= 11; ++row) {
        for (int column = 4; column <= 11; ++column) {
            cells.push_back({row, column});
        }
    }
    return cells;
}

bool is_on_board(Square square) {
    const auto cells = board_cells();
    return std::any_of(cells.begin(), cells.end(), [square](const Cell& cell) {
        return cell.row * 16 + cell.column == square;
    });
}

// What a table over differences must hold, filled by stepping away from every square.
using Expected = std::map<int, int>;

template <typename Table>
void expect_table(const Table& table, const Expected& expected) {
    ASSERT_EQ(table.size(), 239U);
    for (int delta = -119; delta <= 119; ++delta) {
        const auto found = expected.find(delta);
        EXPECT_EQ(table[static_cast<std::size_t>(delta + 119)],
                  found == expected.end() ? 0 : found->second)
            << "difference " << delta;
    }
}

TEST(Geometry, SquaresAreNumberedRowBySixteen) {
    EXPECT_EQ(kA1, 68);
    EXPECT_EQ(kE1, 72);
    EXPECT_EQ(kH1, 75);
    EXPECT_EQ(kA8, 180);
    EXPECT_EQ(kE8, 184);
    EXPECT_EQ(kH8, 187);
    constexpr std::array<Square, 8> first_file = {kA1, kA2, kA3, kA4, kA5, kA6, kA7, kA8};
    constexpr std::array<Square, 8> last_file = {kH1, kH2, kH3, kH4, kH5, kH6, kH7, kH8};
    for (int rank = 0; rank < 8; ++rank) {
        EXPECT_EQ(first_file[static_cast<std::size_t>(rank)], (rank + 4) * 16 + 4);
        EXPECT_EQ(last_file[static_cast<std::size_t>(rank)], (rank + 4) * 16 + 11);
    }
}

TEST(Geometry, TheTwoSquareIndicesAreInverse) {
    int index = 0;
    for (const Cell& cell : board_cells()) {
        const Square square = cell.row * 16 + cell.column;
        EXPECT_EQ(square_from_64[static_cast<std::size_t>(index)], square);
        EXPECT_EQ(square_of_64(index), square);
        EXPECT_EQ(square64_of(square), index);
        EXPECT_EQ(square_make(cell.row, cell.column), square);
        EXPECT_EQ(square_row(square), cell.row);
        EXPECT_EQ(square_column(square), cell.column);
        ++index;
    }
    EXPECT_EQ(index, 64);
}

TEST(Geometry, SixtyFourCellsAreOnTheBoardAndTheRestHaveNoIndex) {
    for (Square square = 0; square < 256; ++square) {
        EXPECT_EQ(square_is_on_board(square), is_on_board(square)) << square;
        EXPECT_EQ(square64_of(square) >= 0, is_on_board(square)) << square;
        EXPECT_TRUE(is_on_board(square) || square64_of(square) == -1) << square;
    }
    EXPECT_FALSE(square_is_on_board(kNoSquare));
    EXPECT_FALSE(square_is_on_board(-1));
    EXPECT_FALSE(square_is_on_board(256 + 68));
}

TEST(Geometry, PawnsPromoteOnTheFirstAndLastRank) {
    for (const Cell& cell : board_cells()) {
        EXPECT_EQ(square_is_promotion_rank(cell.row * 16 + cell.column),
                  cell.row == 4 || cell.row == 11)
            << cell.row << " " << cell.column;
    }
}

TEST(Geometry, FlippingRowsKeepsTheFile) {
    for (const Cell& cell : board_cells()) {
        const Square square = cell.row * 16 + cell.column;
        EXPECT_EQ(square_flip_rows(square), (15 - cell.row) * 16 + cell.column);
        EXPECT_EQ(square_relative_row(square, kWhite), cell.row);
        EXPECT_EQ(square_relative_row(square, kBlack), 15 - cell.row);
    }
}

TEST(Geometry, NeighbouringSquaresDifferInShade) {
    EXPECT_EQ(square_shade(kA1), 0);
    EXPECT_EQ(square_shade(kH1), 1);
    for (const Cell& cell : board_cells()) {
        const Square square = cell.row * 16 + cell.column;
        EXPECT_EQ(square_shade(square), 1 - square_shade(square + 1)) << square;
        EXPECT_EQ(square_shade(square), 1 - square_shade(square + 16)) << square;
    }
}

TEST(Geometry, NoStepFromTheBoardLeavesTheMailbox) {
    for (const Cell& cell : board_cells()) {
        for (const int step : knight_steps) {
            const int to = cell.row * 16 + cell.column + step;
            EXPECT_TRUE(to >= 0 && to < 256) << to;
            // A step over the edge of a row lands outside, never on the next row of the board.
            const int row = to >> 4;
            EXPECT_LE(std::abs(row - cell.row), 2);
        }
    }
}

TEST(Geometry, PawnsOfBothColoursStepTowardEachOther) {
    EXPECT_EQ(pawn_step_of(kWhite), 16);
    EXPECT_EQ(pawn_step_of(kBlack), -16);
}

TEST(Geometry, OnlyTheHomeSquaresOfKingsAndRooksTouchCastlingRights) {
    const std::map<Square, int> masks = {{kA1, 13}, {kE1, 12}, {kH1, 14},
                                         {kA8, 7},  {kE8, 3},  {kH8, 11}};
    for (Square square = 0; square < 256; ++square) {
        const auto found = masks.find(square);
        EXPECT_EQ(castle_mask_of(square), found == masks.end() ? 15 : found->second) << square;
    }
}

TEST(Geometry, AttackBitsFollowTheStepsOfEachMan) {
    Expected expected;
    for (const int step : {-33, -31, -18, -14, 14, 18, 31, 33}) {
        expected[step] |= 16;
    }
    for (int times = 1; times <= 7; ++times) {
        for (const int step : {-17, -15, 15, 17}) {
            expected[times * step] |= 32;
        }
        for (const int step : {-16, -1, 1, 16}) {
            expected[times * step] |= 64;
        }
    }
    for (const int step : {-17, -16, -15, -1, 1, 15, 16, 17}) {
        expected[step] |= 128;
    }
    expected[15] |= 4;
    expected[17] |= 4;
    expected[-15] |= 8;
    expected[-17] |= 8;
    expect_table(delta_mask, expected);
}

TEST(Geometry, LinesHaveTheirUnitStep) {
    Expected rays;
    for (int times = 1; times <= 7; ++times) {
        for (const int step : {-17, -16, -15, -1, 1, 15, 16, 17}) {
            rays[times * step] = step;
        }
    }
    expect_table(delta_ray, rays);
    Expected increments = rays;
    for (const int step : {-33, -31, -18, -14, 14, 18, 31, 33}) {
        increments[step] = step;
    }
    expect_table(delta_inc, increments);
}

TEST(Geometry, DistancesAreKingMoves) {
    for (const Cell& from : board_cells()) {
        for (const Cell& to : board_cells()) {
            const int rows = std::abs(from.row - to.row);
            const int columns = std::abs(from.column - to.column);
            const Square a = from.row * 16 + from.column;
            const Square b = to.row * 16 + to.column;
            ASSERT_EQ(king_distance_of(a, b), rows > columns ? rows : columns) << a << " " << b;
        }
    }
}

TEST(Geometry, TablesAreLookedUpFromOriginToTarget) {
    EXPECT_EQ(delta_mask_of(kE4, kD5), 4 | 32 | 128);
    EXPECT_EQ(delta_mask_of(kD5, kE4), 8 | 32 | 128);
    EXPECT_EQ(delta_mask_of(kA1, kH8), 32);
    EXPECT_EQ(delta_mask_of(kA1, kB3), 16);
    EXPECT_EQ(delta_mask_of(kA1, kA1), 0);
    EXPECT_EQ(delta_inc_of(kA1, kH8), 17);
    EXPECT_EQ(delta_inc_of(kH8, kA1), -17);
    EXPECT_EQ(delta_inc_of(kB3, kA1), -33);
    EXPECT_EQ(delta_ray_of(kB3, kA1), 0);
    EXPECT_EQ(delta_ray_of(kH1, kA1), -1);
    EXPECT_EQ(king_distance_of(kA1, kC8), 7);
}

TEST(Geometry, EachUnitStepBelongsToOneSlider) {
    for (int step = -17; step <= 17; ++step) {
        const int size = std::abs(step);
        const int expected = size == 15 || size == 17 ? 32 : size == 1 || size == 16 ? 64 : 0;
        EXPECT_EQ(ray_mask_of(step), expected) << step;
    }
}

}  // namespace
}  // namespace zar
