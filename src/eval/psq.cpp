#include "eval/psq.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "board/geometry.h"
#include "board/psq_table.h"
#include "eval/score.h"
#include "eval/weights.h"

namespace zar {

namespace {

// Over 256; the other men's values are taken as they are.
constexpr int kPawnScale = 333;

constexpr int kKnightCornerPenalty = 50;
constexpr int kKingStep = 5;
// By file and by rank.
constexpr std::array<int, 8> kKingLine = {-3, -1, 0, 1, 1, 0, -1, -3};

// Turns the board round: a1 becomes a8.
constexpr std::size_t kFlipRanks = 56;

PsqEntry& entry_of(Piece12 piece, Square square) {
    return psq_table[piece][static_cast<std::size_t>(square64_of(square))];
}

void fill_white_pawns() {
    constexpr auto outer = static_cast<std::int16_t>(weigh(10, kPawnScale));
    constexpr auto center = static_cast<std::int16_t>(weigh(20, kPawnScale));
    for (const Square square : {kD3, kE3, kD5, kE5}) {
        entry_of(kWhitePawn12, square).opening = outer;
    }
    for (const Square square : {kD4, kE4}) {
        entry_of(kWhitePawn12, square).opening = center;
    }
}

void fill_white_knights() {
    for (const Square square : {kA8, kH8}) {
        entry_of(kWhiteKnight12, square).opening = -kKnightCornerPenalty;
    }
}

void fill_white_king() {
    for (std::size_t index = 0; index < 64; ++index) {
        psq_table[kWhiteKing12][index].endgame =
            static_cast<std::int16_t>(kKingStep * (kKingLine[index % 8] + kKingLine[index / 8]));
    }
}

void mirror_to_black() {
    for (std::size_t white = 0; white < kPieceKindCount; white += 2) {
        for (std::size_t square = 0; square < 64; ++square) {
            const PsqEntry entry = psq_table[white][square ^ kFlipRanks];
            psq_table[white + 1][square] = {static_cast<std::int16_t>(-entry.opening),
                                            static_cast<std::int16_t>(-entry.endgame)};
        }
    }
}

}  // namespace

void psq_rebuild(int level) {
    psq_table = {};
    if (level < kFirstPositionalLevel) {
        return;
    }
    fill_white_pawns();
    fill_white_knights();
    fill_white_king();
    mirror_to_black();
}

}  // namespace zar
