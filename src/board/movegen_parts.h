// What the files of the move generator share among themselves: pawn ranks, the promotion rule and
// castling. Nobody else needs this.
#pragma once

#include "board/movegen.h"

namespace zar {

[[nodiscard]] inline bool is_second_rank(Square square, Color color) noexcept {
    return square_relative_row(square, color) == kFirstLine + 1;
}

[[nodiscard]] inline bool is_seventh_rank(Square square, Color color) noexcept {
    return square_relative_row(square, color) == kLastLine - 1;
}

// One plain code, or four in the order queen, knight, rook, bishop when the pawn promotes.
inline void list_add_pawn_move(MoveList& list, Square from, Square to) noexcept {
    if (!square_is_promotion_rank(to)) {
        list_add(list, move_make(from, to));
        return;
    }
    for (const int kind : {kPromoteQueen, kPromoteKnight, kPromoteRook, kPromoteBishop}) {
        list_add(list, move_make(from, to, kind));
    }
}

// Appends castling, king side first: right held, squares between empty, crossed square not
// attacked. Whether the king stands in check or arrives on an attacked square is not looked at.
void gen_castling(MoveList& list, const Board& board);

}  // namespace zar
