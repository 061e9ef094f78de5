#include "board/set.h"

#include <bit>
#include <cstdint>
#include <random>

#include "board/board.h"
#include "gtest/gtest.h"
#include "support/board_support.h"
#include "support/search_support.h"

namespace zar {
namespace {

using test::board_of;

SquareSet set_of_square(Square square) { return set_of(square64_of(square)); }

// What a slider with these steps sees, by a walk over the mailbox.
template <typename Steps>
SquareSet walked_view(const Board& board, Square from, const Steps& steps) {
    SquareSet seen = 0;
    for (const int step : steps) {
        Square to = from;
        do {
            to += step;
            if (square_is_on_board(to)) {
                seen |= set_of_square(to);
            }
        } while (board_piece(board, to) == kEmpty);
    }
    return seen;
}

void compare_views(const Board& board) {
    const SquareSet men = board_men(board);
    for (const Square square : square_from_64) {
        const Square64 from = square64_of(square);
        const SquareSet diagonals = walked_view(board, square, bishop_steps);
        const SquareSet lines = walked_view(board, square, rook_steps);
        ASSERT_EQ(bishop_view(men, from), diagonals) << square;
        ASSERT_EQ(rook_view(men, from), lines) << square;
        ASSERT_EQ(bishop_reach(men, from), std::popcount(diagonals & ~men)) << square;
        ASSERT_EQ(rook_reach(men, from), std::popcount(lines & ~men)) << square;
    }
}

TEST(Set, SlidersSeeUpToTheFirstMan) {
    test::for_each_position(40, compare_views);
    compare_views(board_of("7k/8/8/8/8/8/8/K7 w - - 0 1"));
    compare_views(board_of("k7/8/8/8/8/8/8/7K w - - 0 1"));
}

TEST(Set, TheSquaresThatAKnightSeesAreCounted) {
    for (Square64 from = 0; from < 64; ++from) {
        const SquareSet seen = knight_view(from);
        // All subsets, the whole set first.
        SquareSet reached = seen;
        do {
            ASSERT_EQ(knight_count(reached, from), std::popcount(reached)) << from;
            reached = (reached - 1) & seen;
        } while (reached != seen);
    }
}

TEST(Set, ACornerSeesTheOtherCornerOverAnEmptyLine) {
    const SquareSet men = set_of_square(kA1) | set_of_square(kH8) | set_of_square(kA8);
    EXPECT_TRUE(set_has(bishop_view(men, square64_of(kA1)), square64_of(kH8)));
    EXPECT_TRUE(set_has(rook_view(men, square64_of(kA1)), square64_of(kA8)));
    EXPECT_TRUE(set_has(rook_view(men, square64_of(kA1)), square64_of(kH1)));
    EXPECT_EQ(bishop_reach(men, square64_of(kA1)), 6u);
    EXPECT_EQ(bishop_reach(men, square64_of(kH1)), 6u);
    EXPECT_EQ(rook_reach(men, square64_of(kA1)), 6u + 7u);
}

TEST(Set, AManSeesNoFurtherThanItsNeighbours) {
    const SquareSet men = king_view(square64_of(kE4)) | set_of_square(kE4);
    EXPECT_EQ(bishop_view(men, square64_of(kE4)) | rook_view(men, square64_of(kE4)),
              king_view(square64_of(kE4)));
    EXPECT_EQ(bishop_reach(men, square64_of(kE4)) + rook_reach(men, square64_of(kE4)), 0u);
}

template <typename Steps>
SquareSet stepped_view(Square from, const Steps& steps) {
    SquareSet seen = 0;
    for (const int step : steps) {
        if (square_is_on_board(from + step)) {
            seen |= set_of_square(from + step);
        }
    }
    return seen;
}

template <int kStep>
void compare_rays() {
    for (const Square square : square_from_64) {
        SquareSet seen = 0;
        for (Square to = square + kStep; square_is_on_board(to); to += kStep) {
            seen |= set_of_square(to);
        }
        EXPECT_EQ(ray_view<kStep>(square64_of(square)), seen) << square << ' ' << kStep;
    }
}

TEST(Set, StepsAndRaysEndAtTheEdge) {
    for (const Square square : square_from_64) {
        EXPECT_EQ(knight_view(square64_of(square)), stepped_view(square, knight_steps)) << square;
        EXPECT_EQ(king_view(square64_of(square)), stepped_view(square, king_steps)) << square;
    }
    compare_rays<1>();
    compare_rays<-1>();
    compare_rays<15>();
    compare_rays<-15>();
    compare_rays<16>();
    compare_rays<-16>();
    compare_rays<17>();
    compare_rays<-17>();
}

template <Color kColor>
SquareSet stepped_pawn_targets(SquareSet pawns) {
    SquareSet targets = 0;
    for (const Square square : square_from_64) {
        if (!set_has(pawns, square64_of(square))) {
            continue;
        }
        for (const int side : {-1, 1}) {
            const Square to = square + pawn_step_of(kColor) + side;
            if (square_is_on_board(to)) {
                targets |= set_of_square(to);
            }
        }
    }
    return targets;
}

// One step of every square, as far as it stays on the board.
SquareSet stepped(SquareSet set, int step) {
    SquareSet result = 0;
    for (const Square square : square_from_64) {
        if (set_has(set, square64_of(square)) && square_is_on_board(square + step)) {
            result |= set_of_square(square + step);
        }
    }
    return result;
}

SquareSet filled(SquareSet set, int step) {
    for (int i = 0; i < 7; ++i) {
        set |= stepped(set, step);
    }
    return set;
}

TEST(Set, WholeSetsMoveAsTheirSquaresDo) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 200; ++i) {
        const SquareSet set = random() & random() & random();
        EXPECT_EQ(pawn_targets<kWhite>(set), stepped_pawn_targets<kWhite>(set));
        EXPECT_EQ(pawn_targets<kBlack>(set), stepped_pawn_targets<kBlack>(set));
        EXPECT_EQ(set_up(set), stepped(set, 16));
        EXPECT_EQ(set_up(set, 2), stepped(stepped(set, 16), 16));
        EXPECT_EQ(set_down(set), stepped(set, -16));
        EXPECT_EQ(set_down(set, 3), stepped(stepped(stepped(set, -16), -16), -16));
        EXPECT_EQ(set_beside(set), stepped(set, -1) | stepped(set, 1));
        EXPECT_EQ(set_fill_up(set), filled(set, 16));
        EXPECT_EQ(set_fill_down(set), filled(set, -16));
    }
}

TEST(Set, FlippingSwapsTheRanksAndKeepsTheFiles) {
    for (const Square square : square_from_64) {
        EXPECT_EQ(set_flip_ranks(set_of_square(square)), set_of_square(square_flip_rows(square)));
    }
}

TEST(Set, SquaresAreCountedAndServedLowestFirst) {
    EXPECT_EQ(set_count(0), 0);
    EXPECT_EQ(set_count(~SquareSet{0}), 64);
    std::mt19937_64 random(2);
    for (int i = 0; i < 200; ++i) {
        const SquareSet set = random() & random();
        EXPECT_EQ(set_count(set), std::popcount(set));
        Square64 last = -1;
        SquareSet served = 0;
        for (SquareSet rest = set; rest != 0; rest = set_rest(rest)) {
            const Square64 square = set_first(rest);
            EXPECT_GT(square, last);
            last = square;
            served |= set_of(square);
        }
        EXPECT_EQ(served, set);
    }
}

}  // namespace
}  // namespace zar
