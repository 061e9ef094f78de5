#include "search/extend.h"

#include <string>

#include "gtest/gtest.h"
#include "search/node.h"
#include "support/search_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of;
using test::move_of;
using test::text_of;

// Square by square, on files 0..7 and ranks 0..7.
bool is_passed_pawn_move(Move move, const Board& board) {
    const char mover = piece_to_char(board_piece(board, move_from(move)));
    if (mover != 'P' && mover != 'p') {
        return false;
    }
    const bool white = mover == 'P';
    const Square64 file = move_to64(move) % 8;
    const Square64 rank = move_to64(move) / 8;
    for (Square64 index = 0; index < 64; ++index) {
        const bool ahead = white ? index / 8 > rank : index / 8 < rank;
        const Piece piece = board_piece(board, square_of_64(index));
        if (!ahead || piece == kEmpty) {
            continue;
        }
        const char man = piece_to_char(piece);
        const bool own = man == mover;
        const bool enemy = man == (white ? 'p' : 'P');
        const Square64 distance = index % 8 - file;
        if ((distance == 0 && (own || enemy)) || (enemy && (distance == 1 || distance == -1))) {
            return false;
        }
    }
    return true;
}

TEST(PassedPawnMove, AgreesWithALookAtEverySquare) {
    int passed = 0;
    int others = 0;
    test::for_each_position(60, [&](Board& board) {
        MoveList legal;
        gen_legal_moves(legal, board);
        for (int i = 0; i < legal.size; ++i) {
            const Move move = legal.move[static_cast<std::size_t>(i)];
            const bool expected = is_passed_pawn_move(move, board);
            ++(expected ? passed : others);
            ASSERT_EQ(move_makes_passed_pawn(move, board), expected)
                << fen_of(board) << " " << text_of(move);
        }
    });
    EXPECT_GT(passed, 500);
    EXPECT_GT(others, 500);
}

struct Row {
    const char* fen;
    const char* move;
    bool answer;
};

TEST(PassedPawnMove, TheTargetSquareCounts) {
    for (const Row& row : {
             Row{"4k3/8/8/3p4/8/8/4P3/4K3 w - - 0 1", "e2e4", false},
             Row{"4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1", "e4e5", true},   // level with it
             Row{"4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1", "e4d5", true},   // takes it
             Row{"4k3/8/4P3/8/4P3/8/8/4K3 w - - 0 1", "e4e5", false},  // behind its own
             Row{"4k3/8/3P4/8/4P3/8/8/4K3 w - - 0 1", "e4e5", true},
             Row{"4k3/8/8/8/3Pp3/8/8/4K3 b - d3 0 1", "e4d3", true},
             Row{"4k3/8/8/8/4p3/8/3P4/4K3 b - - 0 1", "e4e3", false},
             Row{"4k3/8/8/p7/8/8/7P/4K3 w - - 0 1", "h2h4", true},  // files do not wrap
             Row{"4k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7a8n", true},
             Row{"4k3/8/8/8/4P3/8/8/4K3 w - - 0 1", "e1e2", false},
         }) {
        Board board = board_of(row.fen);
        const Move move = move_of(row.move, board);
        ASSERT_NE(move, kMoveNone) << row.fen << " " << row.move;
        EXPECT_EQ(move_makes_passed_pawn(move, board), row.answer) << row.fen << " " << row.move;
    }
}

TEST(CaptureIntoEnding, NeedsAPieceTakenAndOneAndTwoOrTwoAndThreePieces) {
    for (const Row& row : {
             Row{"4k3/8/8/3n4/4P3/8/8/4K3 w - - 0 1", "e4d5", true},     // 1 and 2
             Row{"4k3/8/8/3n4/8/4N3/8/4K3 w - - 0 1", "e3d5", false},    // 2 and 2
             Row{"4k3/8/8/3n4/8/4N3/8/R3K3 w - - 0 1", "e3d5", true},    // 3 and 2
             Row{"r3k3/8/8/3n4/8/4N3/8/4K3 w - - 0 1", "e3d5", true},    // 2 and 3
             Row{"r3k3/8/8/3n4/8/4N3/8/R3K3 w - - 0 1", "e3d5", false},  // 3 and 3
             Row{"r3k3/8/8/3n4/4P3/8/8/4K3 w - - 0 1", "e4d5", false},   // 1 and 3
             Row{"4k3/8/8/3p4/8/4N3/8/4K3 w - - 0 1", "e3d5", false},    // a pawn taken
             Row{"4k3/8/8/3pP3/8/4N3/8/4K3 w - d6 0 1", "e5d6", false},  // en passant
             Row{"4k3/8/8/3n4/8/4N3/8/R3K3 w - - 0 1", "e3f5", false},   // nothing taken
             Row{"1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7b8q", true},
         }) {
        Board board = board_of(row.fen);
        const Move move = move_of(row.move, board);
        ASSERT_NE(move, kMoveNone) << row.fen << " " << row.move;
        EXPECT_EQ(move_captures_into_ending(move, board), row.answer) << row.fen << " " << row.move;
    }
}

}  // namespace
}  // namespace zar
