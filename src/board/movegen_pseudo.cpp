// Is a code that comes from elsewhere (table, killers) a move of this position?

#include "board/movegen.h"
#include "board/movegen_parts.h"

namespace zar {

namespace {

bool is_in_full_list(Move move, Board& board) {
    MoveList list;
    gen_moves(list, board);
    return list_contains(list, move);
}

bool castling_is_pseudo(Move move, const Board& board) {
    bool found = false;
    for_each_castling(board, [&](Move castling) { found = found || castling == move; });
    return found;
}

bool pawn_move_is_pseudo(const Board& board, Square from, Square to) {
    const Square forward = pawn_step_of(board.turn);
    if (square_is_promotion_rank(to)) {
        return false;  // only the promotion kind goes there
    }
    if (board_piece(board, to) != kEmpty) {
        return to - from == forward - 1 || to - from == forward + 1;
    }
    return to - from == forward || (to - from == 2 * forward && is_second_rank(from, board.turn) &&
                                    board_piece(board, from + forward) == kEmpty);
}

bool normal_move_is_pseudo(Move move, const Board& board) {
    const Square from = move_from(move);
    const Square to = move_to(move);
    const Piece piece = board_piece(board, from);
    const int own_bit = color_bit(board.turn);
    if ((move & kPromotionBits) != 0 || (piece & own_bit) == 0 ||
        (board_piece(board, to) & own_bit) != 0) {
        return false;
    }
    if (piece_is_pawn(piece)) {
        return pawn_move_is_pseudo(board, from, to);
    }
    return (piece & delta_mask_of(from, to)) != 0 && line_is_empty(board, from, to);
}

}  // namespace

bool move_is_pseudo(Move move, Board& board) {
    switch (move_kind(move)) {
        case kKindNormal:
            return normal_move_is_pseudo(move, board);
        case kKindCastling:
            return castling_is_pseudo(move, board);
        default:
            return is_in_full_list(move, board);
    }
}

bool quiet_is_pseudo(Move move, const Board& board) {
    switch (move_kind(move)) {
        case kKindNormal:
            return board_piece(board, move_to(move)) == kEmpty &&
                   normal_move_is_pseudo(move, board);
        case kKindCastling:
            return castling_is_pseudo(move, board);
        default:
            return false;
    }
}

}  // namespace zar
