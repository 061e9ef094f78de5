// What follows from the counts of men alone: the material balance, the phase of the game, the class
// of small endings, how far each side can hope to win, and which later terms apply. Cached by the
// material key.
#pragma once

#include <array>
#include <cstdint>

#include "board/board.h"

namespace zar {

// Small endings that somebody treats specially, White's men first: kqvkp is White's queen against
// Black's pawn. The codes are shown by developer tools.
enum class EndingClass : std::uint8_t {
    none = 0,
    kvk = 1,
    kbvk = 2,
    kvkb = 3,
    knvk = 4,
    kvkn = 5,
    kpvk = 6,
    kvkp = 7,
    kqvkq = 8,
    kqvkp = 9,
    kpvkq = 10,
    krvkr = 11,
    krvkp = 12,
    kpvkr = 13,
    kbvkb = 14,
    kbvkp = 15,
    kpvkb = 16,
    kbpvk = 17,
    kvkbp = 18,
    knvkn = 19,
    knvkp = 20,
    kpvkn = 21,
    knpvk = 22,
    kvknp = 23,
    krpvkr = 24,
    krvkrp = 25,
    kbpvkb = 26,
    kbvkbp = 27,
};

// Facts about the material of both sides together.
enum EndingFlag : std::uint8_t {
    kEndingMayBeDrawn = 1,     // the position may be a recognised draw, see draws.h
    kEndingSingleBishops = 2,  // one bishop each and nothing else: opposite shades matter
};

// Facts about the material of one side.
enum SideFlag : std::uint8_t {
    kTestRookFile = 1,     // pawns, perhaps with bishops, may be stopped at a corner
    kTestBlockedFile = 2,  // pawns, perhaps with a bishop, may be stopped by the king in front
    kTestKnightPawn = 4,   // knight and pawn may be stopped by the king in front
    kNeedsShelter = 8,     // the enemy has a queen and more: the king's shelter counts
};

// Scales count in sixteenths: 16 leaves a score as it is, with 0 the side cannot win.
constexpr int kFullScale = 16;

// Also the entry of the cache. Arrays are indexed by colour.
struct MaterialRecord {
    // High half of the material key.
    std::uint32_t lock;
    EndingClass ending;
    std::uint8_t ending_flags;               // EndingFlag
    std::array<std::uint8_t, 2> side_flags;  // SideFlag
    // Multiplier, 0..16, of a score in favour of the colour.
    std::array<std::uint8_t, 2> scale;
    // 0 with all pieces on the board .. 256 with none.
    std::uint16_t phase;
    // White's view, already scaled.
    std::int16_t opening;
    std::int16_t endgame;
};
static_assert(sizeof(MaterialRecord) == 16);

// The record from the thread's cache, or computed and cached.
[[nodiscard]] MaterialRecord material_probe(const Board& board, int thread);

// The caches, 4 KiB for each of 1..4 threads. Allocating clears them and frees the old ones;
// without them records are computed every time.
void material_tables_allocate(int thread_count);
void material_tables_clear();
void material_tables_free();

}  // namespace zar
