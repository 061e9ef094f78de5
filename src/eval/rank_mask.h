// Sets of ranks as 8-bit masks, the form in which a Board keeps the pawns of each file, and what
// follows from them by table. Ranks are counted 1 to 8 from the side that a function or table is
// asked about: bit 0 is that side's own first rank.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "board/geometry.h"

namespace zar {

[[nodiscard]] constexpr int relative_rank(Square square, Color color) noexcept {
    return square_relative_row(square, color) - kFirstLine + 1;
}

// Ranks named by their place before, at or after a pawn's rank, 1..8.
[[nodiscard]] constexpr int rank_bit(int rank) noexcept { return 1 << (rank - 1); }

[[nodiscard]] constexpr int ranks_behind(int rank) noexcept { return rank_bit(rank) - 1; }

[[nodiscard]] constexpr int ranks_up_to(int rank) noexcept { return 2 * rank_bit(rank) - 1; }

[[nodiscard]] constexpr int ranks_ahead(int rank) noexcept { return 0xFF & ~ranks_up_to(rank); }

[[nodiscard]] constexpr int ranks_from(int rank) noexcept { return 0xFF & ~ranks_behind(rank); }

namespace detail {

template <typename Rule>
consteval std::array<std::uint8_t, 256> make_mask_table(Rule rule) {
    std::array<std::uint8_t, 256> table{};
    for (unsigned mask = 0; mask < 256; ++mask) {
        table[mask] = static_cast<std::uint8_t>(rule(mask));
    }
    return table;
}

constexpr unsigned reverse_bits(unsigned mask) {
    unsigned reversed = 0;
    for (int bit = 0; bit < 8; ++bit) {
        reversed |= (mask >> bit & 1U) << (7 - bit);
    }
    return reversed;
}

}  // namespace detail

constexpr std::array<std::uint8_t, 256> mask_bit_count =
    detail::make_mask_table([](unsigned mask) { return std::popcount(mask); });

// 1..8; 0 for the empty set.
constexpr std::array<std::uint8_t, 256> mask_lowest_rank = detail::make_mask_table(
    [](unsigned mask) { return mask == 0 ? 0 : std::countr_zero(mask) + 1; });

constexpr std::array<std::uint8_t, 256> mask_highest_rank =
    detail::make_mask_table([](unsigned mask) { return static_cast<int>(std::bit_width(mask)); });

// The same set of squares as the other side counts its ranks.
constexpr std::array<std::uint8_t, 256> mask_reversed =
    detail::make_mask_table(detail::reverse_bits);

[[nodiscard]] constexpr int rank_count(int mask) noexcept {
    return mask_bit_count[static_cast<std::size_t>(mask)];
}

[[nodiscard]] constexpr int rank_lowest(int mask) noexcept {
    return mask_lowest_rank[static_cast<std::size_t>(mask)];
}

[[nodiscard]] constexpr int rank_highest(int mask) noexcept {
    return mask_highest_rank[static_cast<std::size_t>(mask)];
}

[[nodiscard]] constexpr int ranks_reversed(int mask) noexcept {
    return mask_reversed[static_cast<std::size_t>(mask)];
}

}  // namespace zar
