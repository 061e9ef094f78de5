// Static exchange evaluation against lifting men off a board, for every move of either side.

#include "board/exchange.h"

#include "board/make.h"
#include "board/movegen.h"
#include "differential/positions.h"
#include "differential/swap_off.h"
#include "gtest/gtest.h"

namespace zar {
namespace {

using test::fen_of;
using test::text_of;
using DifferentialExchange = test::SearchTest;

TEST_F(DifferentialExchange, EveryMoveOfEitherSideIsWorthWhatSwappingOffGives) {
    int losing = 0;
    int en_passant = 0;
    int promotions = 0;
    const auto check_side = [&](Board& to_move, const Board& seen) {
        MoveList list;
        gen_moves(list, to_move);
        for (const Move move : test::moves_of(list)) {
            const Score value = see(move, seen);
            ASSERT_EQ(value, test::swap_off(move, seen)) << text_of(move) << " in " << fen_of(seen);
            losing += value < 0 ? 1 : 0;
            en_passant += move_is_en_passant(move) ? 1 : 0;
            promotions += move_is_promotion(move) ? 1 : 0;
        }
    };
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        check_side(board, seen);
        UndoInfo undo;
        move_do_null(board, undo);
        check_side(board, seen);
    });
    EXPECT_GT(losing, 10000);
    EXPECT_GT(en_passant, 300);
    EXPECT_GT(promotions, 1000);
}

}  // namespace
}  // namespace zar
