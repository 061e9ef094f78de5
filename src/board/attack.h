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
[[nodiscard]] inline bool line_is_empty(const Board& board, Square from, Square to) noexcept {
    const Square step = delta_inc_of(from, to);
    for (Square square = from + step; square != to; square += step) {
        if (board_piece(board, square) != kEmpty) {
            return false;
        }
    }
    return true;
}

// The first occupied cell from `from` (exclusive) along a unit step; the edge counts as occupied.
[[nodiscard]] inline Square first_occupied(const Board& board, Square from, Square step) noexcept {
    Square square = from + step;
    while (board_piece(board, square) == kEmpty) {
        square += step;
    }
    return square;
}

// Does this square lie between this colour's king and an enemy slider that would attack the king
// along their line? The man on it is not looked at, so with the other colour the question is
// whether moving it would uncover a check.
[[nodiscard]] bool is_pinned(const Board& board, Square square, Color color);

// The king was safe before the last move, so only the man that moved or a slider behind the square
// that it left can attack it now. Special moves and set-ups are not judged.
[[nodiscard]] inline bool last_move_may_check(const Board& board, Square king) {
    const Move last = board.last_move;
    if (last == kMoveNone || move_kind(last) != kKindNormal) {
        return true;
    }
    if (last == kMoveNull) {
        return false;
    }
    const Square from = move_from(last);
    const Square to = move_to(last);
    if ((board_piece(board, to) & delta_mask_of(to, king)) != 0 && line_is_empty(board, to, king)) {
        return true;
    }
    const Square step = delta_ray_of(king, from);
    if (step == 0) {
        return false;
    }
    const Piece piece = board_piece(board, first_occupied(board, king, step));
    return (piece & color_bit(color_opposite(board.turn))) != 0 && (piece & ray_mask_of(step)) != 0;
}

// Finds the checkers of the side to move by a look at all enemy men.
void attack_find(Attack& attack, const Board& board);

// The same, at once where the last move gave no check.
inline void attack_set(Attack& attack, const Board& board) noexcept {
    if (last_move_may_check(board, board_king(board, board.turn))) {
        attack_find(attack, board);
    } else {
        attack.count = 0;
    }
}

// Plays a castling move, promotion or en-passant capture, looks whether it gives check, and takes
// it back.
[[nodiscard]] bool special_move_is_check(Move move, Board& board);

// Does this pseudo-legal move give check? Restores the board where it has to play the move.
[[nodiscard]] inline bool move_is_check(Move move, Board& board) {
    if (move_kind(move) != kKindNormal) {
        return special_move_is_check(move, board);
    }
    const Color enemy = color_opposite(board.turn);
    const Square from = move_from(move);
    const Square to = move_to(move);
    const Square king = board_king(board, enemy);
    if ((board_piece(board, from) & delta_mask_of(to, king)) != 0 &&
        line_is_empty(board, to, king)) {
        return true;
    }
    const Square step = delta_ray_of(from, king);
    return step != 0 && delta_ray_of(to, king) != step && is_pinned(board, from, enemy);
}

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
