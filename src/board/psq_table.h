// The piece-square table that a Board sums. The evaluation fills it; this file only keeps it, so
// that making a move needs nothing from the evaluation.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "board/piece.h"

namespace zar {

// White's view: entries of black men are negative where they are good for Black.
struct PsqEntry {
    std::int16_t opening;
    std::int16_t endgame;
};

using PsqTable = std::array<std::array<PsqEntry, 64>, kPieceKindCount>;

// Index: Piece12, Square64. All zero until the evaluation's weights are applied. Written by the
// command thread while no search runs, read by all.
extern PsqTable psq_table;

[[nodiscard]] inline const PsqEntry& psq_of(int piece12, Square64 square) noexcept {
    return psq_table[static_cast<std::size_t>(piece12)][static_cast<std::size_t>(square)];
}

}  // namespace zar
