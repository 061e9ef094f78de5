// Endings that a material advantage does not win: tests that lower the scale of a side where the
// enemy king, or a minor piece, stops its last pawns.
#pragma once

#include <array>

#include "board/board.h"
#include "eval/material.h"
#include "eval/pawns.h"

namespace zar {

// An ending with one pawn, turned so that the pawn moves up the board on one of the files a to d.
// Each side has at most one piece beside its king; kNoSquare where it has none.
struct StandardEnding {
    Square pawn;
    Square pawn_king;  // of the side with the pawn
    Square pawn_piece;
    Square other_king;
    Square other_piece;
    bool pawn_side_to_move;
};

// `pawn_side` has exactly one pawn and the other side none.
[[nodiscard]] StandardEnding standard_ending(const Board& board, Color pawn_side);

// By colour, 0..16.
using Scales = std::array<int, 2>;

// The material's scales, lowered where a test finds the position drawn or nearly so.
[[nodiscard]] Scales ending_scales(const Board& board, const MaterialRecord& material,
                                   const PawnRecord& pawns);

}  // namespace zar
