#include "board/fen.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gtest/gtest.h"
#include "support/fatal_support.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fatal_text_of;
using test::fen_of;

constexpr std::string_view kAfterE4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR ";

Board scratch;
std::string_view scratch_text;

// The fatal text of reading exactly these characters, which need not be followed by a zero.
std::string fatal_of(std::string_view fen) {
    scratch_text = fen;
    return fatal_text_of([] { board_from_fen(scratch, scratch_text); });
}

void expect_fault(const std::vector<std::string_view>& fens, const std::string& code) {
    for (const std::string_view fen : fens) {
        EXPECT_EQ(fatal_of(fen), "X-Error " + code + "\n") << '"' << fen << '"';
    }
}

std::string with_rest(std::string_view rest) {
    return "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR" + std::string(rest);
}

TEST(Fen, ADigitBeyondTheLastFileIsFatal) {
    expect_fault({"p8/8/8/8/8/8/8/8 w - - 0 1", "45/8/8/8/8/8/8/8 w - - 0 1", "kqr6/8", "72/8",
                  "8/8/8/8/8/8/8/K8 w - - 0 1", "8/rnbqkb3/8/8/8/8/8/8 w - - 0 1"},
                 "4EFN1BF1");
}

TEST(Fen, OtherCharactersInThePlacementAreFatal) {
    expect_fault({" 8/8/8/8/8/8/8/8 w - - 0 1", "0k7/8", "9/8", "x7/8", "rnbq1bn-/8", "7/8", "/8/8",
                  "4k3//8", "7 w - - 0 1", "4k3/8/8/8/8/8/8/4K2 w - - 0 1", "\xC3\xA4", "4k2\n/8"},
                 "4EFN1BF2");
}

TEST(Fen, ARankNotEndedByASlashIsFatal) {
    expect_fault(
        {"", "8", "8 8/8", "88/8", "8p/8", "7PP/8", "rnbqkbnrr/8", "4k3/8/8/8/8/8/8 ",
         "4k3/8/8/8/8/8/8", "4k3", "4k3/", "rnbqkbnr/ppppp", "44k", "71k/8", "4k3/8/8/pppp"},
        "4EFN1BF3");
}

TEST(Fen, TheLastRankNotEndedByABlankIsFatal) {
    expect_fault({"4k3/8/8/8/8/8/8/4K3", "4k3/8/8/8/8/8/8/4K3/ w - -", "4k3/8/8/8/8/8/8/4K3w",
                  "4k3/8/8/8/8/8/8/4K31 w", "4k3/8/8/8/8/8/8/4K3P w - -", "4k3/8/8/8/8/8/8/",
                  "4k3/8/8/8/8/8/8/4K", "4k3/8/8/8/8/8/8/4K3\tw - -"},
                 "4EFN1BF4");
}

TEST(Fen, AnotherSideToMoveIsFatal) {
    for (const std::string_view rest : {" W - -", " B - -", " x - -", "  w - -", " ", " - - -"}) {
        expect_fault({with_rest(rest)}, "4EFN1BF5");
    }
}

TEST(Fen, NoBlankBehindTheSideIsFatal) {
    for (const std::string_view rest : {" w", " b", " wKQkq - 0 1", " w- -", " white - -"}) {
        expect_fault({with_rest(rest)}, "4EFN1BF6");
    }
}

TEST(Fen, CastlingLettersOutOfOrderOrUnknownAreFatal) {
    for (const std::string_view rest :
         {" w qkQK - 0 1", " w QK - 0 1", " w KK - 0 1", " w kK - 0 1", " w qk - 0 1",
          " w -- - 0 1", " w -K - 0 1", " w KQkq- 0 1", " w KQkqx - 0 1", " w HAha - 0 1",
          " w KQkq", " w -", " w ", " w a3 - 0 1"}) {
        expect_fault({with_rest(rest)}, "4EFN1BF7");
    }
}

TEST(Fen, AnotherEnPassantFileIsFatal) {
    for (const std::string_view rest : {" w KQkq i6 0 1", " w KQkq E6 0 1", " w KQkq 66 0 1",
                                        " w KQkq  - 0 1", " w KQkq ", " w - 0 1", " w   - 0 1"}) {
        expect_fault({with_rest(rest)}, "4EFN1BF8");
    }
}

TEST(Fen, TheEnPassantRankOfTheOtherSideIsFatal) {
    for (const std::string_view rest :
         {" w KQkq e3 0 1", " b KQkq e6 0 1", " w KQkq e5 0 1", " b KQkq e4 0 1", " w KQkq e",
          " b KQkq e", " w KQkq e  0 1", " w KQkq ee 0 1"}) {
        expect_fault({with_rest(rest)}, "4EFN1BF9");
    }
}

