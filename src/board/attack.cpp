#include "board/attack.h"

#include <cassert>
#include <cstddef>

#include "board/make.h"
#include "board/movegen.h"

namespace zar {

namespace {

// The first occupied cell from `from` (exclusive) along a unit step; the edge counts as occupied.
Square first_occupied(const Board& board, Square from, int step) {
    Square square = from + step;
    while (board_piece(board, square) == kEmpty) {
        square += step;
    }
    return square;
}

void attack_add(Attack& attack, Square square, int inc) {
    const auto index = static_cast<std::size_t>(attack.count++);
    attack.square[index] = square;
    attack.inc[index] = inc;
}

// Plays the move and looks whether the king of `king_color` is attacked then. Kept out of the
// callers, so that they need no room for it.
[[gnu::noinline]] bool king_is_attacked_after(Board& board, Move move, Color king_color) {
    UndoInfo undo;
    move_do(board, move, undo);
    const bool attacked =
        is_attacked(board, board_king(board, king_color), color_opposite(king_color));
    move_undo(board, move, undo);
    return attacked;
}

// The king was safe before the last move, so only the man that moved or a slider behind the square
// that it left can attack it now. Special moves and set-ups are not judged.
bool last_move_may_check(const Board& board, Square king) {
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
    const int step = delta_ray_of(king, from);
    if (step == 0) {
        return false;
    }
    const Piece piece = board_piece(board, first_occupied(board, king, step));
    return (piece & color_bit(color_opposite(board.turn))) != 0 && (piece & ray_mask_of(step)) != 0;
}

bool has_legal_move(Board& board) {
    MoveList list;
    gen_moves(list, board);
    for (int i = 0; i < list.size; ++i) {
        if (move_is_legal(list.move[static_cast<std::size_t>(i)], board)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool is_attacked(const Board& board, Square square, Color color) {
    const Square behind = square - pawn_step_of(color);
    const Piece pawn = pawn_of(color);
    if (board_piece(board, behind + 1) == pawn || board_piece(board, behind - 1) == pawn) {
        return true;
    }
    for (const Square from : board_pieces(board, color)) {
        if ((board_piece(board, from) & delta_mask_of(from, square)) != 0 &&
            line_is_empty(board, from, square)) {
            return true;
        }
    }
    return false;
}

bool line_is_empty(const Board& board, Square from, Square to) {
    const int step = delta_inc_of(from, to);
    for (Square square = from + step; square != to; square += step) {
        if (board_piece(board, square) != kEmpty) {
            return false;
        }
    }
    return true;
}

bool is_pinned(const Board& board, Square square, Color color) {
    const Square king = board_king(board, color);
    const int step = delta_ray_of(square, king);
    if (step == 0 || first_occupied(board, square, step) != king) {
        return false;
    }
    const Piece pinner = board_piece(board, first_occupied(board, square, -step));
    return (pinner & color_bit(color_opposite(color))) != 0 && (pinner & ray_mask_of(step)) != 0;
}

void attack_set(Attack& attack, const Board& board) {
    const Color enemy = color_opposite(board.turn);
    const Square king = board_king(board, board.turn);
    attack.count = 0;
    if (!last_move_may_check(board, king)) {
        return;
    }
    const Square behind = king - pawn_step_of(enemy);
    for (const Square square : {behind + 1, behind - 1}) {
        if (board_piece(board, square) == pawn_of(enemy)) {
            attack_add(attack, square, 0);
        }
    }
    for (const Square square : board_pieces(board, enemy)) {
        const Piece piece = board_piece(board, square);
        if ((piece & delta_mask_of(square, king)) == 0) {
            continue;
        }
        if (!piece_is_slider(piece)) {
            attack_add(attack, square, 0);
        } else if (line_is_empty(board, square, king)) {
            attack_add(attack, square, -delta_ray_of(square, king));
        }
    }
    attack.square[static_cast<std::size_t>(attack.count)] = kNoSquare;
    attack.inc[static_cast<std::size_t>(attack.count)] = 0;
}

bool move_is_check(Move move, Board& board) {
    const Color enemy = color_opposite(board.turn);
    if (move_kind(move) != kKindNormal) {
        return king_is_attacked_after(board, move, enemy);
    }
    const Square from = move_from(move);
    const Square to = move_to(move);
    const Square king = board_king(board, enemy);
    if ((board_piece(board, from) & delta_mask_of(to, king)) != 0 &&
        line_is_empty(board, to, king)) {
        return true;
    }
    const int step = delta_ray_of(from, king);
    return step != 0 && delta_ray_of(to, king) != step && is_pinned(board, from, enemy);
}

bool en_passant_is_legal(Move move, Board& board) {
    return !king_is_attacked_after(board, move, board.turn);
}

bool move_is_legal(Move move, Board& board) {
    if (move_is_en_passant(move)) {
        return en_passant_is_legal(move, board);
    }
    const Square from = move_from(move);
    const Square to = move_to(move);
    if (piece_is_king(board_piece(board, from))) {
        return !is_attacked(board, to, color_opposite(board.turn));
    }
    const Square king = board_king(board, board.turn);
    const int step = delta_ray_of(from, king);
    return step == 0 || delta_ray_of(to, king) == step || !is_pinned(board, from, board.turn);
}

bool board_is_legal(const Board& board) {
    return !is_attacked(board, board_king(board, color_opposite(board.turn)), board.turn);
}

bool board_is_check(const Board& board) {
    return is_attacked(board, board_king(board, board.turn), color_opposite(board.turn));
}

bool board_is_mate(Board& board) {
    Attack attack;
    attack_set(attack, board);
    return attack.count > 0 && !has_evasion(board, attack);
}

bool board_is_stalemate(Board& board) { return !board_is_check(board) && !has_legal_move(board); }

bool position_is_repeated(Board& board) {
    constexpr int kFiftyMoves = 100;
    if (board.ply_nb > kFiftyMoves) {
        return true;
    }
    if (board.ply_nb == kFiftyMoves && !board_is_mate(board)) {
        return true;
    }
    assert(board.ply_nb <= board.sp);
    for (int back = 4; back <= board.ply_nb; back += 2) {
        if (board.key_history[static_cast<std::size_t>(board.sp - back)] == board.key) {
            return true;
        }
    }
    return false;
}

}  // namespace zar
