// Quiet moves that give check.

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "board/fen.h"
#include "board/movegen.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::difference;
using test::fen_of;
using test::Texts;
using test::texts_of;
using test::words_of;

Texts checks_in(std::string_view fen) {
    Board board = board_of(fen);
    MoveList list;
    gen_quiet_checks(list, board);
    return texts_of(list);
}

TEST(QuietChecks, DirectChecksFollowThePieceListByStepAndDistance) {
    EXPECT_EQ(checks_in("4k3/8/8/8/8/8/8/K2R3N w - - 0 1"), words_of("d1e1 d1d8"));
    EXPECT_EQ(checks_in("7k/8/8/8/3N4/8/8/KR6 w - - 0 1"), words_of("b1h1 b1b8"));
    EXPECT_EQ(checks_in("4k3/8/8/3N4/8/8/8/KQ6 w - - 0 1"),
              words_of("b1e1 b1b5 b1b8 b1e4 b1g6 d5f6 d5c7"));
}

TEST(QuietChecks, CapturesAreNotAmongThem) {
    EXPECT_TRUE(checks_in("r3k3/4p3/8/8/8/8/8/R3K3 w Q - 0 1").empty());
    EXPECT_EQ(checks_in("n3k3/8/8/1N6/8/8/8/4K3 w - - 0 1"), words_of("b5d6 b5c7"));
    EXPECT_EQ(checks_in("4k3/2n5/8/1N6/8/8/8/4K3 w - - 0 1"), words_of("b5d6"));
}

TEST(QuietChecks, AManThatUncoversACheckGivesItWithEveryMoveOffTheLine) {
    EXPECT_EQ(checks_in("4k3/8/8/8/4B3/8/8/K3R3 w - - 0 1"),
              words_of("e4d3 e4c2 e4b1 e4f3 e4g2 e4h1 e4d5 e4c6 e4b7 e4a8 e4f5 e4g6 e4h7"));
    EXPECT_EQ(checks_in("4k3/8/8/8/4P3/8/8/K3R3 w - - 0 1"), Texts{}) << "stays on the line";
    EXPECT_EQ(checks_in("8/8/k7/8/2P5/8/4B3/7K w - - 0 1"), words_of("c4c5"));
    EXPECT_EQ(checks_in("8/8/8/k7/8/8/3P4/4B2K w - - 0 1"), words_of("d2d3 d2d4"));
}

TEST(QuietChecks, DiscoveredChecksComeFirstInTheOrderOfTheirSliders) {
    // The rook uncovers through the knight, the bishop through the pawn; then direct checks.
    EXPECT_EQ(checks_in("4k3/8/2P5/4N3/B7/8/5p2/K3R3 w - - 0 1"),
              words_of("e5d3 e5f3 e5c4 e5g4 e5g6 e5d7 e5f7 c6c7"));
}

TEST(QuietChecks, NoMoveStandsTwiceThoughItChecksTwice) {
    const Texts texts = checks_in("4k3/8/8/4N3/8/8/8/K3R3 w - - 0 1");
    EXPECT_EQ(std::set<std::string>(texts.begin(), texts.end()).size(), texts.size());
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "e5g6"), 1);
}

TEST(QuietChecks, PawnPushesCheckWithOneStepOrTwo) {
    EXPECT_EQ(checks_in("8/8/8/8/k7/8/1P6/7K w - - 0 1"), words_of("b2b3"));
    EXPECT_EQ(checks_in("8/8/8/k7/8/8/1P6/7K w - - 0 1"), words_of("b2b4"));
    EXPECT_TRUE(checks_in("8/8/8/k7/8/1n6/1P6/7K w - - 0 1").empty());
    EXPECT_EQ(checks_in("7k/6p1/8/5K2/8/8/8/8 b - - 0 1"), words_of("g7g6"));
    EXPECT_EQ(checks_in("7k/6p1/8/8/5K2/8/8/8 b - - 0 1"), words_of("g7g5"));
}

TEST(QuietChecks, PromotionsAreNotAmongThem) {
    EXPECT_TRUE(checks_in("7k/P7/8/8/8/8/8/K7 w - - 0 1").empty());
    // Not even one that uncovers a check.
    EXPECT_TRUE(checks_in("8/R1P4k/8/8/8/8/8/K7 w - - 0 1").empty());
}

TEST(QuietChecks, TheKingsOwnDiscoveredChecksAreLeftOut) {
    EXPECT_TRUE(checks_in("4k3/8/8/8/8/8/4K3/4R3 w - - 0 1").empty());
}

TEST(QuietChecks, CastlingThatChecksComesLast) {
    EXPECT_EQ(checks_in("5k2/8/8/8/8/8/8/R3K2R w KQ - 0 1"), words_of("a1a8 h1f1 h1h8 e1g1"));
    EXPECT_EQ(checks_in("3k4/8/8/8/8/8/8/R3K3 w Q - 0 1"), words_of("a1d1 a1a8 e1c1"));
    EXPECT_EQ(checks_in("3k1r2/8/8/8/8/8/8/R3K2R w KQ - 0 1").back(), "e1c1");
}

TEST(QuietChecks, TheyAreTheQuietMovesThatCheck) {
    int checks = 0;
    test::random_walks(18, 8, 80, [&checks](const Board& seen) {
        Board board = seen;
        const twin::Position position = test::twin_of(board);
        MoveList list;
        gen_quiets(list, board);
        std::set<std::string> expected;
        for (const Move move : test::moves_of(list)) {
            const bool by_king = piece_is_king(board_piece(board, move_from(move)));
            if ((!by_king || move_kind(move) == kKindCastling) &&
                twin::is_check(twin::position_after(position, test::twin_move(move)))) {
                expected.insert(test::text_of(move));
            }
        }
        gen_quiet_checks(list, board);
        const Texts texts = texts_of(list);
        ASSERT_EQ(std::set<std::string>(texts.begin(), texts.end()), expected) << fen_of(seen);
        ASSERT_EQ(texts.size(), expected.size()) << fen_of(seen);
        ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
        checks += list.size;
    });
    EXPECT_GT(checks, 200);
}

}  // namespace
}  // namespace zar
