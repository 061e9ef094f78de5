// Sets of squares, a word with one bit a square: which squares of a line a slider reaches over the
// men on the board, where knights and kings step, and how whole sets move. For those who ask about
// many squares at once; single questions of attack are answered by the mailbox.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "board/geometry.h"
#include "board/piece.h"
#include "board/types.h"
#include "platform/compiler.h"

namespace zar {

constexpr SquareSet kFirstFile = 0x0101010101010101;
constexpr SquareSet kFirstRank = 0xFF;
constexpr SquareSet kLastFile = kFirstFile << 7;

[[nodiscard]] constexpr SquareSet set_of(Square64 square) noexcept {
    return SquareSet{1} << square;
}

[[nodiscard]] constexpr bool set_has(SquareSet set, Square64 square) noexcept {
    return (set >> square & 1) != 0;
}

// The lowest square; the set must not be empty.
[[nodiscard]] constexpr Square64 set_first(SquareSet set) noexcept { return std::countr_zero(set); }

// Without the lowest square.
[[nodiscard]] constexpr SquareSet set_rest(SquareSet set) noexcept { return set & (set - 1); }

// Steps of all squares at once; what leaves the board is gone.
[[nodiscard]] constexpr SquareSet set_up(SquareSet set, int ranks = 1) noexcept {
    return set << 8 * ranks;
}

[[nodiscard]] constexpr SquareSet set_down(SquareSet set, int ranks = 1) noexcept {
    return set >> 8 * ranks;
}

// The squares to the left and right.
[[nodiscard]] constexpr SquareSet set_beside(SquareSet set) noexcept {
    return (set & ~kFirstFile) >> 1 | (set & ~kLastFile) << 1;
}

// These squares and all above, or below, on their files.
[[nodiscard]] constexpr SquareSet set_fill_up(SquareSet set) noexcept {
    set |= set << 8;
    set |= set << 16;
    return set | set << 32;
}

[[nodiscard]] constexpr SquareSet set_fill_down(SquareSet set) noexcept {
    set |= set >> 8;
    set |= set >> 16;
    return set | set >> 32;
}

// The set seen from the other side of the board: rank 1 becomes rank 8, files stay.
[[nodiscard]] constexpr SquareSet set_flip_ranks(SquareSet set) noexcept {
    return __builtin_bswap64(set);
}

// How many squares. std::popcount calls a function where the processor may lack the instruction.
[[nodiscard]] constexpr int set_count(SquareSet set) noexcept {
    constexpr SquareSet kPairs = 0x5555555555555555;
    constexpr SquareSet kFours = 0x3333333333333333;
    constexpr SquareSet kBytes = 0x0F0F0F0F0F0F0F0F;
    set -= set >> 1 & kPairs;
    set = (set & kFours) + (set >> 2 & kFours);
    return static_cast<int>(((set + (set >> 4)) & kBytes) * kFirstFile >> 56);
}

namespace detail {

using SetTable = std::array<SquareSet, 64>;

// The squares that `steps` lead to, one step each.
template <typename Steps>
consteval SetTable make_step_sets(const Steps& steps) {
    SetTable table{};
    for (std::size_t from = 0; from < table.size(); ++from) {
        for (const int step : steps) {
            const Square to = square_of_64(static_cast<Square64>(from)) + step;
            if (square_is_on_board(to)) {
                table[from] |= set_of(square64_of(to));
            }
        }
    }
    return table;
}

// All squares in one direction from each, up to the edge of the board.
constexpr SetTable make_ray(int step) {
    SetTable table{};
    for (std::size_t from = 0; from < table.size(); ++from) {
        for (Square to = square_of_64(static_cast<Square64>(from)) + step; square_is_on_board(to);
             to += step) {
            table[from] |= set_of(square64_of(to));
        }
    }
    return table;
}

// A diagonal as the eight columns see it: its squares, and a bit in each column that it does not
// reach, so that a way along it ends there.
struct Diagonal {
    SquareSet squares;
    SquareSet beyond;
};

consteval std::array<Diagonal, 64> make_diagonals(int step) {
    const SetTable up = make_ray(step);
    const SetTable down = make_ray(-step);
    std::array<Diagonal, 64> table{};
    for (std::size_t from = 0; from < table.size(); ++from) {
        const SquareSet squares = up[from] | down[from] | set_of(static_cast<Square64>(from));
        SquareSet columns = squares;
        for (const int shift : {8, 16, 32}) {
            columns |= columns >> shift;
        }
        table[from] = {squares, ~columns & kFirstRank};
    }
    return table;
}

// Tables by the cells of a line that are occupied, the bits of a byte, and a place 0..7 on it.
using LineTable = std::array<std::array<std::uint8_t, 8>, 256>;

// Calls action(cell, is_empty) for the cells on both sides, up to and including the first that is
// occupied.
template <typename Action>
constexpr void walk_line(int place, unsigned occupied, Action action) {
    for (const int step : {-1, 1}) {
        for (int cell = place + step; cell >= 0 && cell < 8; cell += step) {
            const bool is_empty = (occupied >> cell & 1) == 0;
            action(cell, is_empty);
            if (!is_empty) {
                break;
            }
        }
    }
}

template <typename Rule>
consteval LineTable make_line_table(Rule rule) {
    LineTable table{};
    for (std::size_t occupied = 0; occupied < table.size(); ++occupied) {
        for (std::size_t place = 0; place < table[occupied].size(); ++place) {
            walk_line(static_cast<int>(place), static_cast<unsigned>(occupied),
                      [&](int cell, bool is_empty) {
                          std::uint8_t& entry = table[occupied][place];
                          entry = static_cast<std::uint8_t>(rule(entry, cell, is_empty));
                      });
        }
    }
    return table;
}

// The cells seen, and how many of them are empty.
constexpr LineTable cells_seen =
    make_line_table([](int entry, int cell, bool) { return entry | 1 << cell; });
constexpr LineTable cells_empty =
    make_line_table([](int entry, int, bool is_empty) { return entry + (is_empty ? 1 : 0); });

constexpr auto rising_diagonal = make_diagonals(17);
constexpr auto falling_diagonal = make_diagonals(15);

[[nodiscard]] constexpr std::size_t file_of(Square64 square) noexcept {
    return static_cast<std::size_t>(square & 7);
}

[[nodiscard]] constexpr std::size_t rank_of(Square64 square) noexcept {
    return static_cast<std::size_t>(square >> 3);
}

// A line's occupied cells as a byte, each read at its file, those of a file at their rank. The
// products bring the bits of a diagonal or file together in the highest byte.
[[nodiscard]] constexpr std::size_t cells_of_rank(SquareSet men, Square64 square) noexcept {
    const std::size_t rank = rank_of(square);
    const auto ranks = bit_cast<std::array<std::uint8_t, 8>>(men);
    return ranks[std::endian::native == std::endian::little ? rank : 7 - rank];
}

[[nodiscard]] constexpr std::size_t cells_of_file(SquareSet men, Square64 square) noexcept {
    constexpr SquareSet kGather = 0x0102040810204080;
    return (men >> (square & 7) & kFirstFile) * kGather >> 56;
}

[[nodiscard]] constexpr std::size_t cells_of_diagonal(SquareSet cells) noexcept {
    return cells * kFirstFile >> 56;
}

[[nodiscard]] constexpr SquareSet diagonal_view(SquareSet men, const Diagonal& diagonal,
                                                Square64 from) noexcept {
    const SquareSet seen = cells_seen[cells_of_diagonal(men & diagonal.squares)][file_of(from)];
    return seen * kFirstFile & diagonal.squares;
}

[[nodiscard]] constexpr std::size_t diagonal_reach(SquareSet men, const Diagonal& diagonal,
                                                   Square64 from) noexcept {
    const SquareSet cells = (men & diagonal.squares) | diagonal.beyond;
    return cells_empty[cells_of_diagonal(cells)][file_of(from)];
}

// A file's cells back from the bits of a byte.
consteval std::array<SquareSet, 256> make_file_sets() {
    std::array<SquareSet, 256> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits) {
        for (int rank = 0; rank < 8; ++rank) {
            table[bits] |= SquareSet{bits >> rank & 1} << 8 * rank;
        }
    }
    return table;
}
constexpr auto file_set = make_file_sets();

// A knight's squares are the same eight bits from everywhere, once the set is turned by the square
// that it stands on. This product maps all sets of so many of them to the same few numbers.
[[nodiscard]] constexpr std::size_t knight_index(SquareSet reached, Square64 from) noexcept {
    constexpr SquareSet kGather = 0x8082100200101088;
    const SquareSet turned = reached >> from | reached << (-from & 63);
    return turned * kGather >> 59;
}

// How many squares a set of a knight's squares has, by that number. Two sets of unlike size with
// one number, the empty set among them, would not compile.
consteval std::array<std::uint8_t, 32> make_knight_counts() {
    constexpr std::array<int, 8> kBits = {6, 10, 15, 17, 47, 49, 54, 58};
    std::array<std::uint8_t, 32> table{};
    for (unsigned subset = 1; subset < 256; ++subset) {
        SquareSet reached = 0;
        for (std::size_t bit = 0; bit < kBits.size(); ++bit) {
            reached |= SquareSet{subset >> bit & 1} << kBits[bit];
        }
        const auto count = static_cast<std::uint8_t>(std::popcount(subset));
        std::uint8_t& entry = table[knight_index(reached, 0)];
        if (entry != 0 && entry != count) {
            std::abort();
        }
        entry = count;
    }
    if (table[0] != 0) {
        std::abort();
    }
    return table;
}
constexpr auto knight_counts = make_knight_counts();

constexpr auto knight_targets = make_step_sets(knight_steps);
constexpr auto king_targets = make_step_sets(king_steps);

template <int kStep>
constexpr auto ray_targets = make_ray(kStep);

}  // namespace detail

