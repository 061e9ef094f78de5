// Codes that come from elsewhere: which of them are moves of the position?

#include <algorithm>
#include <string_view>
#include <vector>

#include "board/fen.h"
#include "board/movegen.h"
#include "gtest/gtest.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::difference;
using test::fen_of;

bool is_pseudo(std::string_view fen, Move move) {
    Board board = board_of(fen);
    return move_is_pseudo(move, board);
}

// All 65,536 codes against the lists.
void expect_every_code_as_listed(const Board& start) {
    Board board = start;
    MoveList all;
    MoveList quiets;
    gen_moves(all, board);
    gen_quiets(quiets, board);
    for (int code = 0; code < 65536; ++code) {
        const auto move = static_cast<Move>(code);
        ASSERT_EQ(move_is_pseudo(move, board), list_contains(all, move))
            << test::text_of(move) << " (" << code << ") in " << fen_of(start);
        ASSERT_EQ(quiet_is_pseudo(move, board), list_contains(quiets, move))
            << test::text_of(move) << " (" << code << ") in " << fen_of(start);
    }
    ASSERT_EQ(difference(board, start), "");
}

TEST(PseudoMoves, EveryCodeIsJudgedAsTheGeneratorsList) {
    for (const std::string_view fen : {
             kStartFen,
             std::string_view(
                 "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"),
             std::string_view("r3k2r/1P1p2p1/8/2P1pP2/2pPp3/8/1p1P2P1/R3K2R w KQkq e6 0 1"),
             std::string_view("n1n1k3/1P6/8/8/8/8/1p6/N1N1K3 b - - 0 1"),
             std::string_view("4k3/8/8/3q1b2/2r5/5N2/1B3R2/4K2Q w - - 0 1"),
             std::string_view("8/8/8/8/3pP3/8/k7/4K3 b - e3 0 1"),
         }) {
        expect_every_code_as_listed(board_of(fen));
    }
}

TEST(PseudoMoves, EveryCodeIsJudgedAsListedAlongARandomGame) {
    int position = 0;
    test::random_walks(19, 1, 40, [&position](const Board& board) {
        if (++position % 20 == 0) {
            expect_every_code_as_listed(board);
        }
    });
    EXPECT_GT(position, 100);
}

TEST(PseudoMoves, APawnReachesTheLastRankOnlyAsAPromotion) {
    constexpr std::string_view fen = "7k/4P3/8/8/8/8/8/K7 w - - 0 1";
    EXPECT_FALSE(is_pseudo(fen, move_make(kE7, kE8)));
    for (const int kind : {kPromoteQueen, kPromoteKnight, kPromoteRook, kPromoteBishop}) {
        EXPECT_TRUE(is_pseudo(fen, move_make(kE7, kE8, kind)));
    }
    EXPECT_FALSE(is_pseudo("7k/8/4P3/8/8/8/8/K7 w - - 0 1", move_make(kE6, kE7, kPromoteQueen)));
}

TEST(PseudoMoves, ANormalCodeWithPromotionBitsIsRefused) {
    Board board = board_of(kStartFen);
    const Move move = move_make(kE2, kE4);
    EXPECT_TRUE(move_is_pseudo(move, board));
    for (const int bits : {0x1000, 0x2000, 0x3000}) {
        EXPECT_FALSE(move_is_pseudo(static_cast<Move>(move | bits), board));
        EXPECT_FALSE(quiet_is_pseudo(static_cast<Move>(move | bits), board));
    }
}

TEST(PseudoMoves, TheTwoSentinelsAreNoMoves) {
    Board board = board_of("4k3/8/8/8/8/8/8/R3K3 w Q - 0 1");
    EXPECT_FALSE(move_is_pseudo(kMoveNone, board));
    EXPECT_FALSE(move_is_pseudo(kMoveNull, board));
}

TEST(PseudoMoves, QuietMovesNeitherTakeNorPromoteButMayCastle) {
    Board board = board_of("4k3/P7/8/3pP3/8/8/4n3/R3K2R w KQ d6 0 1");
    EXPECT_TRUE(quiet_is_pseudo(move_make(kE1, kG1, kKindCastling), board));
    EXPECT_TRUE(quiet_is_pseudo(move_make(kE5, kE6), board));
    EXPECT_FALSE(quiet_is_pseudo(move_make(kE1, kE2), board));
    EXPECT_TRUE(move_is_pseudo(move_make(kE1, kE2), board));
    EXPECT_FALSE(quiet_is_pseudo(move_make(kE5, kD6, kKindEnPassant), board));
    EXPECT_TRUE(move_is_pseudo(move_make(kE5, kD6, kKindEnPassant), board));
    EXPECT_FALSE(quiet_is_pseudo(move_make(kA7, kA8, kPromoteQueen), board));
    EXPECT_TRUE(move_is_pseudo(move_make(kA7, kA8, kPromoteQueen), board));
}

}  // namespace
}  // namespace zar
