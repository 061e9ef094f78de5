// Several cells of one row of the mailbox looked at as one word: whether certain men stand beside a
// square, and how far a row is empty.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "board/board.h"

namespace zar {

namespace detail {

// A piece bit in the first and third byte of a word in memory, and in the first three.
constexpr bool kIsLittleEndian = std::endian::native == std::endian::little;
constexpr std::uint32_t kFirstAndThird = kIsLittleEndian ? 0x00010001 : 0x01000100;
constexpr std::uint32_t kFirstThree = kIsLittleEndian ? 0x00010101 : 0x01010100;

template <typename Word>
[[nodiscard]] inline Word cells_from(const Board& board, Square first) noexcept {
    Word cells;
    std::memcpy(&cells, board.square.data() + first, sizeof cells);
    return cells;
}

}  // namespace detail

// Does a man with this bit stand to the left or right of a square of the board or the edge?
[[nodiscard]] inline bool has_beside(const Board& board, Square square, unsigned bit) noexcept {
    const auto cells = detail::cells_from<std::uint32_t>(board, square - 1);
    return (cells & detail::kFirstAndThird * bit) != 0;
}

// Does one stand on both sides?
[[nodiscard]] inline bool has_on_both_sides(const Board& board, Square square,
                                            unsigned bit) noexcept {
    const auto cells = detail::cells_from<std::uint32_t>(board, square - 1);
    return (cells & detail::kFirstAndThird * bit) == detail::kFirstAndThird * bit;
}

// Does one stand on this square or one of the eight around it?
[[nodiscard]] inline bool has_around(const Board& board, Square square, unsigned bit) noexcept {
    const auto row = [&](Square middle) {
        return detail::cells_from<std::uint32_t>(board, middle - 1);
    };
    const std::uint32_t cells = row(square - kRowStep) | row(square) | row(square + kRowStep);
    return (cells & detail::kFirstThree * bit) != 0;
}

// Empty cells of the row on both sides of the square, up to men or edges.
[[nodiscard]] inline int empty_cells_beside(const Board& board, Square square) noexcept {
    constexpr int kRun = 8;  // longer than any row of empty cells
    const auto right = detail::cells_from<std::uint64_t>(board, square + 1);
    const auto left = detail::cells_from<std::uint64_t>(board, square - kRun);
    if constexpr (detail::kIsLittleEndian) {
        return std::countr_zero(right) / 8 + std::countl_zero(left) / 8;
    } else {
        return std::countl_zero(right) / 8 + std::countr_zero(left) / 8;
    }
}

}  // namespace zar
