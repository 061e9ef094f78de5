// What the files of the move generator share among themselves: appending the moves of others to a
// list. Nobody else needs this.
#pragma once

#include "board/captures.h"
#include "board/movegen.h"
#include "board/quiets.h"

namespace zar {

inline void list_add_pawn_move(MoveList& list, Square from, Square to) noexcept {
    for_each_pawn_move(from, to, [&](Move move) { list_add(list, move); });
}

inline void list_add_castling(MoveList& list, const Board& board) {
    for_each_castling(board, [&](Move move) { list_add(list, move); });
}

}  // namespace zar
