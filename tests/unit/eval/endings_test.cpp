#include "eval/endings.h"

#include <string>
#include <vector>

#include "board/geometry.h"
#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of_men;
using Endings = test::EvalTest;

Scales scales_of(const std::string& fen) {
    const Board board = board_of(fen);
    PawnRecord pawns;
    evaluate_pawns(pawns, board, 0);
    return ending_scales(board, material_probe(board, 0), pawns);
}

struct Row {
    const char* men;
    int white;
    int black;
};

// The working scales, in all four ways to turn the board round.
void expect_scales(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const std::string fen = fen_of_men(row.men);
        for (const std::string& turned : {fen, test::fen_flip_files(fen)}) {
            EXPECT_EQ(scales_of(turned), (Scales{row.white, row.black})) << turned;
            const std::string swapped = test::fen_swap_colors(turned);
            EXPECT_EQ(scales_of(swapped), (Scales{row.black, row.white})) << swapped;
        }
    }
}

TEST_F(Endings, StandardFormTurnsThePawnUpAndToTheLeft) {
    const Board board = board_of(fen_of_men("b kg2 Kb7 ph3 Bc6"));
    const StandardEnding ending = standard_ending(board, kBlack);
    EXPECT_EQ(ending.pawn, kA6);
    EXPECT_EQ(ending.pawn_king, kB7);
    EXPECT_EQ(ending.pawn_piece, kNoSquare);
    EXPECT_EQ(ending.other_king, kG2);
    EXPECT_EQ(ending.other_piece, kF3);
    EXPECT_TRUE(ending.pawn_side_to_move);
}

TEST_F(Endings, StandardFormLeavesAWhitePawnOnTheLeftAlone) {
    const Board board = board_of(fen_of_men("b Ke1 Pd4 Nf3 kd8"));
    const StandardEnding ending = standard_ending(board, kWhite);
    EXPECT_EQ(ending.pawn, kD4);
    EXPECT_EQ(ending.pawn_king, kE1);
    EXPECT_EQ(ending.pawn_piece, kF3);
    EXPECT_EQ(ending.other_king, kD8);
    EXPECT_EQ(ending.other_piece, kNoSquare);
    EXPECT_FALSE(ending.pawn_side_to_move);
}

TEST_F(Endings, WithoutATestTheMaterialsScalesStay) {
    expect_scales({
        {"w Ke1 ke8 Ra1 Bc1 pb7 nc7", 16, 4},
        {"w Ke1 ke8 Ra1 nb6", 2, 0},
        {"w Ke1 ke8 Pa2 Pb2", 16, 0},
    });
}

TEST_F(Endings, QueenAgainstARookPawnOnTheSeventh) {
    // In front of its pawn on a7: the queen's king may be 4 squares away from a8.
    expect_scales({
        {"w Kb7 Pa7 qd1 kf3", 1, 1},    // 5 squares
        {"w Kb7 Pa7 qd1 ke4", 16, 16},  // 4 squares
        {"b Kb7 Pa7 qd1 kf3", 1, 1},
        {"b Kb7 Pa7 qd1 ke4", 16, 16},
        {"w Kb8 Pa7 qd1 kf3", 1, 1},
        {"b Kb8 Pa7 qd1 kf3", 1, 1},
        {"b Kb8 Pa7 qd1 ke4", 16, 16},
        {"w Ka8 Pa7 qd1 kf3", 1, 1},
        {"w Ka8 Pa7 qd1 ke4", 16, 16},
        {"b Ka8 Pa7 qd1 kf3", 16, 16},
    });
}

TEST_F(Endings, QueenAgainstARookPawnWithTheKingBeyond) {
    expect_scales({
        {"w Kc7 Pa7 qd1 kf3", 1, 1},
        {"w Kc7 Pa7 qd1 ke4", 16, 16},
        {"b Kc7 Pa7 qd1 kf3", 16, 16},
        {"w Kc8 Pa7 qd1 kf3", 1, 1},
        {"b Kc8 Pa7 qd1 kf3", 16, 16},
        {"w Kb6 Pa7 qd1 kf3", 16, 16},
        {"w Kd7 Pa7 qe1 kf3", 16, 16},
        {"b Kb6 Pa7 qd1 kf3", 16, 16},
    });
}

