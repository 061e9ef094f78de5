// What the files of the move generator share among themselves: appending to a list what captures.h
// and quiets.h hand out one by one. Nobody else needs this.
#pragma once

#include "board/captures.h"
#include "board/movegen.h"
#include "board/quiets.h"

namespace zar {

// One plain code, or the four of a promotion.
inline void list_add_pawn_move(MoveList& list, Square from, Square to) noexcept {
    for_each_pawn_move(from, to, [&](Move move) { list_add(list, move); });
}

}  // namespace zar
