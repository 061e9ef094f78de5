// Every one of the 65,536 move codes, judged as the generators list it.

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <string>

#include "board/movegen.h"
#include "differential/positions.h"
#include "gtest/gtest.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::difference;
using test::fen_of;
using test::text_of;
using DifferentialCodes = test::SearchTest;

constexpr int kCodes = 65536;
using CodeSet = std::bitset<kCodes>;

CodeSet codes_of(const MoveList& list) {
    CodeSet codes;
    for (const Move move : test::moves_of(list)) {
        codes.set(move);
    }
    return codes;
}

void expect_every_code_as_listed(const Board& seen) {
    Board board = seen;
    MoveList list;
    gen_moves(list, board);
    const CodeSet all = codes_of(list);
    gen_quiets(list, board);
    const CodeSet quiets = codes_of(list);
    for (int code = 0; code < kCodes; ++code) {
        const auto move = static_cast<Move>(code);
        ASSERT_EQ(move_is_pseudo(move, board), all[move])
            << text_of(move) << " (" << code << ") in " << fen_of(seen);
        ASSERT_EQ(quiet_is_pseudo(move, board), quiets[move])
            << text_of(move) << " (" << code << ") in " << fen_of(seen);
    }
    ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
}

// Calls `visit` for every `step`-th position.
template <typename Visit>
auto every(int step, Visit visit) {
    return [step, visit, place = 0](const Board& board) mutable {
        if (place++ % step == 0) {
            visit(board);
        }
    };
}

TEST_F(DifferentialCodes, InPositionsThatGamesReach) {
    int positions = 0;
    test::visit_reached(every(65, [&](const Board& board) {
        ++positions;
        expect_every_code_as_listed(board);
    }));
    EXPECT_GE(positions, 90);
}

// Steps of 37 take every kind of set-up in turn.
TEST_F(DifferentialCodes, InSetUps) {
    int positions = 0;
    int castling = 0;
    int en_passant = 0;
    int promoting = 0;
    test::visit_set_ups(every(37, [&](const Board& seen) {
        ++positions;
        Board board = seen;
        MoveList list;
        gen_moves(list, board);
        const auto has = [&](int kind) {
            const auto moves = test::moves_of(list);
            return std::any_of(moves.begin(), moves.end(),
                               [kind](Move move) { return move_kind(move) == kind; });
        };
        castling += has(kKindCastling) ? 1 : 0;
        en_passant += has(kKindEnPassant) ? 1 : 0;
        promoting += has(kKindPromotion) ? 1 : 0;
        expect_every_code_as_listed(seen);
    }));
    EXPECT_GE(positions, 60);
    EXPECT_GE(castling, 3);
    EXPECT_GE(en_passant, 8);
    EXPECT_GE(promoting, 8);
}

}  // namespace
}  // namespace zar
