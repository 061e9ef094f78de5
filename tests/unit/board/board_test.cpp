#include "board/board.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "board/fen.h"
#include "board/psq_table.h"
#include "gtest/gtest.h"
#include "support/board_support.h"
#include "support/fatal_support.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fatal_text_of;
using test::take_warnings;
using BoardSums = test::NumberedPsqTest;

Board scratch;

std::string fatal_of_fen(const char* fen) {
    return fatal_text_of([](const char* text) { board_from_fen(scratch, text); }, fen);
}

std::vector<int> list_of(SquareRange range) { return {range.begin(), range.end()}; }

std::size_t index_of(std::ptrdiff_t value) { return static_cast<std::size_t>(value); }

TEST(Board, TheStartPositionHasItsCountsAndLists) {
    const Board board = board_of(kStartFen);
    EXPECT_EQ(board.total_count, 32);
    const std::array<int, 12> kinds = {8, 8, 2, 2, 2, 2, 2, 2, 1, 1, 1, 1};
    EXPECT_EQ(board.kind_count, kinds);
    EXPECT_EQ(list_of(board_pieces(board, kWhite)),
              (std::vector<int>{kE1, kD1, kA1, kH1, kC1, kF1, kB1, kG1}));
    EXPECT_EQ(list_of(board_pieces(board, kBlack)),
              (std::vector<int>{kE8, kD8, kA8, kH8, kC8, kF8, kB8, kG8}));
    EXPECT_EQ(list_of(board_officers(board, kBlack)),
              (std::vector<int>{kD8, kA8, kH8, kC8, kF8, kB8, kG8}));
    EXPECT_EQ(list_of(board_pawns(board, kWhite)),
              (std::vector<int>{kA2, kB2, kC2, kD2, kE2, kF2, kG2, kH2}));
    EXPECT_EQ(list_of(board_pawns(board, kBlack)),
              (std::vector<int>{kA7, kB7, kC7, kD7, kE7, kF7, kG7, kH7}));
    EXPECT_EQ(board_king(board, kWhite), kE1);
    EXPECT_EQ(board_king(board, kBlack), kE8);
    EXPECT_EQ(board.turn, kWhite);
    EXPECT_EQ(board.castle_flags, 15);
    EXPECT_EQ(board.ep_square, kNoSquare);
    EXPECT_EQ(board.sp, 0);
    EXPECT_EQ(board.cap_sq, 0);
    EXPECT_EQ(board.moved_piece, 0);
}

TEST(Board, ListsEndWithZeroAndAgreeWithTheMailbox) {
    const Board board = board_of("r2qk2r/p1p2p1p/8/3Pp3/8/8/P4P2/RN2K1NR w KQkq e6 0 1");
    int listed = 0;
    for (const Color color : {kWhite, kBlack}) {
        EXPECT_EQ(board.piece_list[index_of(color)][index_of(board_piece_count(board, color))], 0);
        EXPECT_EQ(board.pawn_list[index_of(color)][index_of(board_pawn_count(board, color))], 0);
        for (const SquareRange range : {board_pieces(board, color), board_pawns(board, color)}) {
            int place = 0;
            for (const Square square : range) {
                EXPECT_EQ(board.list_index[index_of(square)], place++) << square;
                ++listed;
            }
        }
    }
    int without_place = 0;
    for (const int place : board.list_index) {
        without_place += place == -1 ? 1 : 0;
    }
    EXPECT_EQ(listed, board.total_count);
    EXPECT_EQ(without_place, 256 - listed);
}

TEST(Board, PiecesAreSortedByTypeAndKeepTheirOrderWithinIt) {
    const Board board = board_of("k7/8/8/1N6/2BQ4/R2b4/4N1QB/1RB1K2R b - - 0 1");
    EXPECT_EQ(list_of(board_pieces(board, kWhite)),
              (std::vector<int>{kE1, kG2, kD4, kB1, kH1, kA3, kC1, kH2, kC4, kE2, kB5}));
}