// All squares from one to the edge.
template <int kStep>
[[nodiscard]] constexpr SquareSet ray_view(Square64 from) noexcept {
    return detail::ray_targets<kStep>[static_cast<std::size_t>(from)];
}

[[nodiscard]] constexpr SquareSet knight_view(Square64 from) noexcept {
    return detail::knight_targets[static_cast<std::size_t>(from)];
}

[[nodiscard]] constexpr SquareSet king_view(Square64 from) noexcept {
    return detail::king_targets[static_cast<std::size_t>(from)];
}

// The squares that a bishop or rook sees over these men, up to and including the first man in each
// direction.
[[nodiscard]] constexpr SquareSet bishop_view(SquareSet men, Square64 from) noexcept {
    const auto index = static_cast<std::size_t>(from);
    return detail::diagonal_view(men, detail::rising_diagonal[index], from) |
           detail::diagonal_view(men, detail::falling_diagonal[index], from);
}

[[nodiscard]] constexpr SquareSet rook_view(SquareSet men, Square64 from) noexcept {
    const SquareSet on_rank =
        detail::cells_seen[detail::cells_of_rank(men, from)][detail::file_of(from)];
    const SquareSet on_file = detail::file_set[detail::cells_seen[detail::cells_of_file(men, from)]
                                                                 [detail::rank_of(from)]];
    return on_rank << (from & 56) | on_file << (from & 7);
}

