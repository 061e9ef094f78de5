#include "board/attack.h"

#include <cassert>
#include <cstddef>

#include "board/cells.h"
#include "board/make.h"
#include "board/movegen.h"

namespace zar {

namespace {

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
    if (has_beside(board, square - pawn_step_of(color), pawn_bit(color))) {
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

bool is_pinned(const Board& board, Square square, Color color) {
    const Square king = board_king(board, color);
    const Square step = delta_ray_of(square, king);
    if (step == 0 || first_occupied(board, square, step) != king) {
        return false;
    }
    const Piece pinner = board_piece(board, first_occupied(board, square, -step));
    return (pinner & color_bit(color_opposite(color))) != 0 && (pinner & ray_mask_of(step)) != 0;
}

void attack_find(Attack& attack, const Board& board) {
    const Color enemy = color_opposite(board.turn);
    const Square king = board_king(board, board.turn);
    attack.count = 0;
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

bool special_move_is_check(Move move, Board& board) {
    return king_is_attacked_after(board, move, color_opposite(board.turn));
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
