#include "board/move.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "board/fen.h"
#include "board/movegen.h"
#include "gtest/gtest.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::text_of;

constexpr const char* kCorners = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
constexpr const char* kEnPassant = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1";

TEST(Move, CodesArePackedFromToPromotionKind) {
    EXPECT_EQ(move_make(kE2, kE4), 12 << 6 | 28);
    EXPECT_EQ(move_make(kE1, kG1, kKindCastling), 0x4106);
    EXPECT_EQ(move_make(kE7, kE8, kPromoteQueen), 0xBD3C);
    EXPECT_EQ(move_make(kE7, kE8, kPromoteKnight), 0x8D3C);
    EXPECT_EQ(move_make(kE7, kE8, kPromoteBishop), 0x9D3C);
    EXPECT_EQ(move_make(kE7, kE8, kPromoteRook), 0xAD3C);
    EXPECT_EQ(move_make(kE5, kD6, kKindEnPassant), 0xC92B);
    EXPECT_EQ(move_make(kA1, kD2), kMoveNull);
}

TEST(Move, FieldsAreUnpackedFromEveryCode) {
    constexpr int promoted[4] = {1, 2, 4, 6};
    for (int code = 0; code < 65536; ++code) {
        const Move move = static_cast<Move>(code);
        const int kind = code / 0x4000;
        const int promotion = code / 0x1000 % 4;
        ASSERT_EQ(move_to64(move), code % 64);
        ASSERT_EQ(move_from64(move), code / 64 % 64);
        ASSERT_EQ(move_to(move), (code % 64 / 8 + 4) * 16 + code % 8 + 4);
        ASSERT_EQ(move_from(move), (code / 64 % 64 / 8 + 4) * 16 + code / 64 % 8 + 4);
        ASSERT_EQ(move_kind(move), kind * 0x4000);
        ASSERT_EQ(move_is_promotion(move), kind == 2);
        ASSERT_EQ(move_is_en_passant(move), kind == 3);
        ASSERT_EQ(move_is_under_promote(move), kind == 2 && promotion != 3);
        ASSERT_EQ(move_is_ok(move), code != 0 && code != 11);
        ASSERT_EQ(move_promote(move), 16 * promoted[promotion] + (code % 64 >= 56 ? 1 : 2));
    }
}

TEST(Move, CapturesAreOccupiedTargetsAndEnPassant) {
    const Board board = board_of("4k3/8/8/1n1pP3/8/1R6/8/4K3 w - d6 0 1");
    EXPECT_TRUE(move_is_capture(move_make(kB3, kB5), board));
    EXPECT_TRUE(move_is_capture(move_make(kE5, kD6, kKindEnPassant), board));
    EXPECT_FALSE(move_is_capture(move_make(kB3, kB4), board));
    EXPECT_FALSE(move_is_capture(move_make(kE5, kE6), board));
}

TEST(Move, PromotionsAreTacticalWithoutCapture) {
    const Board board = board_of("3rk3/2P5/8/1n1pP3/8/1R6/8/4K3 w - d6 0 1");
    EXPECT_TRUE(move_is_tactical(move_make(kC7, kC8, kPromoteKnight), board));
    EXPECT_FALSE(move_is_capture(move_make(kC7, kC8, kPromoteKnight), board));
    EXPECT_TRUE(move_is_tactical(move_make(kC7, kD8, kPromoteQueen), board));
    EXPECT_TRUE(move_is_capture(move_make(kC7, kD8, kPromoteQueen), board));
    EXPECT_TRUE(move_is_tactical(move_make(kE5, kD6, kKindEnPassant), board));
    EXPECT_TRUE(move_is_tactical(move_make(kB3, kB5), board));
    EXPECT_FALSE(move_is_tactical(move_make(kB3, kB4), board));
    const Board corners = board_of(kCorners);
    EXPECT_FALSE(move_is_tactical(move_make(kE1, kG1, kKindCastling), corners));
    EXPECT_FALSE(move_is_capture(move_make(kE1, kG1, kKindCastling), corners));
}

TEST(Move, TheCapturedManOfEnPassantIsThePawn) {
    const Board white = board_of(kEnPassant);
    EXPECT_EQ(move_captured(move_make(kE5, kD6, kKindEnPassant), white), kBlackPawn);
    const Board black = board_of("4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1");
    EXPECT_EQ(move_captured(move_make(kD4, kE3, kKindEnPassant), black), kWhitePawn);
    const Board corners = board_of(kCorners);
    EXPECT_EQ(move_captured(move_make(kA1, kA8), corners), kBlackRook);
    EXPECT_EQ(move_captured(move_make(kA1, kA7), corners), 0);
}

