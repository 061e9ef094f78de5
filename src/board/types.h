// The small integer codes that the whole engine speaks: colours, squares, pieces, scores and moves.
// They stay plain integers, because arithmetic on them is the point of each coding. What indexes
// tables all the time, colours and squares, is as wide as an address: otherwise every second index
// would have to be widened first, which took one instruction of twenty-two.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zar {

// 0 white, 1 black, -1 on a cleared board.
using Color = std::ptrdiff_t;
constexpr Color kWhite = 0;
constexpr Color kBlack = 1;
constexpr int kColorCount = 2;

// A cell of the 16x16 mailbox, row * 16 + column; a1 = 68, h8 = 187, everything outside rows and
// columns 4..11 is edge. 0 stands for "no square". See geometry.h.
using Square = std::ptrdiff_t;
constexpr Square kNoSquare = 0;

// 0..63, a1 = 0, b1 = 1, ... h8 = 63; used in moves, keys and piece-square tables.
using Square64 = std::ptrdiff_t;

// A set of squares, bit n for Square64 n. See set.h.
using SquareSet = std::uint64_t;

// A set of flag bits, 0 for an empty cell. See piece.h.
using Piece = int;

// Centipawns, a pawn being worth about 100; see search/types.h for the mate range.
using Score = int;

// A move code, 16 bits. See move.h.
using Move = std::uint16_t;

// Castling rights, a set of these bits.
enum CastleFlag : std::uint8_t {
    kWhiteKingSide = 1,
    kWhiteQueenSide = 2,
    kBlackKingSide = 4,
    kBlackQueenSide = 8,
    kAllCastling = 15,
};

[[nodiscard]] constexpr Color color_opposite(Color color) noexcept { return color ^ 1; }

}  // namespace zar