TEST(Board, TheKingComesFirstWhereverItStands) {
    const Board board = board_of("K6R/Q7/8/8/8/8/4k3/N6R b - - 0 1");
    EXPECT_EQ(list_of(board_pieces(board, kWhite)), (std::vector<int>{kA8, kA7, kH1, kH8, kA1}));
}

TEST(Board, PawnFilesCountRanksFromEachColoursOwnSide) {
    const Board board = board_of("4k3/1p6/8/8/1P5p/1P6/7P/4K3 w - - 0 1");
    std::array<std::array<std::uint8_t, 16>, 2> files{};
    files[kWhite][5] = 1 << 2 | 1 << 3;
    files[kWhite][11] = 1 << 1;
    files[kBlack][5] = 1 << 1;
    files[kBlack][11] = 1 << 4;
    EXPECT_EQ(board.pawn_file, files);
}

TEST(Board, MaterialLeavesTheKingsOut) {
    const Board board = board_of("4k3/8/8/2n5/8/PPP5/8/2BQK2R w - - 0 1");
    EXPECT_EQ(board.total_count, 9);
}

TEST_F(BoardSums, SetUpSumsTheSquareValuesOfAllMen) {
    // Indices in the tables: kind, then square from a1 = 0.
    const Board board = board_of("4k3/8/8/8/8/8/P7/4K2r w - - 0 1");
    const std::vector<std::pair<int, int>> men = {{0, 8}, {7, 7}, {10, 4}, {11, 60}};
    int opening = 0;
    int endgame = 0;
    for (const auto& [kind, square] : men) {
        opening += psq_table[index_of(kind)][index_of(square)].opening;
        endgame += psq_table[index_of(kind)][index_of(square)].endgame;
    }
    EXPECT_EQ(board.pst_opening, opening);
    EXPECT_EQ(board.pst_endgame, endgame);
}

TEST_F(BoardSums, SumsFollowARebuiltTable) {
    Board board = board_of(kStartFen);
    const int opening = board.pst_opening;
    const int endgame = board.pst_endgame;
    psq_table[kWhiteKing12][4].opening += 11;
    psq_table[kBlackPawn12][48].endgame -= 5;
    board_sum_psq(board);
    EXPECT_EQ(board.pst_opening, opening + 11);
    EXPECT_EQ(board.pst_endgame, endgame - 5);
}

TEST(Board, TheClockOfASetUpFillsTheHistoryWithZeroKeys) {
    Board board;
    board.key_history.fill(77);
    board_from_fen(board, "4k3/8/8/8/8/8/8/4K2R w K - 37 60");
    EXPECT_EQ(board.ply_nb, 37);
    EXPECT_EQ(board.sp, 37);
    for (std::size_t i = 0; i < 37; ++i) {
        EXPECT_EQ(board.key_history[i], 0U) << i;
    }
}

TEST(Board, ASetUpLeavesNothingOfTheGameBefore) {
    Board board = test::board_after(kStartFen, "e2e4 d7d5 e4d5 d8d5 b1c3 d5e5");
    board_from_fen(board, kStartFen);
    EXPECT_EQ(test::difference(board, board_of(kStartFen)), "");
}

TEST(Board, ClearingEmptiesTheSquaresInsideAnEdge) {
    Board board = board_of("4k3/8/8/3pP3/8/8/8/4K2R w K d6 5 1");
    board_clear(board);
    for (Square square = 0; square < 256; ++square) {
        EXPECT_EQ(board_piece(board, square), square_is_on_board(square) ? 0 : 16) << square;
    }
    EXPECT_EQ(board.turn, -1);
    EXPECT_EQ(board.castle_flags, 0);
    EXPECT_EQ(board.ep_square, 0);
    EXPECT_EQ(board.ply_nb, 0);
}

