#include "board/move.h"

namespace zar {

bool move_to_string(Move move, char* buffer, int size) {
    if (size < kMoveTextSize) {
        return false;
    }
    if (move == kMoveNull) {
        constexpr std::string_view null_text = "null";
        buffer[null_text.copy(buffer, null_text.size())] = '\0';
        return true;
    }
    square_to_string(move_from(move), buffer, 3);
    square_to_string(move_to(move), buffer + 2, 3);
    if (move_is_promotion(move)) {
        constexpr std::string_view letters = "nbrq";
        buffer[4] = letters[move >> 12 & 3];
        buffer[5] = '\0';
    }
    return true;
}

Move move_from_string(std::string_view text, const Board& board) {
    const Square from = square_from_string(text.substr(0, 2));
    const Square to = square_from_string(text.size() < 4 ? "" : text.substr(2, 2));
    if (from == kNoSquare || to == kNoSquare) {
        return kMoveNone;
    }
    int kind = kKindNormal;
    switch (text.size() > 4 ? text[4] : '\0') {
        case '\0':
            break;
        case 'n':
            kind = kPromoteKnight;
            break;
        case 'b':
            kind = kPromoteBishop;
            break;
        case 'r':
            kind = kPromoteRook;
            break;
        case 'q':
            kind = kPromoteQueen;
            break;
        default:
            return kMoveNone;
    }
    const Piece piece = board_piece(board, from);
    if (piece_is_pawn(piece) && to == board.ep_square) {
        kind |= kKindEnPassant;
    } else if (piece_is_king(piece) && (to - from == 2 || to - from == -2)) {
        kind |= kKindCastling;
    }
    return move_make(from, to, kind);
}

}  // namespace zar
