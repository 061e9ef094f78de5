// The 16-bit move code, the predicates asked of it, and its coordinate text as UCI writes it.
//
//   bits 0-5    to-square, 0..63
//   bits 6-11   from-square, 0..63
//   bits 12-13  promotion piece: 0 knight, 1 bishop, 2 rook, 3 queen
//   bits 14-15  kind: normal, castling, promotion, en passant
//
// Castling is the king's move of two files; an en-passant capture has the capturing pawn's squares.
#pragma once

#include <array>
#include <string_view>

#include "board/board.h"
#include "board/types.h"

namespace zar {

constexpr Move kMoveNone = 0;
// From a1 to d2: a pair that no piece can ever play.
constexpr Move kMoveNull = 11;

enum MoveKind : std::uint16_t {
    kKindNormal = 0,
    kKindCastling = 0x4000,
    kKindPromotion = 0x8000,
    kKindEnPassant = 0xC000,
    kKindMask = 0xC000,
};

enum PromotionCode : std::uint16_t {
    kPromoteKnight = 0x8000,
    kPromoteBishop = 0x9000,
    kPromoteRook = 0xA000,
    kPromoteQueen = 0xB000,
};

constexpr int kPromotionBits = 0x3000;
constexpr int kMoveTextSize = 6;  // five characters and a zero

[[nodiscard]] constexpr Move move_make(Square from, Square to, int kind = kKindNormal) noexcept {
    return static_cast<Move>(kind | square64_of(from) << 6 | square64_of(to));
}

// A normal move.
[[nodiscard]] constexpr Move move_of_64(Square64 from, Square64 to) noexcept {
    return static_cast<Move>(from << 6 | to);
}

[[nodiscard]] constexpr Square64 move_from64(Move move) noexcept { return move >> 6 & 63; }

[[nodiscard]] constexpr Square64 move_to64(Move move) noexcept { return move & 63; }

[[nodiscard]] constexpr Square move_from(Move move) noexcept {
    return square_of_64(move_from64(move));
}

[[nodiscard]] constexpr Square move_to(Move move) noexcept { return square_of_64(move_to64(move)); }

[[nodiscard]] constexpr int move_kind(Move move) noexcept { return move & kKindMask; }

[[nodiscard]] constexpr bool move_is_promotion(Move move) noexcept {
    return move_kind(move) == kKindPromotion;
}

[[nodiscard]] constexpr bool move_is_en_passant(Move move) noexcept {
    return move_kind(move) == kKindEnPassant;
}

// Neither "no move" nor the null move.
[[nodiscard]] constexpr bool move_is_ok(Move move) noexcept {
    return move != kMoveNone && move != kMoveNull;
}

// By the bits of a move that name the promotion piece. Inside move_promote it would be laid out on
// the stack at every call.
constexpr std::array<int, 4> promotion_type_bits = {kKnightBit, kBishopBit, kRookBit, kSliderBits};

// The piece that a promotion makes, White's when the to-square is on rank 8.
[[nodiscard]] constexpr Piece move_promote(Move move) noexcept {
    const int bits = promotion_type_bits[move >> 12 & 3];
    return bits | (move_to64(move) >= 56 ? kWhiteBit : kBlackBit);
}

[[nodiscard]] constexpr bool move_is_under_promote(Move move) noexcept {
    return move_is_promotion(move) && (move & kPromotionBits) != kPromotionBits;
}

[[nodiscard]] inline bool move_is_capture(Move move, const Board& board) noexcept {
    return move_is_en_passant(move) || board_piece(board, move_to(move)) != kEmpty;
}

// A capture or a promotion.
[[nodiscard]] inline bool move_is_tactical(Move move, const Board& board) noexcept {
    return (move & kKindPromotion) != 0 || board_piece(board, move_to(move)) != kEmpty;
}

// Code of the man that the move takes, 0 when it takes none.
[[nodiscard]] inline Piece move_captured(Move move, const Board& board) noexcept {
    // XOR 15 swaps the codes of the two pawns.
    return move_is_en_passant(move) ? board_piece(board, move_from(move)) ^ 15
                                    : board_piece(board, move_to(move));
}

// "e2e4", "e7e8q", "null"; false, with nothing written, when size is below 6.
bool move_to_string(Move move, char* buffer, int size);

// The move that a text means in this position, or 0 when it is no move text: two squares, then at
// most a promotion letter 'n', 'b', 'r' or 'q'. Neither legality nor anything behind the fifth
// character is looked at, so a caller compares the result with the legal moves.
[[nodiscard]] Move move_from_string(std::string_view text, const Board& board);

}  // namespace zar
