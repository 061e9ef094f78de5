// Several cells of a row looked at as one word: whether certain men stand beside a square.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "board/board.h"

namespace zar {

namespace detail {

// A piece bit in the first and third byte of a word in memory.
constexpr bool kIsLittleEndian = std::endian::native == std::endian::little;
constexpr std::uint32_t kFirstAndThird = kIsLittleEndian ? 0x00010001 : 0x01000100;

[[nodiscard]] inline std::uint32_t cells_from(const Board& board, Square first) noexcept {
    std::uint32_t cells = 0;
    std::memcpy(&cells, board.square.data() + first, sizeof cells);
    return cells;
}

}  // namespace detail

// Does a man with this bit stand to the left or right of a square, one of the board or of the rows
// above and below it?
[[nodiscard]] inline bool has_beside(const Board& board, Square square, int bit) noexcept {
    const auto cells = detail::cells_from(board, square - 1);
    return (cells & detail::kFirstAndThird * static_cast<unsigned>(bit)) != 0;
}

// Does one stand on both sides?
[[nodiscard]] inline bool has_on_both_sides(const Board& board, Square square, int bit) noexcept {
    const auto cells = detail::cells_from(board, square - 1);
    const std::uint32_t both = detail::kFirstAndThird * static_cast<unsigned>(bit);
    return (cells & both) == both;
}

}  // namespace zar
