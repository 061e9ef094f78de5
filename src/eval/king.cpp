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
constexpr ShelterTable kBesideBoard{};

// The penalties of the files to the left and to the right of a king, whose wall is best in the
// corners: d and e are both central, with the edge on either side.
struct Neighbours {
    const ShelterTable* left;
    const ShelterTable* right;
};
constexpr std::array<Neighbours, 8> kNeighbours = {{
    {&kBesideBoard, &kTowardCenter},
    {&kTowardEdge, &kTowardCenter},
    {&kTowardEdge, &kTowardCenter},
    {&kTowardEdge, &kTowardEdge},
    {&kTowardEdge, &kTowardEdge},
    {&kTowardCenter, &kTowardEdge},
    {&kTowardCenter, &kTowardEdge},
    {&kTowardCenter, &kBesideBoard},
}};

// A wall without a gap has no air hole.
constexpr int kNoAirHole = 11;

constexpr int kAllRanks = ranks_from(1);

constexpr int kColumnB = kFirstLine + 1;
constexpr int kColumnG = kFirstLine + 6;

// The pawns of one colour by column, see Board.
using PawnFiles = std::array<std::uint8_t, 16>;

// The penalty of a king in this column, shielded by own pawns on these ranks.
int shelter_penalty(const PawnFiles& files, std::size_t column, int ranks) {
    const auto pawns = [&](std::size_t file) -> std::size_t {
        return static_cast<std::size_t>(files[file] & ranks);
    };
    const Neighbours& neighbours = kNeighbours[column - kFirstLine];
    const int total = kOwnFile[pawns(column)] + (*neighbours.left)[pawns(column - 1)] +
                      (*neighbours.right)[pawns(column + 1)];
    return total == 0 ? kNoAirHole : total;
}

template <Color kUs>
int king_penalty(const Board& board) {
    constexpr int kKingSide = kUs == kWhite ? kWhiteKingSide : kBlackKingSide;
    constexpr int kQueenSide = kUs == kWhite ? kWhiteQueenSide : kBlackQueenSide;
    const PawnFiles& files = board.pawn_file[kUs];
    const Square king = board_king(board, kUs);
    // Pawns behind the king do not shield. No file has bits above these.
    const int ranks = kAllRanks << (relative_rank(king, kUs) - 1);
    const int current =
        shelter_penalty(files, static_cast<std::size_t>(square_column(king)), ranks);
    int best = current;
    if ((board.castle_flags & kKingSide) != 0) {
        best = std::min(best, shelter_penalty(files, kColumnG, kAllRanks));
    }
    if ((board.castle_flags & kQueenSide) != 0) {
        best = std::min(best, shelter_penalty(files, kColumnB, kAllRanks));
    }
    return (current + best) / 2;
}

}  // namespace

int king_shelter_penalty(const Board& board, Color color) {
    return color == kWhite ? king_penalty<kWhite>(board) : king_penalty<kBlack>(board);
}

}  // namespace zar
