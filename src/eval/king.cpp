#include "eval/king.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "board/geometry.h"
#include "eval/rank_mask.h"

namespace zar {

namespace {

// Penalties by the ranks of a file's shielding pawns, a mask: the rearmost decides.
using ShelterTable = std::array<std::uint8_t, 256>;

// From penalties by 8 - rank, with 0 for a file without a pawn.
consteval ShelterTable by_ranks(const std::array<std::uint8_t, 8>& penalties) {
    return detail::make_mask_table([&](unsigned mask) {
        const int rearmost = mask_lowest_rank[mask];
        return penalties[static_cast<std::size_t>(mask == 0 ? 0 : 8 - rearmost)];
    });
}
constexpr ShelterTable kOwnFile = by_ranks({72, 70, 64, 54, 40, 22, 0, 0});
constexpr ShelterTable kTowardCenter = by_ranks({36, 35, 32, 26, 18, 14, 0, 0});
constexpr ShelterTable kTowardEdge = by_ranks({36, 35, 32, 27, 19, 9, 0, 0});

// A wall without a gap has no air hole.
constexpr int kNoAirHole = 11;

constexpr int kAllRanks = ranks_from(1);

constexpr int kColumnB = kFirstLine + 1;
constexpr int kColumnD = kFirstLine + 3;
constexpr int kColumnE = kFirstLine + 4;
constexpr int kColumnG = kFirstLine + 6;

// The pawns of one colour by column, see Board.
using PawnFiles = std::array<std::uint8_t, 16>;

// The penalty of a king in this column, shielded by own pawns on these ranks.
int shelter_penalty(const PawnFiles& files, int column, int ranks) {
    const auto penalty = [&](const ShelterTable& table, int file) -> int {
        return table[static_cast<std::size_t>(files[static_cast<std::size_t>(file)] & ranks)];
    };
    int total = penalty(kOwnFile, column);
    if (column == kColumnD || column == kColumnE) {
        total += penalty(kTowardEdge, column - 1) + penalty(kTowardEdge, column + 1);
    } else {
        const int toward_center = column < kColumnD ? 1 : -1;
        total += penalty(kTowardCenter, column + toward_center);
        if (column != kFirstLine && column != kLastLine) {
            total += penalty(kTowardEdge, column - toward_center);
        }
    }
    return total == 0 ? kNoAirHole : total;
}

}  // namespace

int king_shelter_penalty(const Board& board, Color color) {
    const auto& files = board.pawn_file[static_cast<std::size_t>(color)];
    const Square king = board_king(board, color);
    // Pawns behind the king do not shield.
    const int current =
        shelter_penalty(files, square_column(king), ranks_from(relative_rank(king, color)));
    int best = current;
    const int rights = board.castle_flags >> (color == kWhite ? 0 : 2);
    if ((rights & kWhiteKingSide) != 0) {
        best = std::min(best, shelter_penalty(files, kColumnG, kAllRanks));
    }
    if ((rights & kWhiteQueenSide) != 0) {
        best = std::min(best, shelter_penalty(files, kColumnB, kAllRanks));
    }
    return (current + best) / 2;
}

}  // namespace zar
