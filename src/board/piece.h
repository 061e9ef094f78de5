// Piece codes as sets of flag bits, and the tables over them: list index, type, value, letters and
// the steps that each kind of man makes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "board/types.h"

namespace zar {

enum PieceBit : std::uint8_t {
    kWhiteBit = 1,
    kBlackBit = 2,
    kWhitePawnBit = 4,
    kBlackPawnBit = 8,
    kPawnBits = 12,
    kKnightBit = 16,
    kBishopBit = 32,  // any diagonal slider: bishops and queens
    kRookBit = 64,    // any orthogonal slider: rooks and queens
    kSliderBits = 96,
    kKingBit = 128,
};

constexpr Piece kEmpty = 0;
// The knight bit without a colour bit: neither own nor enemy to anybody, so that a generator which
// accepts empty and enemy cells stops at the edge without a test of its own.
constexpr Piece kEdge = 16;

constexpr Piece kWhitePawn = 5;
constexpr Piece kBlackPawn = 10;
constexpr Piece kWhiteKnight = 17;
constexpr Piece kBlackKnight = 18;
constexpr Piece kWhiteBishop = 33;
constexpr Piece kBlackBishop = 34;
constexpr Piece kWhiteRook = 65;
constexpr Piece kBlackRook = 66;
constexpr Piece kWhiteQueen = 97;
constexpr Piece kBlackQueen = 98;
constexpr Piece kWhiteKing = 129;
constexpr Piece kBlackKing = 130;

constexpr int kPieceKindCount = 12;

// Indices of the twelve coloured pieces: twice the type, plus 1 for Black.
enum Piece12 : std::uint8_t {
    kWhitePawn12,
    kBlackPawn12,
    kWhiteKnight12,
    kBlackKnight12,
    kWhiteBishop12,
    kBlackBishop12,
    kWhiteRook12,
    kBlackRook12,
    kWhiteQueen12,
    kBlackQueen12,
    kWhiteKing12,
    kBlackKing12,
};

// Types without colour, weakest first.
enum PieceType : std::uint8_t { kPawn, kKnight, kBishop, kRook, kQueen, kKing };

constexpr int kPawnValue = 100;
constexpr int kQueenValue = 1000;

// The twelve codes in index order, then the pawn of colour 0 and of colour 1.
constexpr std::array<std::uint8_t, kPieceKindCount + 2> piece_from_12 = {
    kWhitePawn, kBlackPawn,  kWhiteKnight, kBlackKnight, kWhiteBishop, kBlackBishop, kWhiteRook,
    kBlackRook, kWhiteQueen, kBlackQueen,  kWhiteKing,   kBlackKing,   kWhitePawn,   kBlackPawn};

constexpr std::string_view kPieceLetters = "PpNnBbRrQqKk";

namespace detail {

consteval std::array<std::int8_t, 256> make_piece_to_12() {
    std::array<std::int8_t, 256> table{};
    table.fill(-1);
    for (std::size_t index = 0; index < kPieceKindCount; ++index) {
        table[piece_from_12[index]] = static_cast<std::int8_t>(index);
    }
    return table;
}

consteval std::array<std::int8_t, 256> make_piece_type() {
    std::array<std::int8_t, 256> table{};
    table.fill(-1);
    for (std::size_t index = 0; index < kPieceKindCount; ++index) {
        table[piece_from_12[index]] = static_cast<std::int8_t>(index / 2);
    }
    return table;
}

consteval std::array<std::int16_t, 256> make_piece_value() {
    constexpr std::array<std::int16_t, 6> by_type = {kPawnValue, 300, 325, 500, kQueenValue, 10000};
    std::array<std::int16_t, 256> table{};
    table.fill(-1);
    table[kEmpty] = 0;
    table[kEdge] = 0;
    for (std::size_t index = 0; index < kPieceKindCount; ++index) {
        table[piece_from_12[index]] = by_type[index / 2];
    }
    return table;
}

}  // namespace detail

// Piece code to index 0..11, -1 for anything that is not one of the twelve codes.
constexpr std::array<std::int8_t, 256> piece_to_12 = detail::make_piece_to_12();

// Piece code to PieceType, -1 for anything else.
constexpr std::array<std::int8_t, 256> piece_type = detail::make_piece_type();

// Centipawns of exchange value: 0 for empty and edge cells, -1 for what is no piece.
constexpr std::array<std::int16_t, 256> piece_value = detail::make_piece_value();

[[nodiscard]] constexpr int piece12_of(Piece piece) noexcept {
    return piece_to_12[static_cast<std::size_t>(piece)];
}

[[nodiscard]] constexpr int piece_type_of(Piece piece) noexcept {
    return piece_type[static_cast<std::size_t>(piece)];
}

[[nodiscard]] constexpr int piece_value_of(Piece piece) noexcept {
    return piece_value[static_cast<std::size_t>(piece)];
}

[[nodiscard]] constexpr Piece piece_of_12(int index) noexcept {
    return piece_from_12[static_cast<std::size_t>(index)];
}

// Is this one of the twelve piece codes? Any int may be asked about.
[[nodiscard]] constexpr bool piece_is_ok(Piece piece) noexcept {
    return piece >= 0 && piece <= 255 && piece12_of(piece) >= 0;
}

[[nodiscard]] constexpr int color_bit(Color color) noexcept { return static_cast<int>(color) + 1; }

// Colour of a man; meaningless for empty and edge cells.
[[nodiscard]] constexpr Color piece_color(Piece piece) noexcept {
    return (piece & kBlackBit) != 0 ? kBlack : kWhite;
}

[[nodiscard]] constexpr bool piece_is_pawn(Piece piece) noexcept {
    return (piece & kPawnBits) != 0;
}

[[nodiscard]] constexpr bool piece_is_king(Piece piece) noexcept { return (piece & kKingBit) != 0; }

[[nodiscard]] constexpr bool piece_is_slider(Piece piece) noexcept {
    return (piece & kSliderBits) != 0;
}

[[nodiscard]] constexpr Piece pawn_of(Color color) noexcept {
    return color == kWhite ? kWhitePawn : kBlackPawn;
}

// The bit that only this colour's pawns have.
[[nodiscard]] constexpr int pawn_bit(Color color) noexcept {
    return color == kWhite ? kWhitePawnBit : kBlackPawnBit;
}

[[nodiscard]] constexpr Piece king_of(Color color) noexcept {
    return color == kWhite ? kWhiteKing : kBlackKing;
}

// Index 0..11 of a piece of this type and colour.
[[nodiscard]] constexpr int piece12_make(PieceType type, Color color) noexcept {
    return type * 2 + static_cast<int>(color);
}

// Piece code of a FEN letter, 0 when the character is none of them.
[[nodiscard]] constexpr Piece piece_from_char(char letter) noexcept {
    const std::size_t index = kPieceLetters.find(letter);
    return index == std::string_view::npos ? kEmpty : piece_of_12(static_cast<int>(index));
}

// FEN letter of one of the twelve pieces.
[[nodiscard]] constexpr char piece_to_char(Piece piece) noexcept {
    return kPieceLetters[static_cast<std::size_t>(piece12_of(piece))];
}

constexpr std::array<int, 8> knight_steps = {-33, -31, -18, -14, 14, 18, 31, 33};
constexpr std::array<int, 4> bishop_steps = {-17, -15, 15, 17};
constexpr std::array<int, 4> rook_steps = {-16, -1, 1, 16};
constexpr std::array<int, 8> king_steps = {-17, -16, -15, -1, 1, 15, 16, 17};

// The steps of a non-pawn man in the order in which its moves are generated (a queen steps like a
// king); empty for pawns.
[[nodiscard]] constexpr std::span<const int> piece_steps(Piece piece) noexcept {
    switch (piece_type_of(piece)) {
        case kKnight:
            return knight_steps;
        case kBishop:
            return bishop_steps;
        case kRook:
            return rook_steps;
        case kQueen:
        case kKing:
            return king_steps;
        default:
            return {};
    }
}

}  // namespace zar
