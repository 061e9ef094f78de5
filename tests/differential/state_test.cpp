// What a position keeps while moves are made and taken back: every byte, the three keys, and its
// text.

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "board/attack.h"
#include "board/key.h"
#include "board/make.h"
#include "board/movegen.h"
#include "differential/positions.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::difference;
using test::fen_of;
using test::text_of;
using test::twin_move;
using test::twin_of;
using DifferentialState = test::SearchTest;

// Are two boards the same byte for byte, but for the unused end of the key history?
bool bytes_agree(const Board& a, const Board& b) {
    // There is padding between `sp` and the turn and behind the last move, and nowhere else.
    constexpr std::size_t kHead = offsetof(Board, sp) + sizeof(Board::sp);
    constexpr std::size_t kState = offsetof(Board, turn);
    constexpr std::size_t kEnd = offsetof(Board, last_move) + sizeof(Board::last_move);
    constexpr std::size_t kHistory = offsetof(Board, key_history);
    static_assert(kState - kHead < sizeof(std::uint64_t));
    static_assert(kHistory - kEnd < sizeof(std::uint64_t));
    static_assert(kHistory + sizeof(Board::key_history) == sizeof(Board));
    const auto* const first = reinterpret_cast<const unsigned char*>(&a);
    const auto* const second = reinterpret_cast<const unsigned char*>(&b);
    if (std::memcmp(first, second, kHead) != 0 ||
        std::memcmp(first + kState, second + kState, kEnd - kState) != 0) {
        return false;
    }
    const auto used = static_cast<std::size_t>(a.sp) * sizeof(a.key_history[0]);
    return std::memcmp(a.key_history.data(), b.key_history.data(), used) == 0;
}

// The three keys from a board of letters and the number table alone.
struct Keys {
    std::uint64_t position;
    std::uint64_t pawns;
    std::uint64_t material;
    friend bool operator==(const Keys& a, const Keys& b) = default;
};

Keys kept_keys(const Board& board) { return {board.key, board.pawn_key, board.material_key}; }

Keys computed_keys(const Board& board) {
    return {key_compute(board), pawn_key_compute(board), material_key_compute(board)};
}

Keys keys_of(const twin::Position& position) {
    // The book format has the black man of a kind before the white one; the counts of men follow
    // the engine's order, white first.
    const std::string by_book = "pPnNbBrRqQkK";
    Keys keys{};
    std::array<std::size_t, 12> counts{};
    for (std::size_t square = 0; square < 64; ++square) {
        const char man = position.board[square / 8][square % 8];
        if (man == '.') {
            continue;
        }
        const std::size_t kind = by_book.find(man);
        const std::uint64_t term = random64[64 * kind + square];
        keys.position ^= term;
        keys.pawns ^= kind < 2 ? term : 0;
        const std::size_t white_first = kind ^ 1;
        keys.material ^= random64[16 * white_first + counts[white_first]++];
    }
    for (std::size_t right = 0; right < 4; ++right) {
        keys.position ^= position.castling[right] ? random64[768 + right] : 0;
    }
    if (position.ep_file >= 0) {
        keys.position ^= random64[772 + static_cast<std::size_t>(position.ep_file)];
    }
    keys.position ^= position.white_to_move ? random64[780] : 0;
    return keys;
}

std::set<Square> set_of(SquareRange range) { return {range.begin(), range.end()}; }

// Names the first fact about the position in which two boards differ. The order of the lists, the
// history and what is known of the last move are no such facts.
std::string unlike(const Board& a, const Board& b) {
    for (Color color = kWhite; color <= kBlack; ++color) {
        if (set_of(board_pieces(a, color)) != set_of(board_pieces(b, color))) return "piece_list";
        if (set_of(board_pawns(a, color)) != set_of(board_pawns(b, color))) return "pawn_list";
    }
    if (a.square != b.square) return "square";
    if (a.piece_count != b.piece_count) return "piece_count";
    if (a.pawn_count != b.pawn_count) return "pawn_count";
    if (a.total_count != b.total_count) return "total_count";
    if (a.kind_count != b.kind_count) return "kind_count";
    if (a.pawn_file != b.pawn_file) return "pawn_file";
    if (a.turn != b.turn) return "turn";
    if (a.castle_flags != b.castle_flags) return "castle_flags";
    if (a.ep_square != b.ep_square) return "ep_square";
    if (a.ply_nb != b.ply_nb) return "ply_nb";
    if (a.pst_opening != b.pst_opening) return "pst_opening";
    if (a.pst_endgame != b.pst_endgame) return "pst_endgame";
    if (!(kept_keys(a) == kept_keys(b))) return "keys";
    return "";
}