// How many of the squares that a knight sees are in the set, which holds no others.
[[nodiscard]] constexpr std::size_t knight_count(SquareSet reached, Square64 from) noexcept {
    return detail::knight_counts[detail::knight_index(reached, from)];
}

// What a piece of this type sees.
template <PieceType kType>
[[nodiscard]] constexpr SquareSet piece_view(SquareSet men, Square64 from) noexcept {
    static_assert(kType != kPawn);
    if constexpr (kType == kKing) {
        return king_view(from);
    } else if constexpr (kType == kKnight) {
        return knight_view(from);
    } else {
        return (kType == kRook ? 0 : bishop_view(men, from)) |
               (kType == kBishop ? 0 : rook_view(men, from));
    }
}

// How many empty squares a bishop or rook sees.
[[nodiscard]] constexpr std::size_t bishop_reach(SquareSet men, Square64 from) noexcept {
    const auto index = static_cast<std::size_t>(from);
    return detail::diagonal_reach(men, detail::rising_diagonal[index], from) +
           detail::diagonal_reach(men, detail::falling_diagonal[index], from);
}

[[nodiscard]] constexpr std::size_t rook_reach(SquareSet men, Square64 from) noexcept {
    return std::size_t{
               detail::cells_empty[detail::cells_of_rank(men, from)][detail::file_of(from)]} +
           detail::cells_empty[detail::cells_of_file(men, from)][detail::rank_of(from)];
}

// The squares that pawns of a colour attack.
template <Color kColor>
[[nodiscard]] constexpr SquareSet pawn_targets(SquareSet pawns) noexcept {
    const SquareSet not_first = pawns & ~kFirstFile;
    const SquareSet not_last = pawns & ~kLastFile;
    return kColor == kWhite ? not_first << 7 | not_last << 9 : not_first >> 9 | not_last >> 7;
}

}  // namespace zar
