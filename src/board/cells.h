// Several cells of one line looked at as one word: whether certain men stand beside a square, and
// how far a rank, file or diagonal is empty. Files and diagonals are rows of a turned board.
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
    Word cells = 0;
    std::memcpy(&cells, board.square.data() + first, sizeof cells);
    return cells;
}

}  // namespace detail

// Does a man with this bit stand to the left or right of a square, one of the board or of the rows
// above and below it?
[[nodiscard]] inline bool has_beside(const Board& board, Square square, int bit) noexcept {
    const auto cells = detail::cells_from<std::uint32_t>(board, square - 1);
    return (cells & detail::kFirstAndThird * static_cast<unsigned>(bit)) != 0;
}

// Does one stand on both sides?
[[nodiscard]] inline bool has_on_both_sides(const Board& board, Square square, int bit) noexcept {
    const auto cells = detail::cells_from<std::uint32_t>(board, square - 1);
    const std::uint32_t both = detail::kFirstAndThird * static_cast<unsigned>(bit);
    return (cells & both) == both;
}

// Does one stand on this square or one of the eight around it?
[[nodiscard]] inline bool has_around(const Board& board, Square square, int bit) noexcept {
    const auto row = [&](Square middle) {
        return detail::cells_from<std::uint32_t>(board, middle - 1);
    };
    const std::uint32_t cells = row(square - kRowStep) | row(square) | row(square + kRowStep);
    return (cells & detail::kFirstThree * static_cast<unsigned>(bit)) != 0;
}

namespace detail {

constexpr Turned turned_along(int step) {
    if (step == 16 || step == -16) {
        return kFiles;
    }
    return step == 17 || step == -17 ? kRisingDiagonals : kFallingDiagonals;
}

}  // namespace detail

// How many cells in the direction of a slider's step are empty, up to a man or the edge. No walk:
// rays are short, so that the end of a loop is hard to foresee. 5 per cent of all time.
template <int kStep>
[[nodiscard]] inline Square empty_cells(const Board& board, Square square) noexcept {
    static_assert(ray_mask_of(kStep) != 0);
    constexpr int kRun = 8;  // longer than any empty line
    constexpr bool kIsForward = kStep > 0;
    const std::uint8_t* cell = board.square.data() + square;
    if constexpr (kStep != 1 && kStep != -1) {
        constexpr Turned kWhich = detail::turned_along(kStep);
        cell = board.turned[kWhich].data() + turned_place[kWhich][static_cast<std::size_t>(square)];
    }
    std::uint64_t cells = 0;
    std::memcpy(&cells, kIsForward ? cell + 1 : cell - kRun, sizeof cells);
    if (cells == 0) {
        __builtin_unreachable();  // not without the edge
    }
    const auto empty_bits = static_cast<std::size_t>(
        kIsForward == detail::kIsLittleEndian ? std::countr_zero(cells) : std::countl_zero(cells));
    return static_cast<Square>(empty_bits / 8);
}

// The man or edge that a slider's ray meets.
template <int kStep>
[[nodiscard]] inline Square end_of_ray(const Board& board, Square from) noexcept {
    return from + kStep + kStep * empty_cells<kStep>(board, from);
}

}  // namespace zar