// What the positions are like, to see that they are as various as they should be.
struct Census {
    std::set<std::uint64_t> keys;
    std::map<std::string, int> number;
};

void count_position(Census& census, const Board& board) {
    if (!census.keys.insert(board.key).second) {
        return;
    }
    const auto count = [&](const std::string& what, bool holds) {
        census.number[what] += holds ? 1 : 0;
    };
    const auto& kinds = board.kind_count;
    count("white to move", board.turn == kWhite);
    count("black to move", board.turn == kBlack);
    count("in check", board_is_check(board));
    count("not in check", !board_is_check(board));
    count("castling", board.castle_flags != 0);
    count("en passant", board.ep_square != kNoSquare);
    count("few men", board.total_count <= 6);
    count("many men", board.total_count >= 26);
    count("nine queens a side", kinds[kWhiteQueen12] == 9 && kinds[kBlackQueen12] == 9);
    bool promoted = false;
    for (std::size_t kind = kWhiteKnight12; kind <= kBlackQueen12; ++kind) {
        promoted = promoted || kinds[kind] > (kind < kWhiteQueen12 ? 2 : 1);
    }
    count("promoted men", promoted);
}

void expect_at_least(const Census& census, const std::map<std::string, int>& least) {
    for (const auto& [what, number] : least) {
        const auto found = census.number.find(what);
        ASSERT_NE(found, census.number.end()) << what;
        EXPECT_GE(found->second, number) << what;
    }
}

TEST_F(DifferentialState, GamesReachFiveThousandPositions) {
    Census census;
    test::visit_reached([&](const Board& board) { count_position(census, board); });
    EXPECT_GE(census.keys.size(), 5000u);
    expect_at_least(census, {{"white to move", 2000},
                             {"black to move", 2000},
                             {"in check", 300},
                             {"castling", 500},
                             {"en passant", 15},
                             {"few men", 100},
                             {"many men", 1000},
                             {"promoted men", 200}});
    Census of_engine;
    for (const test::Game& game : test::engine_games()) {
        test::visit_game(game, [&](const Board& board) { count_position(of_engine, board); });
    }
    EXPECT_GE(of_engine.keys.size(), 2000u);
}

TEST_F(DifferentialState, ThreeThousandSetUpsAreOfEveryKind) {
    Census census;
    test::visit_set_ups([&](const Board& board) { count_position(census, board); });
    EXPECT_GE(census.keys.size(), 3000u);
    expect_at_least(census, {{"white to move", 1500},
                             {"black to move", 1500},
                             {"in check", 1500},
                             {"not in check", 1500},
                             {"castling", 200},
                             {"en passant", 300},
                             {"few men", 400},
                             {"many men", 500},
                             {"nine queens a side", 300},
                             {"promoted men", 600}});
}

TEST_F(DifferentialState, AMoveTakenBackLeavesEveryByteAsItWas) {
    int moves = 0;
    test::Random random(5);
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        MoveList list;
        gen_moves(list, board);
        for (const Move move : test::moves_of(list)) {
            UndoInfo undo;
            move_do(board, move, undo);
            ASSERT_FALSE(bytes_agree(board, seen)) << text_of(move) << " in " << fen_of(seen);
            MoveList replies;
            replies.size = 0;
            if (board_is_legal(board)) {
                gen_moves(replies, board);
            }
            if (replies.size > 0) {
                const auto size = static_cast<std::size_t>(replies.size);
                const Move reply = replies.move[test::below(random, size)];
                UndoInfo reply_undo;
                move_do(board, reply, reply_undo);
                move_undo(board, reply, reply_undo);
            }
            move_undo(board, move, undo);
            ASSERT_EQ(difference(board, seen), "") << text_of(move) << " in " << fen_of(seen);
            ASSERT_TRUE(bytes_agree(board, seen)) << text_of(move) << " in " << fen_of(seen);
            ++moves;
        }
    });
    EXPECT_GT(moves, 200000);
}

