#include "board/key.h"

namespace zar {

namespace {

std::uint64_t men_key(const Board& board, SquareRange men) {
    std::uint64_t key = 0;
    for (const Square square : men) {
        key ^= piece_key_of(piece12_of(board_piece(board, square)), square64_of(square));
    }
    return key;
}

}  // namespace

std::uint64_t castle_key_of(int flags) noexcept {
    std::uint64_t key = 0;
    for (std::size_t bit = 0; bit < 4; ++bit) {
        if ((flags >> bit & 1) != 0) {
            key ^= random64[768 + bit];
        }
    }
    return key;
}

std::uint64_t key_compute(const Board& board) {
    std::uint64_t key = pawn_key_compute(board);
    key ^= men_key(board, board_pieces(board, kWhite));
    key ^= men_key(board, board_pieces(board, kBlack));
    key ^= castle_key_of(board.castle_flags);
    if (board.ep_square != kNoSquare) {
        key ^= ep_key_of(board.ep_square);
    }
    return key ^ turn_key_of(board.turn);
}

std::uint64_t pawn_key_compute(const Board& board) {
    return men_key(board, board_pawns(board, kWhite)) ^ men_key(board, board_pawns(board, kBlack));
}

std::uint64_t material_key_compute(const Board& board) {
    std::uint64_t key = 0;
    for (int kind = 0; kind < kPieceKindCount; ++kind) {
        for (int count = 0; count < board.kind_count[static_cast<std::size_t>(kind)]; ++count) {
            key ^= material_key_of(kind, count);
        }
    }
    return key;
}

}  // namespace zar