TEST(Fen, AFaultOfThePositionIsReportedAfterThoseOfTheText) {
    expect_fault({"8/8/8/8/8/8/8/8 w - - 0 1", "8/8/8/8/8/8/8/8 w - -"}, "2EB1IP3");
    expect_fault({"8/8/8/8/8/8/8/8 w - x 0 1"}, "4EFN1BF8");
    expect_fault({"4k3/8/8/8/8/8/8/P3K3 w - - 0 1"}, "2EB1IP4");
}

TEST(Fen, NothingIsReadBehindTheEndOfTheText) {
    // Each is the beginning of a text that would be read without a fault.
    const std::string_view whole = kStartFen;
    const std::vector<std::pair<std::size_t, std::string>> rows = {
        {0, "4EFN1BF3"},  {4, "4EFN1BF3"},  {8, "4EFN1BF3"},  {11, "4EFN1BF3"},
        {36, "4EFN1BF4"}, {43, "4EFN1BF4"}, {44, "4EFN1BF5"}, {45, "4EFN1BF6"},
        {46, "4EFN1BF7"}, {48, "4EFN1BF7"}, {50, "4EFN1BF7"}, {51, "4EFN1BF8"}};
    for (const auto& [size, code] : rows) {
        expect_fault({whole.substr(0, size)}, code);
    }
    for (std::size_t size = 52; size <= whole.size(); ++size) {
        EXPECT_EQ(fatal_of(whole.substr(0, size)), "") << size;
        EXPECT_EQ(fen_of(scratch), kStartFen) << size;
    }
}

TEST(Fen, FourFieldsAreEnough) {
    const Board board = board_of("4k3/8/8/8/8/8/8/4K2R w K -");
    EXPECT_EQ(board.ply_nb, 0);
    EXPECT_EQ(board.sp, 0);
    EXPECT_EQ(board.castle_flags, kWhiteKingSide);
}

TEST(Fen, TheClockIsReadWhenItsDigitsFollowOneBlank) {
    const std::vector<std::pair<std::string, int>> rows = {
        {" 37 60", 37},
        {" 0 1", 0},
        {" 5", 5},
        {" 007 1", 7},
        {" 12abc", 12},
        {"", 0},
        {" ", 0},
        {"  5 1", 0},
        {" -5 1", 0},
        {" +5 1", 0},
        {" x", 0},
        {" - 5", 0},
        {"x5", 0},
        {"5", 0},
        {" 100 1", 100},
        {" 999 1", 999},
        {" 1000 1", 1000},
        {" 1001 1", 1000},
        {" 5000 1", 1000},
        {" 99999999999999999999 1", 1000},
        {" 4294967297 1", 1000},
    };
    for (const auto& [rest, clock] : rows) {
        const Board board = board_of("4k3/8/8/8/8/8/8/4K2R w K -" + rest);
        EXPECT_EQ(board.ply_nb, clock) << '"' << rest << '"';
        EXPECT_EQ(board.sp, clock) << '"' << rest << '"';
    }
}

TEST(Fen, RightsNeedKingAndRookAtHome) {
    const std::vector<std::pair<std::string, int>> rows = {
        {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", 15}, {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", 15},
        {"r3k2r/8/8/8/8/8/8/R3K2R w - - 0 1", 0},     {"r3k2r/8/8/8/8/8/8/R3K2R w  - 0 1", 0},
        {"r3k2r/8/8/8/8/8/8/R3K2R w K - 0 1", 1},     {"r3k2r/8/8/8/8/8/8/R3K2R w Q - 0 1", 2},
        {"r3k2r/8/8/8/8/8/8/R3K2R w k - 0 1", 4},     {"r3k2r/8/8/8/8/8/8/R3K2R w q - 0 1", 8},
        {"r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1", 9},    {"r3k2r/8/8/8/8/8/8/R3K3 w KQkq - 0 1", 14},
        {"r3k2r/8/8/8/8/8/8/4K2R w KQkq - 0 1", 13},  {"r3k3/8/8/8/8/8/8/R3K2R w KQkq - 0 1", 11},
        {"4k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", 7},   {"r3k2r/8/8/8/8/8/8/R2K3R w KQkq - 0 1", 12},
        {"r2k3r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", 3},  {"r3k2r/8/8/8/8/8/8/r3K2N w KQkq - 0 1", 12},
        {"R3k2n/8/8/8/8/8/8/R3K2R b KQkq - 0 1", 3},
    };
    for (const auto& [fen, flags] : rows) {
        EXPECT_EQ(board_of(fen).castle_flags, flags) << fen;
    }
}

