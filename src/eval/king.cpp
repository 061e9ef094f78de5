#include "eval/king.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "board/geometry.h"
#include "eval/rank_mask.h"

namespace zar {

namespace {

// Penalties by how far the rearmost shielding pawn has gone: index 8 - rank, and 0 without a pawn.
using ShelterTable = std::array<int, 8>;
constexpr ShelterTable kOwnFile = {72, 70, 64, 54, 40, 22, 0, 0};
constexpr ShelterTable kTowardCenter = {36, 35, 32, 26, 18, 14, 0, 0};
constexpr ShelterTable kTowardEdge = {36, 35, 32, 27, 19, 9, 0, 0};

// A wall without a gap has no air hole.
constexpr int kNoAirHole = 11;

constexpr int kColumnB = kFirstLine + 1;
constexpr int kColumnD = kFirstLine + 3;
constexpr int kColumnE = kFirstLine + 4;
constexpr int kColumnG = kFirstLine + 6;

// Pawns behind `from_rank` do not shield.
int file_penalty(const ShelterTable& table, const Board& board, Color color, int column,
                 int from_rank) {
    const int pawns =
        board.pawn_file[static_cast<std::size_t>(color)][static_cast<std::size_t>(column)] &
        ranks_from(from_rank);
    const int index = pawns == 0 ? 0 : 8 - rank_lowest(pawns);
    return table[static_cast<std::size_t>(index)];
}

// The penalty of a king in this column on this rank.
int shelter_penalty(const Board& board, Color color, int column, int rank) {
    const auto penalty = [&](const ShelterTable& table, int file) {
        return file_penalty(table, board, color, file, rank);
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
    const Square king = board_king(board, color);
    const int current =
        shelter_penalty(board, color, square_column(king), relative_rank(king, color));
    int best = current;
    const int rights = board.castle_flags >> (color == kWhite ? 0 : 2);
    if ((rights & kWhiteKingSide) != 0) {
        best = std::min(best, shelter_penalty(board, color, kColumnG, 1));
    }
    if ((rights & kWhiteQueenSide) != 0) {
        best = std::min(best, shelter_penalty(board, color, kColumnB, 1));
    }
    return (current + best) / 2;
}

}  // namespace zar
