// The pickers serve the moves that they are meant to serve, each once, whatever codes the table and
// the killers hold.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "board/attack.h"
#include "board/make.h"
#include "board/movegen.h"
#include "differential/positions.h"
#include "differential/swap_off.h"
#include "gtest/gtest.h"
#include "search/order.h"
#include "search/types.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::below;
using test::difference;
using test::fen_of;
using test::Random;
using test::text_of;
using DifferentialPickers = test::SearchTest;
using Moves = std::vector<Move>;
using Killers = std::array<Move, 2>;

constexpr int kPly = 3;

Moves sorted(Moves moves) {
    std::sort(moves.begin(), moves.end());
    return moves;
}

Moves legal_moves(Board& board) {
    MoveList list;
    gen_legal_moves(list, board);
    return test::moves_of(list);
}

std::string text_of_all(const Moves& moves) {
    std::string text;
    for (const Move move : moves) {
        text += (text.empty() ? "" : " ") + text_of(move);
    }
    return text;
}

// A legal position has fewer moves than this; a picker that goes round in circles has more.
constexpr std::size_t kMostServed = 1000;

template <typename Next>
Moves serve(Next next) {
    Moves served;
    for (Move move = next(); move != kMoveNone && served.size() < kMostServed; move = next()) {
        served.push_back(move);
    }
    return sorted(served);
}

Moves serve_main(Board& board, Move hash_move, const Killers& killers) {
    Attack attack;
    attack_set(attack, board);
    search_thread(0).killers[kPly] = killers;
    Picker picker;
    picker_init(picker, board, attack, kPly, hash_move, 0);
    return serve([&picker] { return next_move(picker, 0); });
}

Moves serve_quiescence(Board& board, bool include_checks) {
    Attack attack;
    attack_set(attack, board);
    Picker picker;
    qpicker_init(picker, board, attack, include_checks, 0);
    const auto skip_none = [](Move) { return false; };
    return serve([&] { return next_qmove(picker, skip_none, 0); });
}

// Where codes for hash move and killers are drawn from.
struct Pools {
    Moves legal;
    Moves illegal;   // pseudo-legal ones that leave the king in check
    Moves opposite;  // of the other side, if it were its turn
    Moves before;    // legal in the position seen before this one
};

Moves illegal_moves(Board& board) {
    MoveList list;
    gen_moves(list, board);
    Moves illegal;
    for (const Move move : test::moves_of(list)) {
        UndoInfo undo;
        move_do(board, move, undo);
        if (!board_is_legal(board)) {
            illegal.push_back(move);
        }
        move_undo(board, move, undo);
    }
    return illegal;
}

Moves moves_of_other_side(Board& board) {
    UndoInfo undo;
    move_do_null(board, undo);
    MoveList list;
    gen_moves(list, board);
    move_undo_null(board, undo);
    return test::moves_of(list);
}

Move draw(const Moves& pool, Random& random) {
    return pool.empty() ? kMoveNone : pool[below(random, pool.size())];
}

Move draw_any(const Pools& pools, Random& random) {
    switch (below(random, 8)) {
        case 0:
            return kMoveNone;
        case 1:
            return kMoveNull;
        case 2:
            return static_cast<Move>(below(random, 65536));
        case 3:
            return draw(pools.illegal, random);
        case 4:
            return draw(pools.opposite, random);
        case 5:
            return draw(pools.before, random);
        default:
            return draw(pools.legal, random);
    }
}

void fill_history(Random& random) {
    for (std::uint16_t& credit : search_thread(0).history) {
        credit = static_cast<std::uint16_t>(below(random, 16384));
    }
}

