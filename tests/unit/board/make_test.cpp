#include "board/make.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "board/fen.h"
#include "board/key.h"
#include "board/movegen.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_after;
using test::board_of;
using test::difference;
using test::fen_of;
using Make = test::NumberedPsqTest;

constexpr const char* kCorners = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 5 1";

std::vector<int> list_of(SquareRange range) { return {range.begin(), range.end()}; }

// Everything that a set-up of the same position computes; lists may stand in another order.
void expect_as_set_up(const Board& board, const std::string& context) {
    const Board fresh = board_of(fen_of(board));
    ASSERT_EQ(board.square, fresh.square) << context;
    ASSERT_EQ(board.piece_count, fresh.piece_count) << context;
    ASSERT_EQ(board.pawn_count, fresh.pawn_count) << context;
    ASSERT_EQ(board.total_count, fresh.total_count) << context;
    ASSERT_EQ(board.kind_count, fresh.kind_count) << context;
    ASSERT_EQ(board.pawn_file, fresh.pawn_file) << context;
    ASSERT_EQ(board.turn, fresh.turn) << context;
    ASSERT_EQ(board.castle_flags, fresh.castle_flags) << context;
    ASSERT_EQ(board.ep_square, fresh.ep_square) << context;
    ASSERT_EQ(board.ply_nb, fresh.ply_nb) << context;
    ASSERT_EQ(board.pst_opening, fresh.pst_opening) << context;
    ASSERT_EQ(board.pst_endgame, fresh.pst_endgame) << context;
    ASSERT_EQ(board.key, fresh.key) << context;
    ASSERT_EQ(board.pawn_key, fresh.pawn_key) << context;
    ASSERT_EQ(board.material_key, fresh.material_key) << context;
}

TEST_F(Make, EveryLegalMoveIsPlayedAsTheRulesSay) {
    test::random_walks(5, 3, 60, [](const Board& seen) {
        Board board = seen;
        const twin::Position position = test::twin_of(board);
        MoveList list;
        gen_legal_moves(list, board);
        for (const Move move : test::moves_of(list)) {
            const std::string context = test::text_of(move) + " in " + fen_of(seen);
            UndoInfo undo;
            move_do(board, move, undo);
            ASSERT_EQ(fen_of(board),
                      twin::position_to_fen(twin::position_after(position, test::twin_move(move))))
                << context;
            ASSERT_TRUE(board_consistent(board)) << context;
            expect_as_set_up(board, context);
            move_undo(board, move, undo);
            ASSERT_EQ(difference(board, seen), "") << context;
        }
    });
}

TEST_F(Make, LongGamesAreTakenBackFieldByField) {
    std::mt19937 random(6);
    int moves_played = 0;
    for (const std::string_view fen : test::walk_fens) {
        for (int game = 0; game < 3; ++game) {
            Board board = board_of(fen);
            std::vector<Board> before;
            std::vector<Move> moves;
            std::vector<UndoInfo> undos;
            for (int ply = 0; ply < 120; ++ply) {
                MoveList list;
                gen_legal_moves(list, board);
                if (list.size == 0) {
                    break;
                }
                before.push_back(board);
                moves.push_back(list.move[random() % static_cast<unsigned>(list.size)]);
                undos.emplace_back();
                move_do(board, moves.back(), undos.back());
                ++moves_played;
            }
            while (!moves.empty()) {
                move_undo(board, moves.back(), undos.back());
                ASSERT_EQ(difference(board, before.back()), "")
                    << test::text_of(moves.back()) << " in " << fen_of(before.back());
                moves.pop_back();
                undos.pop_back();
                before.pop_back();
            }
        }
    }
    EXPECT_GT(moves_played, 1000);
}

TEST_F(Make, NullMovesAreTakenBackFieldByField) {
    test::random_walks(7, 3, 60, [](const Board& seen) {
        if (board_is_check(seen)) {
            return;
        }
        Board board = seen;
        UndoInfo undo;
        move_do_null(board, undo);
        ASSERT_EQ(board.turn, seen.turn ^ 1);
        ASSERT_EQ(board.ep_square, kNoSquare);
        ASSERT_EQ(board.ply_nb, 0);
        ASSERT_EQ(board.cap_sq, 0);
        ASSERT_EQ(board.moved_piece, 0);
        ASSERT_EQ(board.sp, seen.sp + 1);
        ASSERT_EQ(board.key_history[static_cast<std::size_t>(seen.sp)], seen.key);
        ASSERT_TRUE(board_consistent(board)) << fen_of(seen);
        expect_as_set_up(board, "null move in " + fen_of(seen));
        move_undo_null(board, undo);
        ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
    });
}

