#include "eval/psq.h"

#include "board/geometry.h"
#include "board/psq_table.h"
#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using Psq = test::EvalTest;

int opening_of(int piece12, Square square) { return psq_of(piece12, square64_of(square)).opening; }

int endgame_of(int piece12, Square square) { return psq_of(piece12, square64_of(square)).endgame; }

TEST_F(Psq, CentrePawnsGainInTheOpening) {
    for (const Square square : {kD3, kE3, kD5, kE5}) {
        EXPECT_EQ(opening_of(kWhitePawn12, square), 13);
    }
    EXPECT_EQ(opening_of(kWhitePawn12, kD4), 26);
    EXPECT_EQ(opening_of(kWhitePawn12, kE4), 26);
    int sum = 0;
    for (Square64 square = 0; square < 64; ++square) {
        sum += psq_of(kWhitePawn12, square).opening;
        EXPECT_EQ(psq_of(kWhitePawn12, square).endgame, 0) << square;
    }
    EXPECT_EQ(sum, 4 * 13 + 2 * 26);
}

TEST_F(Psq, KnightsLoseInTheEnemyCorners) {
    for (Square64 square = 0; square < 64; ++square) {
        const bool corner = square == 56 || square == 63;
        EXPECT_EQ(psq_of(kWhiteKnight12, square).opening, corner ? -50 : 0) << square;
        EXPECT_EQ(psq_of(kWhiteKnight12, square).endgame, 0) << square;
    }
}

TEST_F(Psq, BishopsRooksAndQueensHaveNoSquareValues) {
    for (const int piece : {kWhiteBishop12, kWhiteRook12, kWhiteQueen12, kBlackBishop12,
                            kBlackRook12, kBlackQueen12}) {
        for (Square64 square = 0; square < 64; ++square) {
            EXPECT_EQ(psq_of(piece, square).opening, 0) << square;
            EXPECT_EQ(psq_of(piece, square).endgame, 0) << square;
        }
    }
}

TEST_F(Psq, TheKingGoesToTheCentreInTheEndgame) {
    EXPECT_EQ(endgame_of(kWhiteKing12, kA1), -30);
    EXPECT_EQ(endgame_of(kWhiteKing12, kH8), -30);
    EXPECT_EQ(endgame_of(kWhiteKing12, kB1), -20);
    EXPECT_EQ(endgame_of(kWhiteKing12, kE1), -10);
    EXPECT_EQ(endgame_of(kWhiteKing12, kG2), -10);
    EXPECT_EQ(endgame_of(kWhiteKing12, kC3), 0);
    EXPECT_EQ(endgame_of(kWhiteKing12, kE7), 0);
    EXPECT_EQ(endgame_of(kWhiteKing12, kF5), 5);
    for (const Square square : {kD4, kE4, kD5, kE5}) {
        EXPECT_EQ(endgame_of(kWhiteKing12, square), 10);
    }
    for (Square64 square = 0; square < 64; ++square) {
        EXPECT_EQ(psq_of(kWhiteKing12, square).opening, 0) << square;
    }
}

TEST_F(Psq, BlackIsTheNegatedMirrorOfWhite) {
    EXPECT_EQ(opening_of(kBlackPawn12, kE5), -26);
    EXPECT_EQ(opening_of(kBlackPawn12, kE4), -13);
    EXPECT_EQ(opening_of(kBlackKnight12, kA1), 50);
    EXPECT_EQ(endgame_of(kBlackKing12, kE8), 10);
    for (int piece = 0; piece < kPieceKindCount; piece += 2) {
        for (Square64 square = 0; square < 64; ++square) {
            EXPECT_EQ(psq_of(piece + 1, square ^ 56).opening, -psq_of(piece, square).opening);
            EXPECT_EQ(psq_of(piece + 1, square ^ 56).endgame, -psq_of(piece, square).endgame);
        }
    }
}

TEST_F(Psq, TheTableIsTheSameFromLevelSevenOnAndEmptyBelow) {
    set_level(7);
    EXPECT_EQ(opening_of(kWhitePawn12, kE4), 26);
    EXPECT_EQ(endgame_of(kWhiteKing12, kA1), -30);
    set_level(6);
    for (int piece = 0; piece < kPieceKindCount; ++piece) {
        for (Square64 square = 0; square < 64; ++square) {
            EXPECT_EQ(psq_of(piece, square).opening, 0);
            EXPECT_EQ(psq_of(piece, square).endgame, 0);
        }
    }
}

}  // namespace
}  // namespace zar