TEST_F(DifferentialPickers, TheMainSearchIsServedEveryLegalMoveOnce) {
    Random random(31);
    Moves before;
    int in_check = 0;
    int illegal_codes = 0;
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        fill_history(random);
        const Pools pools{sorted(legal_moves(board)), illegal_moves(board),
                          moves_of_other_side(board), before};
        before = pools.legal;
        in_check += board_is_check(board) ? 1 : 0;
        for (int round = 0; round < 6; ++round) {
            const Move hash_move = draw_any(pools, random);
            Killers killers = {draw_any(pools, random), draw_any(pools, random)};
            if (killers[0] == killers[1]) {
                killers[1] = kMoveNone;  // the tables never hold the same one twice
            }
            illegal_codes +=
                std::binary_search(pools.legal.begin(), pools.legal.end(), hash_move) ? 0 : 1;
            const Moves served = serve_main(board, hash_move, killers);
            ASSERT_EQ(served, pools.legal)
                << text_of_all(served) << " instead of " << text_of_all(pools.legal) << " in "
                << fen_of(seen) << ", hash move " << text_of(hash_move) << ", killers "
                << text_of(killers[0]) << " " << text_of(killers[1]);
            ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
        }
    });
    EXPECT_GT(in_check, 1500);
    EXPECT_GT(illegal_codes, 10000);
}

TEST_F(DifferentialPickers, EveryLegalMoveMayBeHashMoveAndKillerInTurn) {
    int place = 0;
    test::visit_all([&](const Board& seen) {
        if (++place % 10 != 0) {
            return;
        }
        Board board = seen;
        Moves codes = illegal_moves(board);
        const Moves legal = sorted(legal_moves(board));
        codes.insert(codes.end(), legal.begin(), legal.end());
        for (std::size_t i = 0; i < codes.size(); ++i) {
            const Move next = codes[(i + 1) % codes.size()];
            const Move second = codes.size() < 2 ? kMoveNone : next;
            for (const Move hash_move : {codes[i], next, kMoveNone}) {
                ASSERT_EQ(serve_main(board, hash_move, {codes[i], second}), legal)
                    << fen_of(seen) << ", hash move " << text_of(hash_move) << ", killers "
                    << text_of(codes[i]) << " " << text_of(second);
            }
        }
    });
    EXPECT_GT(place, 7000);
}

// Captures and promotions to a queen that win or keep the balance.
bool is_wanted_capture(Move move, const Board& board) {
    if (move_is_promotion(move)) {
        return text_of(move).back() == 'q';
    }
    if (move_is_en_passant(move)) {
        return true;
    }
    const Piece victim = board_piece(board, move_to(move));
    const Piece attacker = board_piece(board, move_from(move));
    return victim != kEmpty &&
           (piece_value_of(victim) >= piece_value_of(attacker) || test::swap_off(move, board) >= 0);
}

// Quiet checks that lose nothing; of the king's moves only castling.
bool is_wanted_check(Move move, Board& board) {
    const bool quiet = !move_is_promotion(move) && !move_is_en_passant(move) &&
                       board_piece(board, move_to(move)) == kEmpty;
    const bool steps_with_king =
        piece_is_king(board_piece(board, move_from(move))) && move_kind(move) != kKindCastling;
    if (!quiet || steps_with_king) {
        return false;
    }
    UndoInfo undo;
    move_do(board, move, undo);
    const bool checks = board_is_check(board);
    move_undo(board, move, undo);
    return checks && test::swap_off(move, board) >= 0;
}

TEST_F(DifferentialPickers, QuiescenceIsServedEvasionsOrWhatLosesNothing) {
    std::size_t captures_served = 0;
    std::size_t checks_served = 0;
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        const Moves legal = sorted(legal_moves(board));
        Moves captures = legal;
        Moves with_checks = legal;
        if (!board_is_check(board)) {
            captures.clear();
            with_checks.clear();
            for (const Move move : legal) {
                if (is_wanted_capture(move, board)) {
                    captures.push_back(move);
                    with_checks.push_back(move);
                } else if (is_wanted_check(move, board)) {
                    with_checks.push_back(move);
                }
            }
            captures_served += captures.size();
            checks_served += with_checks.size() - captures.size();
        }
        const Moves served = serve_quiescence(board, false);
        ASSERT_EQ(served, captures) << text_of_all(served) << " instead of "
                                    << text_of_all(captures) << " in " << fen_of(seen);
        const Moves served_with_checks = serve_quiescence(board, true);
        ASSERT_EQ(served_with_checks, with_checks)
            << text_of_all(served_with_checks) << " instead of " << text_of_all(with_checks)
            << " in " << fen_of(seen);
        ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
    });
    EXPECT_GT(captures_served, 5000u);
    EXPECT_GT(checks_served, 3000u);
}

}  // namespace
}  // namespace zar