TEST_F(Make, ANullMoveResetsTheClockAndItsUndoBringsItBack) {
    Board board = board_of("4k3/8/8/8/3pP3/8/8/4K3 b - e3 42 1");
    const std::uint64_t key = board.key;
    UndoInfo undo;
    move_do_null(board, undo);
    EXPECT_EQ(board.ply_nb, 0);
    EXPECT_EQ(board.key, key ^ random64[780] ^ random64[772 + 4]);
    move_undo_null(board, undo);
    EXPECT_EQ(board.ply_nb, 42);
    EXPECT_EQ(board.ep_square, kE3);
    EXPECT_EQ(board.key, key);
}

TEST_F(Make, TheHistoryGrowsByTheKeyBeforeTheMove) {
    Board board = board_of("4k3/8/8/8/8/8/8/4K2R w K - 2 1");
    const std::uint64_t key = board.key;
    test::play(board, "h1h2");
    EXPECT_EQ(board.sp, 3);
    EXPECT_EQ(board.key_history[2], key);
    EXPECT_EQ(board.moved_piece, kWhiteRook);
    EXPECT_EQ(board.ply_nb, 3);
}

TEST_F(Make, ADoubleStepSetsEnPassantOnlyBesideAnEnemyPawn) {
    EXPECT_EQ(board_after(kStartFen, "e2e4").ep_square, kNoSquare);
    EXPECT_EQ(board_after(kStartFen, "e2e4 a7a6 e4e5 d7d5").ep_square, kD6);
    EXPECT_EQ(board_after(kStartFen, "e2e4 a7a6 e4e5 d7d5 h2h3").ep_square, kNoSquare);
    EXPECT_EQ(board_after(kStartFen, "e2e4 a7a6 e4e5 d7d6").ep_square, kNoSquare);
    EXPECT_EQ(board_after("4k3/8/8/8/p7/8/1P6/4K3 w - - 0 1", "b2b4").ep_square, kB3);
    EXPECT_EQ(board_after("4k3/8/8/8/7p/8/P7/4K3 w - - 0 1", "a2a4").ep_square, kNoSquare);
    EXPECT_EQ(board_after("4k3/8/8/8/P7/8/1P6/4K3 w - - 0 1", "b2b4").ep_square, kNoSquare);
    EXPECT_EQ(board_after("4k3/8/8/8/n7/8/1P6/4K3 w - - 0 1", "b2b4").ep_square, kNoSquare);
}

TEST_F(Make, TheClockIsResetByPawnMovesAndCaptures) {
    const std::string_view fen = "r3k3/p7/8/8/8/8/P7/R3K3 w - - 30 1";
    EXPECT_EQ(board_after(fen, "e1e2").ply_nb, 31);
    EXPECT_EQ(board_after(fen, "e1e2 a7a6").ply_nb, 0);
    EXPECT_EQ(board_after("r3k3/8/8/8/8/8/8/R3K3 w - - 30 1", "a1a8").ply_nb, 0);
    EXPECT_EQ(board_after(kCorners, "e1g1").ply_nb, 6);
}

TEST_F(Make, TheCaptureSquareTellsOfCapturesAndPromotions) {
    EXPECT_EQ(board_after("r3k3/8/8/8/8/8/8/R3K3 w - - 0 1", "a1a8").cap_sq, kA8);
    EXPECT_EQ(board_after("r3k3/8/8/8/8/8/8/R3K3 w - - 0 1", "a1a8 e8e7").cap_sq, 0);
    EXPECT_EQ(board_after("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6").cap_sq, kD6);
    EXPECT_EQ(board_after("8/P3k3/8/8/8/8/8/4K3 w - - 0 1", "a7a8n").cap_sq, kA8);
    const Board promoted = board_after("1r6/P3k3/8/8/8/8/8/4K3 w - - 0 1", "a7b8q");
    EXPECT_EQ(promoted.cap_sq, kB8);
    EXPECT_EQ(promoted.moved_piece, kWhitePawn);
}

TEST_F(Make, EachCastlingMovesItsRook) {
    EXPECT_EQ(fen_of(board_after(kCorners, "e1g1")), "r3k2r/8/8/8/8/8/8/R4RK1 b kq - 6 1");
    EXPECT_EQ(fen_of(board_after(kCorners, "e1c1")), "r3k2r/8/8/8/8/8/8/2KR3R b kq - 6 1");
    const std::string black = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 5 1";
    EXPECT_EQ(fen_of(board_after(black, "e8g8")), "r4rk1/8/8/8/8/8/8/R3K2R w KQ - 6 1");
    EXPECT_EQ(fen_of(board_after(black, "e8c8")), "2kr3r/8/8/8/8/8/8/R3K2R w KQ - 6 1");
}