TEST(Board, ACopyHoldsEverything) {
    const Board board = test::board_after(kStartFen, "g1f3 g8f6 f3g1 e7e5 e2e4");
    Board copy;
    board_copy(copy, board);
    EXPECT_EQ(test::difference(copy, board), "");
    EXPECT_EQ(copy.key_history[0], 0x463B96181691FC9CU);
}

TEST(Board, TrimmingKeepsTheNewestHistory) {
    Board board = board_of(kStartFen);
    board.sp = 10;
    for (std::size_t i = 0; i < 10; ++i) {
        board.key_history[i] = 100 + i;
    }
    board_trim_history(board, 10);
    EXPECT_EQ(board.sp, 10);
    board_trim_history(board, 3);
    EXPECT_EQ(board.sp, 3);
    EXPECT_EQ(board.key_history[0], 107U);
    EXPECT_EQ(board.key_history[1], 108U);
    EXPECT_EQ(board.key_history[2], 109U);
    board_trim_history(board, 200);
    EXPECT_EQ(board.sp, 3);
    EXPECT_EQ(board.key_history[2], 109U);
}

TEST(Board, TrimmingWorksWhereOldAndNewEntriesOverlap) {
    Board board = board_of(kStartFen);
    board.sp = kKeyHistorySize;
    for (std::size_t i = 0; i < kKeyHistorySize; ++i) {
        board.key_history[i] = i;
    }
    board_trim_history(board, 4000);
    EXPECT_EQ(board.sp, 4000);
    for (std::size_t i = 0; i < 4000; ++i) {
        ASSERT_EQ(board.key_history[i], i + 96);
    }
}

TEST(Board, ACodeThatIsNoPieceIsAFault) {
    // 36 carries bits of two kinds, 255 all.
    for (const Piece code : {1, 2, 3, 16, 36, 131, 255}) {
        scratch = board_of(kStartFen);
        scratch.square[kD4] = packed(code);
        EXPECT_EQ(board_finish_setup(scratch), &kFaultPieceCode) << code;
    }
}

TEST(Board, MoreThanSixteenPiecesOfAColourAreFatal) {
    const auto* seventeen = "7k/8/7p/7p/8/RNNNNNNN/RNNNNNNN/K7 w - - 0 1";
    EXPECT_EQ(fatal_of_fen(seventeen), "X-Error 2EB1IP2\n");
    const auto* black = "k7/rnnnnnnn/rnnnnnnn/8/8/P7/8/7K b - - 0 1";
    EXPECT_EQ(fatal_of_fen(black), "X-Error 2EB1IP2\n");
    const auto* sixteen = "7k/8/7p/7p/8/1NNNNNNN/RNNNNNNN/K7 w - - 0 1";
    EXPECT_EQ(fatal_of_fen(sixteen), "");
    EXPECT_EQ(board_piece_count(scratch, kWhite), 16);
}

TEST(Board, TwoWhiteKingsOrNoneAreFatal) {
    for (const char* fen : {"4k3/8/8/8/8/8/8/K3K3 w - - 0 1", "4k3/8/8/8/8/8/8/8 w - - 0 1",
                            "k3k3/8/8/8/8/8/8/4K3 w - - 0 1", "8/8/8/8/8/8/8/4K3 w - - 0 1",
                            "8/8/8/8/8/8/8/8 w - - 0 1", "KKKKKKKK/8/8/8/8/8/8/k7 w - - 0 1"}) {
        EXPECT_EQ(fatal_of_fen(fen), "X-Error 2EB1IP3\n") << fen;
    }
}

