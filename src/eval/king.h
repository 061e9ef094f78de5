// The king's shelter: the pawns in front of it, now and where it may castle to.
#pragma once

#include "board/board.h"

namespace zar {

// What the open files around this colour's king cost it in the opening score, 0 or more, before the
// group's scale. Only to be charged when the material record says so.
[[nodiscard]] int king_shelter_penalty(const Board& board, Color color);

}  // namespace zar
