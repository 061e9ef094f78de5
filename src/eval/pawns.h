// Pawn structure: doubled, isolated, backward and candidate pawns of both sides, and the facts that
// later terms ask for (passed pawns, second ranks, pawns alone on one file). The result depends on
// the pawns alone and is cached by them, so in a search it is nearly free.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "board/board.h"
#include "eval/score.h"

namespace zar {

// Also the entry of the cache: a record of zeros is that of a board without pawns. Arrays are
// indexed by colour.
struct PawnRecord {
    // High half of the pawn key.
    std::uint32_t lock;
    // White's view, already scaled.
    std::int16_t opening;
    std::int16_t endgame;
    // 1 when the colour has a pawn on its own second rank.
    std::array<std::uint8_t, 2> second_rank;
    // Bit 0 is the a-file: set where the colour has a passed pawn.
    std::array<std::uint8_t, 2> passed_files;
    // When all pawns of the colour stand on one file and no enemy pawn stands on a neighbouring
    // file ahead of the rearmost of them: the square of the most advanced; else 0.
    std::array<std::uint8_t, 2> lone_pawn;
};
static_assert(sizeof(PawnRecord) == 16);

// Bonuses for pawns on their way grow with the relative rank, 1..8, in parts of 256.
constexpr std::array<int, 9> kPasserRankFactor = {0, 0, 0, 0, 26, 77, 154, 256, 0};

// From low (ranks 1 to 3) to high (rank 7), rounded.
[[nodiscard]] constexpr int interpolate(int low, int high, int rank) noexcept {
    const int factor = kPasserRankFactor[static_cast<std::size_t>(rank)];
    return low + ((high - low) * factor + 128) / 256;
}

[[nodiscard]] constexpr ScorePair interpolate(ScorePair low, ScorePair high, int rank) noexcept {
    return {interpolate(low.opening, high.opening, rank),
            interpolate(low.endgame, high.endgame, rank)};
}

// Fills the record from the thread's cache, or computes and caches it.
void evaluate_pawns(PawnRecord& record, const Board& board, int thread);

// Tells the processor that the position's pawns will be evaluated soon.
void pawns_prefetch(const Board& board, int thread);

// On a mailbox column where the colour has a pawn.
[[nodiscard]] Square most_advanced_pawn(const Board& board, Color color, int column);

// The caches, 8 MiB for each of 1..4 threads. Allocating clears them and frees the old ones;
// without them records are computed every time.
void pawn_tables_allocate(int thread_count);
void pawn_tables_clear();
void pawn_tables_free();

}  // namespace zar
