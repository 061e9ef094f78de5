// The 781 numbers of the Polyglot book format, in their published order: 0..767 piece on square,
// 768..771 castling, 772..779 en-passant file, 780 side to move. Those of men also by kind.
#pragma once

#include <array>
#include <cstdint>

#include "board/piece.h"

namespace zar {

extern const std::array<std::uint64_t, 781> random64;

// Those of men on squares, by Piece12 and Square64: the format has the black kind of each pair
// first.
extern const std::array<std::array<std::uint64_t, 64>, kPieceKindCount> piece_keys;

}  // namespace zar
