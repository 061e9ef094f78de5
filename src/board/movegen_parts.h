// What the files of the move generator share among themselves: pawn ranks, the promotion rule and
// castling. Nobody else needs this.
#pragma once

#include "board/captures.h"
#include "board/movegen.h"

namespace zar {

[[nodiscard]] inline bool is_second_rank(Square square, Color color) noexcept {
    return square_relative_row(square, color) == kFirstLine + 1;
}

inline void list_add_pawn_move(MoveList& list, Square from, Square to) noexcept {
    for_each_pawn_move(from, to, [&](Move move) { list_add(list, move); });
}

// Appends castling, king side first: right held, squares between empty, crossed square not
// attacked. Whether the king stands in check or arrives on an attacked square is not looked at.
void gen_castling(MoveList& list, const Board& board);

}  // namespace zar