TEST_F(Endings, QueenAgainstABishopPawnOnTheSeventh) {
    // Distances to c8: g4 4 squares, f5 3, h3 5, h2 6.
    expect_scales({
        {"w Ka7 Pc7 qe1 kg4", 1, 1},   {"w Ka7 Pc7 qe1 kf5", 16, 16}, {"b Ka7 Pc7 qe2 kh2", 16, 16},
        {"w Ka8 Pc7 qe1 kg4", 1, 1},   {"b Ka8 Pc7 qe2 kh2", 16, 16}, {"w Kb7 Pc7 qe1 kg4", 1, 1},
        {"w Kb7 Pc7 qe1 kf5", 16, 16}, {"b Kb7 Pc7 qe1 kg4", 16, 16}, {"b Kb7 Pc7 qe1 kh3", 1, 1},
        {"w Kb8 Pc7 qe2 kg4", 1, 1},   {"b Kb8 Pc7 qe2 kg4", 16, 16}, {"b Kb8 Pc7 qe2 kh3", 1, 1},
        {"w Kc8 Pc7 qe2 kg4", 16, 16}, {"w Kc8 Pc7 qe2 kh3", 1, 1},   {"b Kc8 Pc7 qe2 kh3", 16, 16},
        {"b Kc8 Pc7 qe2 kh2", 1, 1},   {"w Kd7 Pc7 qe2 kg4", 16, 16}, {"w Kd7 Pc7 qe2 kh3", 1, 1},
        {"b Kd7 Pc7 qe2 kh3", 16, 16}, {"b Kd7 Pc7 qe2 kh2", 1, 1},   {"w Kd8 Pc7 qe2 kh3", 1, 1},
        {"b Kd8 Pc7 qe2 kh2", 1, 1},   {"w Ke7 Pc7 qa1 kg4", 16, 16}, {"w Ke7 Pc7 qa1 kh3", 1, 1},
        {"b Ke7 Pc7 qb1 kh2", 16, 16}, {"w Ke8 Pc7 qa1 kh3", 1, 1},   {"b Ke8 Pc7 qb1 kh2", 16, 16},
        {"w Kd6 Pc7 qa1 kh2", 16, 16}, {"w Kf7 Pc7 qa1 kh2", 16, 16},
    });
}

TEST_F(Endings, QueenAgainstAnyOtherPawnIsNotDrawn) {
    expect_scales({
        {"w Kc7 Pb7 qe1 kh1", 16, 16},
        {"w Kc7 Pd7 qe1 kh1", 16, 16},
        {"w Kb7 Pa6 qe1 kh1", 16, 16},
        {"w Kb7 Pc6 qe1 kh1", 16, 16},
    });
}

TEST_F(Endings, RookAgainstAPawnThatItsKingHelps) {
    // The pawn's scale is 8 where the rook wins.
    expect_scales({
        {"w Kb7 Pc6 rg1 kg4", 1, 1},   // 2 + 1 = 3 moves, Black's king needs 4
        {"w Kb7 Pc6 rg1 kf5", 8, 16},  // 3
        {"b Kb7 Pc6 rg1 kg4", 8, 16},  // 4 moves now
        {"b Kb7 Pc6 rg1 kh3", 1, 1},   // against 5
        {"w Kc7 Pc6 rg1 kg4", 1, 1},
        {"w Kb5 Pc6 rg1 kh2", 1, 1},  // 2 + 3 = 5 against 6
        {"w Kb5 Pc6 rg1 kh3", 8, 16},
        {"w Kc8 Pc7 ra1 kf1", 1, 1},  // 1 + 0 against 7
    });
}

TEST_F(Endings, RookAgainstAPawnWithItsKingTwoFilesAway) {
    expect_scales({
        {"w Ka6 Pc6 rg1 kh3", 1, 1},  // level with the pawn: 2 + 2 against 5
        {"b Ka6 Pc6 rg1 kh3", 8, 16},
        {"w Ke6 Pc6 rg1 kh3", 1, 1},
        {"w Ka7 Pc6 rg1 kh3", 8, 16},
        {"w Ka5 Pc6 rg1 kh1", 8, 16},
        {"w Kf6 Pc6 rg1 kh1", 8, 16},
    });
}

TEST_F(Endings, BishopAgainstAPawnWhosePathItGuards) {
    expect_scales({
        {"w Kh1 Pd5 bb8 kh8", 1, 0},  // d6
        {"w Kh1 Pd5 bd7 kh8", 1, 0},  // stands on the path
        {"w Kh1 Pd5 ba4 kh8", 1, 0},  // d7
        {"w Kh1 Pd7 bg5 kh8", 1, 0},  // d8
        {"w Kh1 Pd7 bg4 kh8", 8, 0},  // the other shade
        {"w Kh1 Pd7 bc5 kh8", 8, 0},  // the right shade, not its line
        {"b Kh1 Pd7 be7 kh8", 1, 0},
        {"w Kh1 Pa2 bf8 kh7", 1, 0},  // a3
    });
}

TEST_F(Endings, OnlyItsOwnKingBlocksABishop) {
    expect_scales({
        {"w Kh1 Pd7 bg5 kf6", 8, 0},
        {"w Kf6 Pd7 bg5 kh8", 1, 0},
        {"w Kh1 Pd7 bg5 kh4", 1, 0},  // behind the bishop
    });
}

