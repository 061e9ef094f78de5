// Who attacks what: attacked squares, pins, checkers, whether a move gives check or is legal, and
// the tests for check, mate, stalemate and draws by rule. Everything is answered from the mailbox
// with the tables over the difference of two squares.
#pragma once

#include <array>

#include "board/board.h"
#include "board/move.h"

namespace zar {

// The men that give check to the side to move.
struct Attack {
    int count;
    // Squares of the checkers, ended by 0: pawns first, then pieces in list order.
    std::array<Square, kMaxMen + 1> square;
    // For each the unit step from the king toward a checking slider, 0 for other men.
    std::array<int, kMaxMen + 1> inc;
};

// Does some man of this colour attack the square?
[[nodiscard]] bool is_attacked(const Board& board, Square square, Color color);

// Is every square strictly between two squares of one line empty? True for a knight's step.
[[nodiscard]] bool line_is_empty(const Board& board, Square from, Square to);

// Does this square lie between this colour's king and an enemy slider that would attack the king
// along their line? The man on it is not looked at, so with the other colour the question is
// whether moving it would uncover a check.
[[nodiscard]] bool is_pinned(const Board& board, Square square, Color color);

// Finds the checkers of the side to move, at once where the last move gave no check.
void attack_set(Attack& attack, const Board& board);

// Does this pseudo-legal move give check? Restores the board where it has to play the move.
[[nodiscard]] bool move_is_check(Move move, Board& board);

// Does this pseudo-legal move leave the mover's king safe? Meant for moves of gen_moves when not in
// check and of gen_evasions_pseudo when in check.
[[nodiscard]] bool move_is_legal(Move move, Board& board);

// Plays an en-passant capture, looks whether the mover's king is safe, and takes it back.
[[nodiscard]] bool en_passant_is_legal(Move move, Board& board);

// Is the side not to move out of check?
[[nodiscard]] bool board_is_legal(const Board& board);
// Is the side to move in check?
[[nodiscard]] bool board_is_check(const Board& board);
[[nodiscard]] bool board_is_mate(Board& board);
[[nodiscard]] bool board_is_stalemate(Board& board);

// board_is_repetition once enough half-moves without capture or pawn move have been played.
[[nodiscard]] bool position_is_repeated(Board& board);

// Draw by the fifty-move rule (a mate on the hundredth half-move stands) or because the position
// has occurred before; one earlier occurrence is enough.
[[nodiscard]] inline bool board_is_repetition(Board& board) {
    constexpr int kShortestCycle = 4;
    return board.ply_nb >= kShortestCycle && position_is_repeated(board);
}

}  // namespace zar
