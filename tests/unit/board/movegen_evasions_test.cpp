// Ways out of check.

#include <algorithm>
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

Texts evasions_in(std::string_view fen) {
    Board board = board_of(fen);
    Attack attack;
    attack_set(attack, board);
    MoveList list;
    gen_evasions(list, board, attack);
    EXPECT_EQ(has_evasion(board, attack), list.size > 0) << fen;
    return texts_of(list);
}

Texts pseudo_evasions_in(std::string_view fen) {
    Board board = board_of(fen);
    Attack attack;
    attack_set(attack, board);
    MoveList list;
    gen_evasions_pseudo(list, board, attack);
    return texts_of(list);
}

TEST(Evasions, TheKingDoesNotFleeStraightAwayFromASlider) {
    constexpr const char* fen = "4r2k/8/8/8/8/8/4K3/8 w - - 0 1";
    EXPECT_FALSE(is_attacked(board_of(fen), kE1, kBlack));
    EXPECT_EQ(evasions_in(fen), words_of("e2d1 e2f1 e2d2 e2f2 e2d3 e2f3"));
    EXPECT_EQ(pseudo_evasions_in(fen), words_of("e2d1 e2f1 e2d2 e2f2 e2d3 e2e3 e2f3"));
}

TEST(Evasions, TheKingMayFleeInAnyDirectionFromAKnight) {
    EXPECT_EQ(evasions_in("7k/8/8/8/8/3n4/8/4K3 w - - 0 1"), words_of("e1d1 e1f1 e1d2 e1e2"));
}

TEST(Evasions, InDoubleCheckOnlyTheKingMoves) {
    constexpr const char* fen = "4r3/6k1/8/8/8/3n4/Q7/R3K2R w KQ - 0 1";
    EXPECT_EQ(evasions_in(fen), words_of("e1d1 e1f1 e1d2"));
    EXPECT_EQ(pseudo_evasions_in(fen), words_of("e1d1 e1f1 e1d2 e1e2 e1f2"));
}

TEST(Evasions, OfTwoSlidersNeitherIsFledFromAlongItsLine) {
    constexpr const char* two = "4r2k/8/8/b7/8/8/8/4K3 w - - 0 1";
    EXPECT_EQ(pseudo_evasions_in(two), words_of("e1d1 e1f1 e1d2 e1e2 e1f2"));
    constexpr const char* middle = "4r2k/8/1b6/8/8/4K3/8/8 w - - 0 1";
    EXPECT_EQ(pseudo_evasions_in(middle), words_of("e3d2 e3d3 e3f3 e3d4 e3e4 e3f4"));
}

TEST(Evasions, TheCheckerIsTakenByPawnsThenPieces) {
    // Pawns from the higher file first, then the list: queen, rook, bishop, knight.
    EXPECT_EQ(evasions_in("7k/8/8/8/4n3/3P1P2/3R1K2/1QB3N1 w - - 0 1"),
              words_of("f2e1 f2f1 f2e2 f2g2 f2e3 f3e4 d3e4"));
    EXPECT_EQ(evasions_in("7k/8/8/2N5/R3n1R1/2P3P1/5K2/1Q4B1 w - - 0 1"),
              words_of("f2e1 f2f1 f2e2 f2g2 f2e3 f2f3 b1e4 a4e4 g4e4 c5e4"));
}

TEST(Evasions, APawnTakingTheCheckerMayPromote) {
    EXPECT_EQ(evasions_in("3r3k/2P1P3/8/8/8/8/8/3K4 w - - 0 1"),
              words_of("d1c1 d1e1 d1c2 d1e2 e7d8q e7d8n e7d8r e7d8b c7d8q c7d8n c7d8r c7d8b"));
}

TEST(Evasions, InterpositionsGoFromTheKingTowardTheChecker) {
    EXPECT_EQ(evasions_in("4r2k/8/3N4/8/R7/8/3P4/3NK1Q1 w - - 0 1"),
              words_of("e1f1 e1f2 d6e8 g1e3 d1e3 a4e4 d6e4"));
    EXPECT_EQ(evasions_in("r6K/6PP/8/8/8/8/8/k7 w - - 0 1"), words_of("g7g8q g7g8n g7g8r g7g8b"));
}

TEST(Evasions, APawnInterposesWithOneStepOrTwo) {
    constexpr const char* twice = "7k/8/8/8/r6K/8/2P1P3/8 w - - 0 1";
    EXPECT_EQ(evasions_in(twice), words_of("h4g3 h4h3 h4g5 h4h5 e2e4 c2c4"));
    constexpr const char* once = "7k/8/8/8/8/r6K/2P1P3/8 w - - 0 1";
    EXPECT_EQ(evasions_in(once), words_of("h3g2 h3h2 h3g4 h3h4 e2e3 c2c3"));
    constexpr const char* blocked = "7k/8/8/8/r6K/4N3/2P1P3/8 w - - 0 1";
    EXPECT_EQ(evasions_in(blocked), words_of("h4g3 h4h3 h4g5 h4h5 e3g4 c2c4 e3c4"));
    EXPECT_EQ(evasions_in("7K/2p1p3/8/R6k/8/8/8/8 b - - 0 1"),
              words_of("h5g4 h5h4 h5g6 h5h6 e7e5 c7c5"));
}

