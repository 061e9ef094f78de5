// Making and unmaking moves. No legality is tested here: callers play pseudo-legal moves only.
#pragma once

#include <array>
#include <cstdint>

#include "board/board.h"
#include "board/move.h"

namespace zar {

// What unmaking needs and cannot derive. Filled by move_do; the null move fills only the fields
// that it changes.
struct UndoInfo {
    Color turn;
    Square ep_square;
    Square cap_sq;
    std::uint64_t key;
    std::uint64_t pawn_key;
    std::uint64_t material_key;
    std::array<SquareSet, 2> men;
    std::array<SquareSet, 2> pawns;
    int castle_flags;
    int ply_nb;
    int pst_opening;
    int pst_endgame;
    Piece moved_piece;
    Move last_move;
    Square cap_square;  // where the man stood that was taken
    Piece cap_piece;
    int cap_index;   // its place in its list when it was taken
    int pawn_index;  // for a promotion, the pawn's place in its list
    bool captured;
};

// Plays a pseudo-legal move. The key history must have a free entry.
void move_do(Board& board, Move move, UndoInfo& undo);

// Takes back the last move; the board is then bit for bit what it was before the matching move_do,
// the order of its lists included.
void move_undo(Board& board, Move move, const UndoInfo& undo);

// Passes the turn. Resets the half-move clock, so that no repetition is found across it.
void move_do_null(Board& board, UndoInfo& undo);
void move_undo_null(Board& board, const UndoInfo& undo);

}  // namespace zar