TEST(Board, NinePawnsOrAPawnOnAnEndRankAreFatal) {
    for (const char* fen :
         {"P3k3/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/4K2P w - - 0 1",
          "4k2p/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/p3K3 w - - 0 1",
          "4k3/8/8/8/8/8/PPPPPPPP/P3K3 w - - 0 1", "4k3/8/8/8/8/P7/PPPPPPPP/4K3 w - - 0 1",
          "4k3/pppppppp/7p/8/8/8/8/4K3 w - - 0 1"}) {
        EXPECT_EQ(fatal_of_fen(fen), "X-Error 2EB1IP4\n") << fen;
    }
    EXPECT_EQ(fatal_of_fen("4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1"), "");
}

TEST(Board, MoreThanSixteenMenOfAColourAreFatal) {
    const auto* seventeen = "4k3/8/8/8/8/N7/PPPPPPPP/RNBQKBNR w - - 0 1";
    EXPECT_EQ(fatal_of_fen(seventeen), "X-Error 2EB1IP5\n");
    const auto* black = "rnbqkbnr/pppppppp/n7/8/8/8/8/4K3 w - - 0 1";
    EXPECT_EQ(fatal_of_fen(black), "X-Error 2EB1IP5\n");
}

TEST(Board, TheSideNotToMoveMayNotBeInCheck) {
    for (const char* fen : {"4k3/8/8/8/8/8/8/4RK2 w - - 0 1", "4r1k1/8/8/8/8/8/8/4K3 b - - 0 1",
                            "8/8/8/8/8/8/4k3/4K3 w - - 0 1", "4k3/3P4/8/8/8/8/8/4K3 w - - 0 1"}) {
        EXPECT_EQ(fatal_of_fen(fen), "X-Error 2EB1IP6\n") << fen;
    }
    EXPECT_EQ(fatal_of_fen("4k3/8/8/8/8/8/8/4RK2 b - - 0 1"), "");
}

TEST(Board, FaultsAreFoundWhitesFirst) {
    // A pawn of White's comes before Black's missing king, White's second king before its pawns.
    EXPECT_EQ(fatal_of_fen("P7/8/8/8/8/8/8/4K3 w - - 0 1"), "X-Error 2EB1IP4\n");
    EXPECT_EQ(fatal_of_fen("P7/8/8/8/8/8/8/K3K3 w - - 0 1"), "X-Error 2EB1IP3\n");
    EXPECT_EQ(fatal_of_fen("p7/8/8/8/8/8/8/4K3 w - - 0 1"), "X-Error 2EB1IP3\n");
}

TEST(Board, TenWhiteBishopsWarnOncePerColour) {
    EXPECT_EQ(take_warnings(), "");
    EXPECT_EQ(fatal_of_fen("7k/8/8/8/8/8/BBBBB3/KBBBBB2 b - - 0 1"), "");
    EXPECT_EQ(take_warnings(), "X-Error 2EB1IP4\nX-Error 2EB1IP4\n");
    EXPECT_EQ(scratch.kind_count[kWhiteBishop12], 10);
    EXPECT_EQ(board_piece_count(scratch, kWhite), 11);
}

TEST(Board, NineWhiteOrTenBlackBishopsDoNotWarn) {
    EXPECT_EQ(take_warnings(), "");
    EXPECT_EQ(fatal_of_fen("7k/8/8/8/8/8/BBBB4/KBBBBB2 b - - 0 1"), "");
    EXPECT_EQ(fatal_of_fen("kbbbbb2/bbbbb3/8/8/8/8/8/7K w - - 0 1"), "");
    EXPECT_EQ(take_warnings(), "");
}

