// Moves for tests: texts of moves and lists, games played by text or at random, boards compared
// field by field.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "board/attack.h"
#include "board/board.h"
#include "board/fen.h"
#include "board/make.h"
#include "board/move.h"
#include "board/movegen.h"
#include "board/psq_table.h"
#include "gtest/gtest.h"
#include "support/board_support.h"

namespace zar::test {

using Texts = std::vector<std::string>;

inline std::string fen_of(const Board& board) {
    std::array<char, kFenSize> text{};
    EXPECT_TRUE(board_to_fen(board, text.data(), kFenSize));
    return text.data();
}

inline std::string text_of(Move move) {
    std::array<char, kMoveTextSize> text{};
    EXPECT_TRUE(move_to_string(move, text.data(), kMoveTextSize));
    return text.data();
}

inline std::vector<Move> moves_of(const MoveList& list) {
    return {list.move.begin(), list.move.begin() + list.size};
}

inline Texts texts_of(const std::vector<Move>& moves) {
    Texts texts;
    for (const Move move : moves) {
        texts.push_back(text_of(move));
    }
    return texts;
}

inline Texts texts_of(const MoveList& list) { return texts_of(moves_of(list)); }

// The words of a text, "e2e4 e7e5".
inline Texts words_of(std::string_view text) {
    Texts words;
    while (!text.empty()) {
        const std::size_t end = text.find(' ');
        words.emplace_back(text.substr(0, end));
        text = end == std::string_view::npos ? "" : text.substr(end + 1);
    }
    return words;
}

// Plays moves by their texts; each must be legal.
inline void play(Board& board, std::string_view moves) {
    for (const std::string& word : words_of(moves)) {
        MoveList list;
        gen_legal_moves(list, board);
        const Move move = move_from_string(word, board);
        ASSERT_TRUE(list_contains(list, move)) << word << " in " << fen_of(board);
        UndoInfo undo;
        move_do(board, move, undo);
    }
}

inline Board board_after(std::string_view fen, std::string_view moves) {
    Board board = board_of(fen);
    play(board, moves);
    return board;
}

inline constexpr std::array<std::string_view, 8> walk_fens = {
    kStartFen,
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "r3k2r/1P1p2p1/8/2P1pP2/2pPp3/8/1p1P2P1/R3K2R w KQkq e6 0 1",
    "n1n3n1/PPP3kP/8/8/8/8/ppp3Kp/N1N3N1 b - - 0 1",
    "4k3/8/8/3q1b2/2r5/5N2/1B3R2/4K2Q w - - 0 1",
    "3qk3/pppppppp/8/8/8/8/PPPPPPPP/3QK3 w - - 7 1",
};

// Plays `games` games of random legal moves from each of walk_fens, at most `plies` long, and calls
// `visit(board)` for every position on the way. The same seed gives the same games everywhere.
template <typename Visit>
void random_walks(unsigned seed, int games, int plies, Visit visit) {
    std::mt19937 random(seed);
    for (const std::string_view fen : walk_fens) {
        for (int game = 0; game < games; ++game) {
            Board board = board_of(fen);
            for (int ply = 0; ply < plies; ++ply) {
                visit(board);
                if (::testing::Test::HasFatalFailure()) {
                    return;
                }
                MoveList list;
                gen_legal_moves(list, board);
                if (list.size == 0) {
                    break;
                }
                UndoInfo undo;
                const auto choice = random() % static_cast<unsigned>(list.size);
                move_do(board, list.move[choice], undo);
            }
        }
    }
}

// Names the first field in which two boards differ, or is empty. The unused ends of the lists count
// too, those of the key history do not.
inline std::string difference(const Board& a, const Board& b) {
    const auto history_end = [](const Board& board) {
        return board.key_history.begin() + board.sp;
    };
    if (a.square != b.square) return "square";
    if (a.list_index != b.list_index) return "list_index";
    if (a.piece_list != b.piece_list) return "piece_list";
    if (a.piece_count != b.piece_count) return "piece_count";
    if (a.pawn_list != b.pawn_list) return "pawn_list";
    if (a.pawn_count != b.pawn_count) return "pawn_count";
    if (a.total_count != b.total_count) return "total_count";
    if (a.kind_count != b.kind_count) return "kind_count";
    if (a.pawn_file != b.pawn_file) return "pawn_file";
    if (a.turn != b.turn) return "turn";
    if (a.castle_flags != b.castle_flags) return "castle_flags";
    if (a.ep_square != b.ep_square) return "ep_square";
    if (a.ply_nb != b.ply_nb) return "ply_nb";
    if (a.sp != b.sp) return "sp";
    if (a.cap_sq != b.cap_sq) return "cap_sq";
    if (a.moved_piece != b.moved_piece) return "moved_piece";
    if (a.last_move != b.last_move) return "last_move";
    if (a.pst_opening != b.pst_opening) return "pst_opening";
    if (a.pst_endgame != b.pst_endgame) return "pst_endgame";
    if (a.key != b.key) return "key";
    if (a.pawn_key != b.pawn_key) return "pawn_key";
    if (a.material_key != b.material_key) return "material_key";
    if (!std::equal(a.key_history.begin(), history_end(a), b.key_history.begin(), history_end(b))) {
        return "key_history";
    }
    return "";
}

// A piece-square table in which every entry differs, so that no mistake in a sum goes unseen.
class NumberedPsqTest : public ::testing::Test {
  protected:
    void SetUp() override {
        saved_ = psq_table;
        std::int16_t number = 0;
        for (auto& kind : psq_table) {
            for (PsqEntry& entry : kind) {
                ++number;
                entry.opening = static_cast<std::int16_t>(number * 7);
                entry.endgame = static_cast<std::int16_t>(number * number % 1009 - 500);
            }
        }
    }

    void TearDown() override { psq_table = saved_; }

  private:
    PsqTable saved_{};
};

}  // namespace zar::test
