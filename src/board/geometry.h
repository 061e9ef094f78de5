// Squares of the 16x16 mailbox and everything that follows from two of them alone: index maps,
// distances, and the tables over the difference of two squares that answer attack questions.
// All tables are computed at compile time.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "board/types.h"

namespace zar {

constexpr int kSquareCount = 256;
constexpr Square kRowStep = 16;
constexpr int kFirstLine = 4;  // row of rank 1, column of file a
constexpr int kLastLine = 11;  // row of rank 8, column of file h

// The difference of two board squares lies in -119..119; tables over it have 239 entries.
constexpr int kDeltaBias = 119;
constexpr int kDeltaCount = 2 * kDeltaBias + 1;

[[nodiscard]] constexpr int square_row(Square square) noexcept {
    return static_cast<int>(square >> 4);
}

[[nodiscard]] constexpr int square_column(Square square) noexcept {
    return static_cast<int>(square & 15);
}

// Row and column are mailbox lines, 4..11 on the board.
[[nodiscard]] constexpr Square square_make(int row, int column) noexcept {
    return row * kRowStep + column;
}

[[nodiscard]] constexpr bool square_is_on_board(Square square) noexcept {
    const int row = square_row(square);
    const int column = square_column(square);
    return square < kSquareCount && row >= kFirstLine && row <= kLastLine && column >= kFirstLine &&
           column <= kLastLine;
}

// The square seen from the other side of the board: rank 1 becomes rank 8, files stay.
[[nodiscard]] constexpr Square square_flip_rows(Square square) noexcept { return square ^ 0xF0; }

// Row as `color` counts it: 4 is its own first rank, 11 the rank its pawns promote on.
[[nodiscard]] constexpr int square_relative_row(Square square, Color color) noexcept {
    return square_row(square) ^ (color == kWhite ? 0 : 15);
}

// A pawn's second and seventh rank, as its colour sees the board.
[[nodiscard]] constexpr bool is_second_rank(Square square, Color color) noexcept {
    return square_relative_row(square, color) == kFirstLine + 1;
}

[[nodiscard]] constexpr bool is_seventh_rank(Square square, Color color) noexcept {
    return square_relative_row(square, color) == kLastLine - 1;
}

// 0 for dark squares such as a1, 1 for light ones.
[[nodiscard]] constexpr int square_shade(Square square) noexcept {
    return (square_row(square) + square_column(square)) & 1;
}

namespace detail {

consteval std::array<std::uint8_t, 64> make_square_from_64() {
    std::array<std::uint8_t, 64> table{};
    for (int index = 0; index < 64; ++index) {
        table[static_cast<std::size_t>(index)] =
            static_cast<std::uint8_t>(square_make(kFirstLine + index / 8, kFirstLine + index % 8));
    }
    return table;
}

consteval std::array<std::int8_t, kSquareCount> make_square_to_64() {
    std::array<std::int8_t, kSquareCount> table{};
    for (Square square = 0; square < kSquareCount; ++square) {
        const int index =
            (square_row(square) - kFirstLine) * 8 + (square_column(square) - kFirstLine);
        table[static_cast<std::size_t>(square)] =
            static_cast<std::int8_t>(square_is_on_board(square) ? index : -1);
    }
    return table;
}

}  // namespace detail

// Square64 to Square.
constexpr std::array<std::uint8_t, 64> square_from_64 = detail::make_square_from_64();

// Square to Square64, -1 off the board.
constexpr std::array<std::int8_t, kSquareCount> square_to_64 = detail::make_square_to_64();

[[nodiscard]] constexpr Square square_of_64(Square64 index) noexcept {
    return square_from_64[static_cast<std::size_t>(index)];
}

[[nodiscard]] constexpr Square64 square64_of(Square square) noexcept {
    return square_to_64[static_cast<std::size_t>(square)];
}

// Is the square on rank 1 or rank 8?
[[nodiscard]] constexpr bool square_is_promotion_rank(Square square) noexcept {
    return square_row(square) == kFirstLine || square_row(square) == kLastLine;
}

// Named squares, for the few places that speak of fixed ones.
// clang-format off
enum : Square {
    kA1 = 68,  kB1, kC1, kD1, kE1, kF1, kG1, kH1,
    kA2 = 84,  kB2, kC2, kD2, kE2, kF2, kG2, kH2,
    kA3 = 100, kB3, kC3, kD3, kE3, kF3, kG3, kH3,
    kA4 = 116, kB4, kC4, kD4, kE4, kF4, kG4, kH4,
    kA5 = 132, kB5, kC5, kD5, kE5, kF5, kG5, kH5,
    kA6 = 148, kB6, kC6, kD6, kE6, kF6, kG6, kH6,
    kA7 = 164, kB7, kC7, kD7, kE7, kF7, kG7, kH7,
    kA8 = 180, kB8, kC8, kD8, kE8, kF8, kG8, kH8,
};
// clang-format on

// The forward step of a pawn.
[[nodiscard]] constexpr Square pawn_step_of(Color color) noexcept {
    return color == kWhite ? kRowStep : -kRowStep;
}

// Rights that survive a move from or to this square: 15 everywhere but on the home squares of kings
// and rooks.
[[nodiscard]] constexpr int castle_mask_of(Square square) noexcept;

namespace detail {

consteval std::array<std::uint8_t, kSquareCount> make_castle_mask() {
    std::array<std::uint8_t, kSquareCount> table{};
    table.fill(kAllCastling);
    table[kA1] = 13;
    table[kE1] = 12;
    table[kH1] = 14;
    table[kA8] = 7;
    table[kE8] = 3;
    table[kH8] = 11;
    return table;
}

// Visits every pair of board squares, so that a rule over a difference can be tabulated.
template <typename Entry, typename Rule>
consteval std::array<Entry, kDeltaCount> make_delta_table(Rule rule) {
    std::array<Entry, kDeltaCount> table{};
    for (int row = -7; row <= 7; ++row) {
        for (int column = -7; column <= 7; ++column) {
            const Square delta = row * kRowStep + column;
            table[static_cast<std::size_t>(delta + kDeltaBias)] =
                static_cast<Entry>(rule(row, column));
        }
    }
    return table;
}

constexpr int absolute(int value) { return value < 0 ? -value : value; }

constexpr int sign(int value) { return (value > 0) - (value < 0); }

constexpr bool is_diagonal(int row, int column) {
    return row != 0 && absolute(row) == absolute(column);
}

constexpr bool is_orthogonal(int row, int column) { return (row == 0) != (column == 0); }

constexpr bool is_knight_step(int row, int column) { return absolute(row * column) == 2; }

constexpr Square ray_step(int row, int column) {
    const bool on_line = is_diagonal(row, column) || is_orthogonal(row, column);
    return on_line ? sign(row) * kRowStep + sign(column) : 0;
}

// The flag bits of piece.h: white pawn 4, black pawn 8, knight 16, bishop 32, rook 64, king 128.
constexpr int attacker_bits(int row, int column) {
    int bits = 0;
    if (is_knight_step(row, column)) {
        bits |= 16;
    }
    if (is_diagonal(row, column)) {
        bits |= 32;
    }
    if (is_orthogonal(row, column)) {
        bits |= 64;
    }
    if (std::max(absolute(row), absolute(column)) == 1) {
        bits |= 128;
    }
    if (absolute(column) == 1 && absolute(row) == 1) {
        bits |= row > 0 ? 4 : 8;
    }
    return bits;
}

}  // namespace detail

constexpr std::array<std::uint8_t, kSquareCount> castle_mask = detail::make_castle_mask();

constexpr int castle_mask_of(Square square) noexcept {
    return castle_mask[static_cast<std::size_t>(square)];
}

// Flag bits of the men that attack a square at this difference (to - from) from their own, as far
// as the lines between are empty.
constexpr std::array<std::uint8_t, kDeltaCount> delta_mask =
    detail::make_delta_table<std::uint8_t>(detail::attacker_bits);

// The step to walk from an attacker toward its target: the whole difference for a knight's step,
// the unit step on a line, 0 where no man attacks.
constexpr std::array<std::int8_t, kDeltaCount> delta_inc =
    detail::make_delta_table<std::int8_t>([](int row, int column) {
        return detail::is_knight_step(row, column) ? row * kRowStep + column
                                                   : detail::ray_step(row, column);
    });

// The unit step on a sliders' line, 0 everywhere else.
constexpr std::array<std::int8_t, kDeltaCount> delta_ray =
    detail::make_delta_table<std::int8_t>(detail::ray_step);

// max(|rank difference|, |file difference|), 0..7.
constexpr std::array<std::uint8_t, kDeltaCount> king_distance =
    detail::make_delta_table<std::uint8_t>([](int row, int column) {
        return std::max(detail::absolute(row), detail::absolute(column));
    });

[[nodiscard]] constexpr int delta_mask_of(Square from, Square to) noexcept {
    return delta_mask[static_cast<std::size_t>(to - from + kDeltaBias)];
}

[[nodiscard]] constexpr int delta_inc_of(Square from, Square to) noexcept {
    return delta_inc[static_cast<std::size_t>(to - from + kDeltaBias)];
}

[[nodiscard]] constexpr int delta_ray_of(Square from, Square to) noexcept {
    return delta_ray[static_cast<std::size_t>(to - from + kDeltaBias)];
}

[[nodiscard]] constexpr int king_distance_of(Square from, Square to) noexcept {
    return king_distance[static_cast<std::size_t>(to - from + kDeltaBias)];
}

namespace detail {

constexpr int kStepBias = 17;

consteval std::array<std::uint8_t, 2 * kStepBias + 1> make_ray_mask() {
    std::array<std::uint8_t, 2 * kStepBias + 1> table{};
    for (const int step : {-17, -15, 15, 17}) {
        table[static_cast<std::size_t>(step + kStepBias)] = 32;
    }
    for (const int step : {-16, -1, 1, 16}) {
        table[static_cast<std::size_t>(step + kStepBias)] = 64;
    }
    return table;
}

}  // namespace detail

constexpr auto ray_mask = detail::make_ray_mask();

// The slider bit (32 bishop, 64 rook) that moves along this unit step, -17..17; 0 for others.
[[nodiscard]] constexpr int ray_mask_of(Square step) noexcept {
    return ray_mask[static_cast<std::size_t>(step + detail::kStepBias)];
}

}  // namespace zar