TEST_F(Make, KingsRooksAndTheirCapturesLoseRights) {
    EXPECT_EQ(board_after(kCorners, "e1e2").castle_flags, 12);
    EXPECT_EQ(board_after(kCorners, "a1a2").castle_flags, 13);
    EXPECT_EQ(board_after(kCorners, "h1h2").castle_flags, 14);
    EXPECT_EQ(board_after(kCorners, "e1e2 e8e7").castle_flags, 0);
    EXPECT_EQ(board_after(kCorners, "e1e2 a8a7").castle_flags, 4);
    EXPECT_EQ(board_after(kCorners, "e1e2 h8h7").castle_flags, 8);
    EXPECT_EQ(board_after(kCorners, "a1a8").castle_flags, 5);
    EXPECT_EQ(board_after(kCorners, "h1h8").castle_flags, 10);
}

TEST_F(Make, CapturingARookAtHomeChangesTheKeyByItsRight) {
    const Board board = board_of("4k2r/8/8/4B3/8/8/8/4K3 w k - 0 1");
    Board after = board;
    test::play(after, "e5h8");
    EXPECT_EQ(after.castle_flags, 0);
    const std::uint64_t men = piece_key_of(kWhiteBishop12, 36) ^ piece_key_of(kWhiteBishop12, 63) ^
                              piece_key_of(kBlackRook12, 63);
    EXPECT_EQ(board.key ^ after.key, men ^ castle_key_of(4) ^ random64[780]);
}

TEST_F(Make, EnPassantTakesThePawnBehindTheTarget) {
    EXPECT_EQ(fen_of(board_after("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6")),
              "4k3/8/3P4/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(fen_of(board_after("4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1", "d4e3")),
              "4k3/8/8/8/8/4p3/8/4K3 w - - 0 1");
}

TEST_F(Make, AManTakenOffClosesItsListUp) {
    Board board = board_of("4k3/8/8/8/8/2pp4/1p6/R1N1KN1R b - - 0 1");
    EXPECT_EQ(list_of(board_pieces(board, kWhite)), (std::vector<int>{kE1, kA1, kH1, kC1, kF1}));
    const Board before = board;
    const Move move = move_make(kB2, kA1, kPromoteRook);
    UndoInfo undo;
    move_do(board, move, undo);
    EXPECT_EQ(list_of(board_pieces(board, kWhite)), (std::vector<int>{kE1, kH1, kC1, kF1}));
    EXPECT_EQ(list_of(board_pawns(board, kBlack)), (std::vector<int>{kC3, kD3}));
    EXPECT_TRUE(undo.captured);
    EXPECT_EQ(undo.cap_square, kA1);
    EXPECT_EQ(undo.cap_piece, kWhiteRook);
    EXPECT_EQ(undo.cap_index, 1);
    EXPECT_EQ(undo.pawn_index, 0);
    move_undo(board, move, undo);
    EXPECT_EQ(difference(board, before), "");
}

TEST_F(Make, APromotedPieceStandsBehindItsKind) {
    const std::string_view fen = "8/P7/7k/8/8/8/8/1QRBNK2 w - - 0 1";
    const auto pieces_after = [&](std::string_view move) {
        return list_of(board_pieces(board_after(fen, move), kWhite));
    };
    EXPECT_EQ(pieces_after("a7a8q"), (std::vector<int>{kF1, kB1, kA8, kC1, kD1, kE1}));
    EXPECT_EQ(pieces_after("a7a8r"), (std::vector<int>{kF1, kB1, kC1, kA8, kD1, kE1}));
    EXPECT_EQ(pieces_after("a7a8b"), (std::vector<int>{kF1, kB1, kC1, kD1, kA8, kE1}));
    EXPECT_EQ(pieces_after("a7a8n"), (std::vector<int>{kF1, kB1, kC1, kD1, kE1, kA8}));
}

TEST_F(Make, APromotedPieceStandsBehindTheKingWhenItIsTheBest) {
    const Board board = board_after("4k3/8/8/8/8/K7/2p5/8 b - - 0 1", "c2c1q");
    EXPECT_EQ(list_of(board_pieces(board, kBlack)), (std::vector<int>{kE8, kC1}));
    EXPECT_EQ(board.pawn_key, 0U);
    EXPECT_EQ(board_pawn_count(board, kBlack), 0);
}

}  // namespace
}  // namespace zar