TEST(Fen, AnEnPassantSquareNeedsAPawnThatCanUseIt) {
    const std::vector<std::pair<std::string, Square>> rows = {
        {std::string(kAfterE4) + "b KQkq e3 0 1", kNoSquare},
        {"4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1", kE3},
        {"4k3/8/8/8/4Pp2/8/8/4K3 b - e3 0 1", kE3},
        {"4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1", kNoSquare},
        {"4k3/8/8/8/4Pn2/8/8/4K3 b - e3 0 1", kNoSquare},
        {"4k3/8/8/8/3PP3/8/8/4K3 b - e3 0 1", kNoSquare},
        {"4k3/8/8/8/3pp3/8/8/4K3 b - e3 0 1", kNoSquare},
        {"4k3/8/8/8/3pN3/8/8/4K3 b - e3 0 1", kNoSquare},
        {"4k3/8/8/8/3p4/8/8/4K3 b - e3 0 1", kNoSquare},
        {"4k3/8/8/8/3pP3/4N3/8/4K3 b - e3 0 1", kNoSquare},
        {"4k3/8/8/8/3pP3/4p3/8/4K3 b - e3 0 1", kNoSquare},
        {"4k3/8/8/8/Pp5p/8/8/4K3 b - a3 0 1", kA3},
        {"4k3/8/8/8/P6p/8/8/4K3 b - a3 0 1", kNoSquare},
        {"4k3/8/8/p6P/P6p/8/8/4K3 b - h3 0 1", kNoSquare},
        {"4k3/8/8/pP6/8/8/8/4K3 w - a6 0 1", kA6},
        {"4k3/8/8/6Pp/8/8/8/4K3 w - h6 0 1", kH6},
        {"4k3/8/8/P6p/8/8/8/4K3 w - h6 0 1", kNoSquare},
    };
    for (const auto& [fen, square] : rows) {
        EXPECT_EQ(board_of(fen).ep_square, square) << fen;
    }
}

TEST(Fen, ASquareDroppedOnReadingIsWrittenAsNone) {
    EXPECT_EQ(fen_of(board_of(std::string(kAfterE4) + "b KQkq e3 0 1")),
              std::string(kAfterE4) + "b KQkq - 0 1");
    EXPECT_EQ(fen_of(test::board_after(kStartFen, "e2e4")), std::string(kAfterE4) + "b KQkq - 0 1");
    EXPECT_EQ(fen_of(test::board_after(kStartFen, "e2e4 a7a6 e4e5 d7d5")),
              "rnbqkbnr/1pp1pppp/p7/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 1");
}

TEST(Fen, WritingGivesBackWhatWasRead) {
    for (const std::string fen : {
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
             "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b Kq - 12 1",
             "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 99 1",
             "k7/1p1p1p1p/p1p1p1p1/8/8/P1P1P1P1/1P1P1P1P/K7 b - - 1000 1",
             "4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1",
             "r3k2r/8/8/8/8/8/8/R3K2R w k - 3 1",
         }) {
        EXPECT_EQ(fen_of(board_of(fen)), fen);
    }
}

TEST(Fen, TheFullMoveNumberIsAlwaysWrittenAsOne) {
    EXPECT_EQ(fen_of(board_of("4k3/8/8/8/8/8/8/4K2R w K - 7 60")),
              "4k3/8/8/8/8/8/8/4K2R w K - 7 1");
}

TEST(Fen, ABufferBelow92BytesIsRefusedUntouched) {
    const Board board = board_of(kStartFen);
    std::array<char, 92> buffer{};
    for (const int size : {91, 6, 1, 0, -1}) {
        buffer.fill('x');
        EXPECT_FALSE(board_to_fen(board, buffer.data(), size)) << size;
        EXPECT_TRUE(std::all_of(buffer.begin(), buffer.end(), [](char c) { return c == 'x'; }));
    }
    EXPECT_TRUE(board_to_fen(board, buffer.data(), 92));
    EXPECT_EQ(buffer.data(), kStartFen);
}

TEST(Fen, TheLongestTextFitsTheLeastBuffer) {
    // More men than any position can have, and every other field at its longest.
    Board board;
    board_clear(board);
    std::string placement;
    for (const Square square : square_from_64) {
        board.square[static_cast<std::size_t>(square)] = kBlackQueen;
        placement += placement.size() % 9 == 8 ? "/q" : "q";
    }
    board.turn = kWhite;
    board.castle_flags = kAllCastling;
    board.ep_square = kH6;
    board.ply_nb = kMaxClock;
    std::array<char, kFenSize + 1> buffer{};
    buffer.fill('x');
    EXPECT_TRUE(board_to_fen(board, buffer.data(), kFenSize));
    EXPECT_EQ(buffer.data(), placement + " w KQkq h6 1000 1");
    EXPECT_EQ(buffer[kFenSize], 'x');
}

TEST(Fen, RandomPositionsReadBackToEqualBoards) {
    test::random_walks(3, 6, 80, [](const Board& board) {
        const std::string fen = fen_of(board);
        const Board again = board_of(fen);
        ASSERT_EQ(fen_of(again), fen);
        ASSERT_EQ(twin::position_to_fen(test::twin_of(fen)), fen);
        ASSERT_EQ(again.key, board.key) << fen;
        ASSERT_EQ(again.square, board.square) << fen;
        ASSERT_EQ(again.castle_flags, board.castle_flags) << fen;
        ASSERT_EQ(again.ep_square, board.ep_square) << fen;
    });
}

}  // namespace
}  // namespace zar