TEST_F(DifferentialState, AWholeGameTakenBackLeavesEveryByteAsItWas) {
    for (const test::Game& game : test::engine_games()) {
        const Board start = board_of(game.fen);
        Board board = start;
        std::vector<UndoInfo> undos(game.moves.size());
        for (std::size_t ply = 0; ply < game.moves.size(); ++ply) {
            move_do(board, game.moves[ply], undos[ply]);
        }
        for (std::size_t ply = game.moves.size(); ply-- > 0;) {
            move_undo(board, game.moves[ply], undos[ply]);
        }
        ASSERT_EQ(difference(board, start), "") << game.fen;
        ASSERT_TRUE(bytes_agree(board, start)) << game.fen;
    }
}

TEST_F(DifferentialState, ANullMoveTakenBackLeavesEveryByteAsItWas) {
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        UndoInfo undo;
        move_do_null(board, undo);
        ASSERT_EQ(board.turn, color_opposite(seen.turn)) << fen_of(seen);
        ASSERT_EQ(board.ep_square, kNoSquare) << fen_of(seen);
        twin::Position passed = twin_of(seen);
        passed.white_to_move = !passed.white_to_move;
        passed.ep_file = -1;
        ASSERT_EQ(kept_keys(board), keys_of(passed)) << "null move in " << fen_of(seen);
        ASSERT_EQ(kept_keys(board), computed_keys(board)) << "null move in " << fen_of(seen);
        move_undo_null(board, undo);
        ASSERT_EQ(difference(board, seen), "") << "null move in " << fen_of(seen);
        ASSERT_TRUE(bytes_agree(board, seen)) << "null move in " << fen_of(seen);
    });
}

TEST_F(DifferentialState, KeysAreThoseOfThePositionFromScratch) {
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        const twin::Position position = twin_of(seen);
        ASSERT_EQ(kept_keys(board), keys_of(position)) << fen_of(seen);
        ASSERT_EQ(kept_keys(board), computed_keys(board)) << fen_of(seen);
        MoveList list;
        gen_legal_moves(list, board);
        for (const Move move : test::moves_of(list)) {
            UndoInfo undo;
            move_do(board, move, undo);
            const twin::Position after = twin::position_after(position, twin_move(move));
            ASSERT_EQ(kept_keys(board), keys_of(after)) << text_of(move) << " in " << fen_of(seen);
            ASSERT_EQ(kept_keys(board), computed_keys(board))
                << text_of(move) << " in " << fen_of(seen);
            move_undo(board, move, undo);
        }
    });
}

TEST_F(DifferentialState, AFenReadAgainIsTheSamePosition) {
    test::visit_all([&](const Board& seen) {
        const std::string fen = fen_of(seen);
        const Board board = board_of(fen);
        ASSERT_EQ(fen_of(board), fen);
        ASSERT_EQ(twin::position_to_fen(twin_of(fen)), fen);
        ASSERT_EQ(unlike(board, seen), "") << fen;
        ASSERT_TRUE(board_consistent(board)) << fen;
        ASSERT_TRUE(board_consistent(seen)) << fen;
    });
    // These texts were not written by the engine.
    for (const std::string& fen : test::set_ups()) {
        ASSERT_EQ(fen_of(board_of(fen)), fen);
    }
}

TEST_F(DifferentialState, RightsThatAFenCannotClaimAreDroppedAsTheSlowRulesDropThem) {
    int place = 0;
    test::visit_all([&](const Board& seen) {
        const std::string file(1, "abcdefgh"[place++ % 8]);
        const std::string fen = fen_of(seen);
        const std::string placement = fen.substr(0, fen.find(' '));
        const std::string claim =
            seen.turn == kWhite ? " w KQkq " + file + "6 0 1" : " b KQkq " + file + "3 0 1";
        ASSERT_EQ(fen_of(board_of(placement + claim)),
                  twin::position_to_fen(twin_of(placement + claim)))
            << placement << claim;
    });
}

}  // namespace
}  // namespace zar