TEST_F(Endings, KnightAgainstAPawnWhosePathItGuards) {
    expect_scales({
        {"w Kh1 Pd5 nb5 kh8", 1, 0},  // d6
        {"w Kh1 Pd5 nd6 kh8", 1, 0},
        {"w Kh1 Pd5 nd8 kh8", 1, 0},
        {"w Kh1 Pd7 nc6 kh8", 1, 0},  // d8
        {"w Kh1 Pd7 nd4 kh8", 8, 0},
        {"b Kh1 Pd7 ne6 kh8", 1, 0},
        {"w Kh1 Pd5 nf3 kh8", 8, 0},
    });
}

TEST_F(Endings, KnightAgainstARookPawnDoesNotReachTheCorner) {
    expect_scales({
        {"w Kh1 Pa6 nb5 kh8", 1, 0},  // a7
        {"w Kh1 Pa6 na7 kh8", 1, 0},
        {"w Kh1 Pa6 nb6 kh8", 8, 0},  // a8 only
        {"w Kh1 Pa6 na8 kh8", 8, 0},
        {"w Kh1 Pa7 nb6 kh8", 8, 0},
        {"w Kh1 Pa7 nc7 kh8", 8, 0},
        {"w Kh1 Pb7 nc6 kh8", 1, 0},
    });
}

TEST_F(Endings, KnightAndPawnOnTheSeventhAgainstTheCorner) {
    expect_scales({
        {"w Ke1 Pa7 Nd4 ka8", 1, 0},
        {"w Ke1 Pa7 Nd4 kb7", 1, 0},
        {"b Ke1 Pa7 Nd4 kb8", 1, 0},
        {"w Ke1 Pa7 Nd4 kc8", 16, 0},
        {"w Ke1 Pa6 Nd4 ka8", 16, 0},
        {"w Ke1 Pb7 Nd4 kb8", 16, 0},
    });
}

TEST_F(Endings, RookAndPawnAgainstAKingInFront) {
    expect_scales({
        {"w Kd4 Pc4 Rh5 rb1 kc6", 1, 1},
        {"b Kd4 Pc4 Rh5 rb1 kc7", 1, 1},
        {"w Kd4 Pc4 Rh5 rb1 kb6", 16, 2},
        {"w Kd5 Pc4 Rh5 rb1 kc2", 16, 2},
    });
}

TEST_F(Endings, OnThePromotionSquareTheRooksFileDecides) {
    expect_scales({
        {"w Kd6 Pc4 Rh5 rg1 kc8", 1, 1},
        {"w Kd6 Pc4 Rh5 rd1 kc8", 1, 1},
        {"w Kd6 Pc4 Rh5 rb1 kc8", 16, 2},
        {"w Kd6 Pc4 Rh5 rc1 kc8", 16, 2},
        {"w Kc6 Pd4 Rh5 rg1 kd8", 1, 1},
        {"w Kc6 Pd4 Rh5 ra1 kd8", 16, 2},
        {"w Kd6 Pa4 Rh5 rb1 ka8", 1, 1},
        {"w Kd6 Pa4 Rh5 ra1 ka8", 16, 2},
    });
}

TEST_F(Endings, ARookBehindThePawnHoldsWhileTheKingIsFar) {
    // Distances of White's king to a7: c5 2, b6 1, d4 3.
    expect_scales({
        {"w Kc5 Pa7 Ra8 ra1 kg7", 1, 1},
        {"w Kc5 Pa7 Ra8 ra3 kh7", 1, 1},
        {"w Kb6 Pa7 Ra8 ra1 kg7", 16, 2},
        {"w Kc5 Pa7 Ra8 ra4 kg7", 16, 2},
        {"w Kd4 Pa7 Ra8 ra4 kh7", 1, 1},
        {"w Kd4 Pa7 Ra8 ra6 kg7", 1, 1},
        {"w Kc5 Pa7 Ra8 ra1 kg6", 16, 2},
        {"w Kc5 Pa7 Ra8 rb1 kg7", 16, 2},
        {"w Kc5 Pa7 Rb8 ra1 kg7", 16, 2},
        {"w Kc5 Pa6 Ra8 ra1 kg7", 16, 2},
        {"w Kf4 Pc7 Rc8 rc4 kg7", 1, 1},
    });
}

TEST_F(Endings, BishopAndPawnAgainstABishopOfTheOtherShade) {
    expect_scales({
        {"w Kh1 Pd5 Bc1 be8 kh8", 1, 0},  // d7
        {"w Kh1 Pd5 Bc1 bd7 kh8", 4, 0},  // stands there, guards nothing
        {"w Kh1 Pd5 Bf1 be8 kh8", 4, 0},  // one shade
        {"w Kh1 Pd5 Bc1 bb1 kh8", 4, 0},  // not its line
        {"w Kh1 Pd5 Bc1 bh3 kf5", 4, 0},  // behind its own king
        {"w Kf5 Pd5 Bc1 bh3 kh8", 1, 0},
        {"b Kh1 Pd5 Bf1 bb8 kh8", 1, 0},  // d6
    });
}