TEST_F(BoardSums, EveryFieldOutOfStepIsSeen) {
    const Board good = board_of("r2qk2r/p1p2p1p/8/3Pp3/8/8/P4P2/RN2K1NR w KQkq e6 0 1");
    ASSERT_TRUE(board_consistent(good));
    using Damage = std::function<void(Board&)>;
    const std::vector<std::pair<const char*, Damage>> damages = {
        {"man vanished", [](Board& board) { board.square[kA1] = kEmpty; }},
        {"man appeared", [](Board& board) { board.square[kD4] = kWhiteKnight; }},
        {"edge gone", [](Board& board) { board.square[kA1 - 1] = kEmpty; }},
        {"White's men", [](Board& board) { board.men[kWhite] ^= 1; }},
        {"Black's men", [](Board& board) { board.men[kBlack] ^= 1; }},
        {"White's pawns", [](Board& board) { board.pawns[kWhite] ^= SquareSet{1} << 40; }},
        {"Black's pawns", [](Board& board) { board.pawns[kBlack] ^= SquareSet{1} << 40; }},
        {"list index", [](Board& board) { board.list_index[kA1] = 3; }},
        {"index of an empty square", [](Board& board) { board.list_index[kD4] = 0; }},
        {"piece list", [](Board& board) { board.piece_list[kWhite][1] = kD4; }},
        {"piece list end", [](Board& board) { board.piece_list[kWhite][5] = kD4; }},
        {"piece count", [](Board& board) { board.piece_count[kWhite] -= 1; }},
        {"pawn list end", [](Board& board) { board.pawn_list[kBlack][5] = kA7; }},
        {"pawn count", [](Board& board) { board.pawn_count[kBlack] -= 1; }},
        {"total", [](Board& board) { board.total_count += 1; }},
        {"kinds", [](Board& board) { board.kind_count[kWhiteRook12] += 1; }},
        {"pawn file", [](Board& board) { board.pawn_file[kBlack][8] ^= 4; }},
        {"turn", [](Board& board) { board.turn = kBlack; }},
        {"castling", [](Board& board) { board.castle_flags = 7; }},
        {"en passant", [](Board& board) { board.ep_square = kNoSquare; }},
        {"opening sum", [](Board& board) { board.pst_opening += 1; }},
        {"endgame sum", [](Board& board) { board.pst_endgame += 1; }},
        {"key", [](Board& board) { board.key ^= 1; }},
        {"pawn key", [](Board& board) { board.pawn_key ^= 1; }},
        {"material key", [](Board& board) { board.material_key ^= 1; }},
        {"order of types",
         [](Board& board) {
             std::swap(board.piece_list[kWhite][2], board.piece_list[kWhite][3]);
             board.list_index[index_of(board.piece_list[kWhite][2])] = 2;
             board.list_index[index_of(board.piece_list[kWhite][3])] = 3;
         }},
    };
    for (const auto& [name, damage] : damages) {
        Board board = good;
        damage(board);
        EXPECT_FALSE(board_consistent(board)) << name;
    }
}

TEST(Board, SquaresHaveTwoCharacters) {
    for (int index = 0; index < 64; ++index) {
        const std::string text = {static_cast<char>('a' + index % 8),
                                  static_cast<char>('1' + index / 8)};
        std::array<char, 3> buffer = {'x', 'x', 'x'};
        EXPECT_TRUE(square_to_string(square_of_64(index), buffer.data(), 3));
        EXPECT_EQ(buffer[2], '\0');
        EXPECT_EQ(buffer.data(), text);
        EXPECT_EQ(square_from_string(text), square_of_64(index));
    }
}

TEST(Board, ABufferTooSmallForASquareStaysUntouched) {
    std::array<char, 3> buffer = {'x', 'y', 'z'};
    EXPECT_FALSE(square_to_string(kE4, buffer.data(), 2));
    EXPECT_EQ(buffer, (std::array<char, 3>{'x', 'y', 'z'}));
}

TEST(Board, OtherTextsAreNoSquare) {
    for (const std::string_view text :
         {"", "e", "e44", "e4 ", " e4", "i4", "`4", "e0", "e9", "E4", "4e", "--"}) {
        EXPECT_EQ(square_from_string(text), kNoSquare) << '"' << text << '"';
    }
    EXPECT_EQ(square_from_string(std::string_view("e4\0", 3)), kNoSquare);
}

}  // namespace
}  // namespace zar