TEST(Evasions, APinnedManNeitherTakesNorInterposes) {
    constexpr const char* fen = "4r2k/8/8/b7/8/2N5/8/R2QK3 w Q - 0 1";
    EXPECT_EQ(evasions_in(fen), words_of("e1f1 e1d2 e1f2 d1e2"));
    EXPECT_EQ(pseudo_evasions_in(fen), words_of("e1f1 e1d2 e1e2 e1f2 d1e2 c3e2 c3e4"));
}

TEST(Evasions, EnPassantTakesACheckerThatHasJustPassed) {
    EXPECT_EQ(evasions_in("7k/8/8/2PpP3/2K5/8/8/8 w - d6 0 1"),
              words_of("c4b3 c4c3 c4d3 c4b4 c4d4 c4b5 c4d5 e5d6 c5d6"));
}

TEST(Evasions, EnPassantThatUncoversAnotherCheckIsRefused) {
    // The pawns on d5 and e5 leave the rank between the king and the rook together only in part:
    // what counts is the position after the capture.
    constexpr const char* fen = "4r2k/8/8/3pP3/4K3/8/8/8 w - d6 0 1";
    EXPECT_EQ(evasions_in(fen), words_of("e4d3 e4e3 e4f3 e4d4 e4f4 e4d5 e4f5"));
    EXPECT_EQ(pseudo_evasions_in(fen), words_of("e4d3 e4e3 e4f3 e4d4 e4f4 e4d5 e4f5 e5d6"));
    // Here no pin test of the capturing pawn alone would see it: the checker itself was the shield.
    constexpr const char* shield = "b6k/8/8/3pP3/4K3/8/8/8 w - d6 0 1";
    EXPECT_EQ(pseudo_evasions_in(shield).back(), "e5d6");
    EXPECT_NE(evasions_in(shield).back(), "e5d6");
}

TEST(Evasions, AnEnPassantCaptureDoesNotInterpose) {
    // In the first the bishop's line misses the target square; in the second, which no game
    // reaches, it crosses it.
    for (const char* fen :
         {"4b2k/8/8/3pP3/K7/8/8/8 w - d6 0 1", "5b1k/8/8/3pP3/8/K7/8/8 w - d6 0 1"}) {
        ASSERT_EQ(board_of(fen).ep_square, kD6) << fen;
        for (const Texts& texts : {evasions_in(fen), pseudo_evasions_in(fen)}) {
            EXPECT_EQ(std::count(texts.begin(), texts.end(), "e5d6"), 0) << fen;
        }
    }
}

TEST(Evasions, AMateLeavesNone) {
    EXPECT_TRUE(
        evasions_in("rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3").empty());
    EXPECT_TRUE(evasions_in("6rk/5Npp/8/8/8/8/8/K7 b - - 0 1").empty());
}

TEST(Evasions, AnyNumberOfCheckersIsSafe) {
    // All fifteen men of Black's but its king give check, which only a set-up can bring about.
    const Board start = board_of("k7/8/2n1n3/1nqqqn2/2qKq3/1nqqqn2/2n5/8 w - - 0 1");
    Board board = start;
    Attack attack;
    attack_set(attack, board);
    EXPECT_EQ(attack.count, 15);
    EXPECT_EQ(attack.square[15], kNoSquare);
    EXPECT_EQ(attack.inc[15], 0);
    MoveList list;
    gen_evasions(list, board, attack);
    EXPECT_EQ(list.size, 0);
    // Next to a slider in every direction, each step of the king's is away from one of them.
    gen_evasions_pseudo(list, board, attack);
    EXPECT_EQ(list.size, 0);
    gen_legal_moves(list, board);
    EXPECT_EQ(list.size, 0);
    EXPECT_TRUE(board_is_mate(board));
    EXPECT_EQ(difference(board, start), "");
}

TEST(Evasions, LegalOnesAreThePseudoOnesThatPass) {
    int checks = 0;
    test::random_walks(17, 10, 80, [&checks](const Board& seen) {
        if (!board_is_check(seen)) {
            return;
        }
        ++checks;
        Board board = seen;
        Attack attack;
        attack_set(attack, board);
        MoveList list;
        gen_evasions_pseudo(list, board, attack);
        std::vector<Move> legal;
        for (const Move move : test::moves_of(list)) {
            if (move_is_legal(move, board)) {
                legal.push_back(move);
            }
        }
        gen_evasions(list, board, attack);
        ASSERT_EQ(texts_of(list), texts_of(legal)) << fen_of(seen);
        ASSERT_EQ(has_evasion(board, attack), !legal.empty()) << fen_of(seen);
        gen_legal_moves(list, board);
        ASSERT_EQ(texts_of(list), texts_of(legal)) << fen_of(seen);
        ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
    });
    EXPECT_GT(checks, 200);
}

}  // namespace
}  // namespace zar