TEST(Move, TextsAreCoordinates) {
    EXPECT_EQ(text_of(move_make(kE2, kE4)), "e2e4");
    EXPECT_EQ(text_of(move_make(kA1, kH8)), "a1h8");
    EXPECT_EQ(text_of(0x4106), "e1g1");
    EXPECT_EQ(text_of(0xC92B), "e5d6");
    EXPECT_EQ(text_of(0xBD3C), "e7e8q");
    EXPECT_EQ(text_of(0x8D3C), "e7e8n");
    EXPECT_EQ(text_of(0x9D3C), "e7e8b");
    EXPECT_EQ(text_of(0xAD3C), "e7e8r");
    EXPECT_EQ(text_of(kMoveNull), "null");
}

TEST(Move, ABufferOfFiveBytesIsTooSmallForAnyText) {
    std::array<char, 6> buffer{};
    for (const Move move : {move_make(kE2, kE4), Move{0xBD3C}, kMoveNull}) {
        buffer.fill('x');
        EXPECT_FALSE(move_to_string(move, buffer.data(), 5));
        EXPECT_EQ(buffer, (std::array<char, 6>{'x', 'x', 'x', 'x', 'x', 'x'}));
        EXPECT_TRUE(move_to_string(move, buffer.data(), 6));
    }
}

TEST(Move, PromotionTextsAreRead) {
    const Board board = board_of("8/4P3/8/k7/8/8/4p3/K7 w - - 0 1");
    EXPECT_EQ(move_from_string("e7e8q", board), 0xBD3C);
    EXPECT_EQ(move_from_string("e7e8r", board), 0xAD3C);
    EXPECT_EQ(move_from_string("e7e8b", board), 0x9D3C);
    EXPECT_EQ(move_from_string("e7e8n", board), 0x8D3C);
    EXPECT_EQ(move_from_string("e2e1q", board), move_make(kE2, kE1, kPromoteQueen));
    // Without its letter it is a plain code, which no generator makes.
    EXPECT_EQ(move_from_string("e7e8", board), 52 << 6 | 60);
}

TEST(Move, AKingsStepOfTwoFilesIsCastling) {
    const Board corners = board_of(kCorners);
    EXPECT_EQ(move_from_string("e1g1", corners), 0x4106);
    EXPECT_EQ(move_from_string("e1c1", corners), move_make(kE1, kC1, kKindCastling));
    EXPECT_EQ(move_from_string("e8g8", corners), move_make(kE8, kG8, kKindCastling));
    EXPECT_EQ(move_from_string("e8c8", corners), move_make(kE8, kC8, kKindCastling));
    EXPECT_EQ(move_from_string("e1f1", corners), move_make(kE1, kF1));
    EXPECT_EQ(move_from_string("e1h1", corners), move_make(kE1, kH1));
    EXPECT_EQ(move_from_string("e1e3", corners), move_make(kE1, kE3));
    EXPECT_EQ(move_from_string("h1f1", corners), move_make(kH1, kF1));
    const Board rook = board_of("4k3/8/8/8/8/8/8/K3R3 b - - 0 1");
    EXPECT_EQ(move_from_string("e1g1", rook), 0x0106);
}

TEST(Move, APawnToTheEnPassantSquareTakesEnPassant) {
    const Board board = board_of(kEnPassant);
    EXPECT_EQ(move_from_string("e5d6", board), 0xC92B);
    EXPECT_EQ(move_from_string("e5d6q", board), 0xC92B | 0x3000);
    EXPECT_EQ(move_from_string("e5e6", board), move_make(kE5, kE6));
    const Board without = board_of("4k3/8/8/3pP3/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(move_from_string("e5d6", without), move_make(kE5, kD6));
    const Board knight = board_of("4k3/8/8/3pP3/8/8/8/4K2N w - d6 0 1");
    EXPECT_EQ(move_from_string("h1d6", knight), move_make(kH1, kD6));
}

TEST(Move, OtherTextsAreNoMove) {
    const Board board = board_of(kStartFen);
    for (const std::string_view text :
         {"",          "e",    "e2",    "e2e",    "e7e8Q", "e2e4x", "e2e4 ",
          "e2e4 e7e5", "i2e4", "e0e4",  "e9e4",   "e2i4",  "e2e9",  "E2E4",
          "null",      "0000", "e2-e4", "(none)", " e2e4", "e2e4k", "e2e4p"}) {
        EXPECT_EQ(move_from_string(text, board), kMoveNone) << '"' << text << '"';
    }
}

TEST(Move, NothingBehindTheFifthCharacterIsLookedAt) {
    const Board board = board_of(kStartFen);
    EXPECT_EQ(move_from_string("e2e4qzzz", board), move_make(kE2, kE4, kPromoteQueen));
    EXPECT_EQ(move_from_string(std::string_view("e2e4e7e5", 4), board), move_make(kE2, kE4));
}

TEST(Move, GeneratedMovesSurviveTheirText) {
    test::random_walks(4, 3, 60, [](const Board& seen) {
        Board board = seen;
        MoveList list;
        gen_legal_moves(list, board);
        for (const Move move : test::moves_of(list)) {
            ASSERT_EQ(move_from_string(text_of(move), board), move)
                << text_of(move) << " in " << test::fen_of(board);
        }
    });
}

}  // namespace
}  // namespace zar
