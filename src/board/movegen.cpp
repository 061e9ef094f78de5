#include "board/movegen.h"

#include <algorithm>
#include <cstddef>

#include "board/movegen_parts.h"

namespace zar {

namespace {

// To empty squares and, at the end, the first man of the other colour.
void gen_ray(MoveList& list, const Board& board, Square from, Square step) {
    Square to = from + step;
    for (; board_piece(board, to) == kEmpty; to += step) {
        list_add(list, move_make(from, to));
    }
    if ((board_piece(board, to) & color_bit(color_opposite(board.turn))) != 0) {
        list_add(list, move_make(from, to));
    }
}

void gen_piece(MoveList& list, const Board& board, Square from) {
    const Piece piece = board_piece(board, from);
    const int takes = color_bit(color_opposite(board.turn));
    for (const int step : piece_steps(piece)) {
        if (piece_is_slider(piece)) {
            gen_ray(list, board, from, step);
        } else if (const Piece target = board_piece(board, from + step);
                   target == kEmpty || (target & takes) != 0) {
            list_add(list, move_make(from, from + step));
        }
    }
}

template <Color kUs>
void gen_pawn(MoveList& list, const Board& board, Square from) {
    for_each_pawn_capture<kUs>(board, from, [&](Move move) { list_add(list, move); });
    constexpr Square kForward = pawn_step_of(kUs);
    if (board_piece(board, from + kForward) != kEmpty) {
        return;
    }
    list_add_pawn_move(list, from, from + kForward);
    if (is_second_rank(from, kUs) && board_piece(board, from + 2 * kForward) == kEmpty) {
        list_add(list, move_make(from, from + 2 * kForward));
    }
}

}  // namespace

bool list_contains(const MoveList& list, Move move) {
    const auto end = list.move.begin() + list.size;
    return std::find(list.move.begin(), end, move) != end;
}

void list_sort(MoveList& list) {
    // Insertion: stable, and fast on the short lists that arrive.
    for (std::size_t i = 1; i < static_cast<std::size_t>(list.size); ++i) {
        const Move move = list.move[i];
        const std::int16_t value = list.value[i];
        std::size_t place = i;
        while (place > 0 && list.value[place - 1] < value) {
            list.move[place] = list.move[place - 1];
            list.value[place] = list.value[place - 1];
            --place;
        }
        list.move[place] = move;
        list.value[place] = value;
    }
}

void gen_moves(MoveList& list, Board& board) {
    list.size = 0;
    for (const Square from : board_pieces(board, board.turn)) {
        gen_piece(list, board, from);
    }
    for (const Square from : board_pawns(board, board.turn)) {
        if (board.turn == kWhite) {
            gen_pawn<kWhite>(list, board, from);
        } else {
            gen_pawn<kBlack>(list, board, from);
        }
    }
    const auto add = [&](Move move) { list_add(list, move); };
    for_each_en_passant(board, add);
    for_each_castling(board, add);
}

void gen_captures(MoveList& list, const Board& board) {
    list.size = 0;
    for_each_capture(board, [&](Move move, PieceType) { list_add(list, move); });
}

void gen_quiets(MoveList& list, const Board& board) {
    list.size = 0;
    for_each_quiet(board, [&](Move move, PieceType) { list_add(list, move); });
}

void gen_legal_moves(MoveList& list, Board& board) {
    Attack attack;
    attack_set(attack, board);
    if (attack.count > 0) {
        gen_evasions(list, board, attack);
        return;
    }
    gen_moves(list, board);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(list.size); ++i) {
        const Move move = list.move[i];
        if (move_is_legal(move, board)) {
            list.move[kept++] = move;
        }
    }
    list.size = static_cast<int>(kept);
}

}  // namespace zar