TEST_F(Endings, ARookPawnDoesNotPassAKingInTheCorner) {
    expect_scales({
        {"w Ke1 Pa4 kb8", 0, 0},
        {"w Ke1 Pa4 kb7", 0, 0},
        {"w Ke1 Pa2 ka8", 0, 0},
        {"w Ke1 Pa4 kc8", 16, 0},
        {"w Ke1 Pa4 ka6", 16, 0},
        {"w Ke1 Pb4 kb8", 16, 0},
        {"w Ke1 Pa2 Pa4 kb8", 0, 0},
        {"w Ke1 Pa2 Pb4 kb8", 16, 0},
        {"w Ke1 Pa4 kb8 ph5", 0, 16},
        {"w Ke1 Pa4 kb8 pb6", 16, 16},  // b6 guards the way
        {"w Ke1 Pa4 kb8 pb4", 0, 16},
    });
}

TEST_F(Endings, OnlyABishopOfTheCornersShadeHelpsARookPawn) {
    // a8 is light.
    expect_scales({
        {"w Ke1 Pa4 Bc1 kb8", 0, 0},
        {"w Ke1 Pa4 Bf1 kb8", 16, 0},
        {"w Ke1 Pa4 Bc1 Bd2 kb8", 0, 0},
        {"w Ke1 Pa4 Bc1 Bf1 kb8", 16, 0},
        {"w Ke1 Pa4 Bc1 kc8", 16, 0},
    });
}

TEST_F(Endings, PawnsOfOneFileAreBlockedByTheKingInFront) {
    expect_scales({
        {"w Ke1 Pd2 Pd4 na1 kd6", 1, 0},
        {"w Ke1 Pd2 Pd4 na1 kd8", 1, 0},
        {"w Ke1 Pd2 Pd4 na1 kd3", 16, 0},  // between the two
        {"w Ke1 Pd2 Pd4 na1 ke6", 16, 0},
        {"w Ke1 Pd2 Pe4 na1 kd6", 16, 0},
        {"w Ke1 Pd3 Pd4 na1 pc6 kd6", 1, 16},  // enemy pawns beside do not matter
        {"w Ke1 Pd2 Pd4 kd6", 16, 0},          // no enemy piece, no test
    });
}

TEST_F(Endings, OnlyABishopOfTheKingsShadeDrivesItFromTheFile) {
    // d6 is dark, d7 light.
    expect_scales({
        {"w Ke1 Pd4 Bf1 na1 kd6", 1, 0},
        {"w Ke1 Pd4 Bc1 na1 kd6", 4, 0},
        {"w Ke1 Pd4 Bc1 na1 kd7", 1, 0},
        {"w Ke1 Pd3 Pd4 Bf1 na1 kd6", 1, 0},
        {"w Ke1 Pd3 Pd4 Bc1 na1 kd6", 16, 0},
        {"w Ke1 Pd3 Pd4 Bb1 Bf1 na1 kd6", 16, 0},  // not with two bishops
    });
}

TEST_F(Endings, TheBlockedFileOverridesTheCorner) {
    expect_scales({
        {"w Ke1 Pa2 Pa4 nh8 kb8", 0, 0},
        {"w Ke1 Pa2 Pa4 nh8 ka8", 1, 0},
    });
}

TEST_F(Endings, KnightAndPawnAreBlockedByTheKingInFront) {
    expect_scales({
        {"w Ke1 Pd6 Ng1 na1 kd8", 1, 0},
        {"w Ke1 Pd6 Ng1 na1 kd7", 1, 0},
        {"w Ke1 Pd2 Ng1 na1 kd8", 1, 0},
        {"w Ke1 Pd7 Ng1 na1 kd8", 4, 0},  // too far on
        {"w Ke1 Pd6 Ng1 na1 ke8", 4, 0},
        {"w Ke1 Pd6 Ng1 na1 kd5", 4, 0},  // behind
        {"w Ke1 Pd6 Ng1 kd8", 16, 0},     // no enemy piece, no test
    });
}

TEST_F(Endings, ARecogniserOnlyLowersWhatTheTestsLeft) {
    expect_scales({
        {"w Ke1 Pa4 bh1 kb8", 0, 0},      // the corner, and the bishop guards a8
        {"w Ke1 Pd4 Bf1 bh5 kd6", 1, 0},  // the file, and bishops of one shade
        {"w Kh1 Pa6 nb6 ka7", 1, 0},      // the file, and the knight guards nothing
    });
}

}  // namespace
}  // namespace zar
