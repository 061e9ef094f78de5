// Questions about a move that root and inner nodes ask alike when they decide how deep to search
// it. All are asked before the move is made.
#pragma once

#include "board/board.h"
#include "board/move.h"

namespace zar {

// Exchanges that lose no more than this are worth looking deeper into.
constexpr Score kExtensionExchange = -100;

// Of a pawn move: is the pawn passed on its new square, with no pawn ahead of it on its file and no
// enemy pawn ahead of it on the files beside?
[[nodiscard]] bool pawn_move_makes_passed_pawn(Move move, const Board& board);

// The same of any move; false for other men.
[[nodiscard]] inline bool move_makes_passed_pawn(Move move, const Board& board) {
    return piece_is_pawn(board_piece(board, move_from(move))) &&
           pawn_move_makes_passed_pawn(move, board);
}

// Does the move take a piece (no pawn) where the sides have 1 and 2, or 2 and 3 pieces, kings
// included, in either order?
[[nodiscard]] bool move_captures_into_ending(Move move, const Board& board);

}  // namespace zar
