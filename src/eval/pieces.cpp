#include "eval/pieces.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "board/cells.h"
#include "board/geometry.h"
#include "board/piece.h"
#include "board/set.h"
#include "eval/weights.h"

namespace zar {

namespace {

// Bonus of a knight for each pawn that defends it, as its own side sees the board: a1 comes first.
// clang-format off
constexpr std::array<int, 64> kKnightOutpost = {
    0, 0, 0, 0,  0,  0, 0, 0,
    0, 0, 0, 0,  0,  0, 0, 0,
    0, 0, 0, 0,  0,  0, 0, 0,
    0, 2, 5, 10, 10, 5, 2, 0,
    0, 2, 5, 10, 10, 5, 2, 0,
    0, 0, 4, 5,  5,  4, 0, 0,
    0, 0, 0, 0,  0,  0, 0, 0,
    0, 0, 0, 0,  0,  0, 0, 0,
};
// clang-format on

// What a queen gains near the enemy king, by the difference of their squares.
consteval std::array<int, kDeltaCount> make_queen_near_king() {
    std::array<int, kDeltaCount> table{};
    for (int row = -7; row <= 7; ++row) {
        for (int column = -7; column <= 7; ++column) {
            const Square delta = row * kRowStep + column;
            const int steps = (row < 0 ? -row : row) + (column < 0 ? -column : column);
            table[static_cast<std::size_t>(delta + kDeltaBias)] = 10 - steps;
        }
    }
    return table;
}
constexpr std::array<int, kDeltaCount> kQueenNearKing = make_queen_near_king();

// By the number of pieces in the enemy's half; more than six count like six.
constexpr std::array<int, 7> kKingAttackScale = {0, 2, 5, 8, 12, 15, 20};

// More than all weights of attackers together.
constexpr unsigned kAttacker = 256;

// The pieces of one colour as far as they have been scored, and what their terms need to know. What
// few of them ask for is found when they do: kept ready it needs registers, 8 instructions a node.
template <Color kUs>
struct PieceSum {
    const Board& board;
    const PawnRecord& pawns;
    SquareSet men;    // of both colours
    bool press_king;  // rooks press the enemy king's shelter
    PackedPair score;
    // Pieces in the enemy's half, times kAttacker, and the sum of their weights.
    unsigned attack;

    [[nodiscard]] Piece at(Square square) const { return board_piece(board, square); }
    [[nodiscard]] Square enemy_king() const { return board_king(board, color_opposite(kUs)); }
};

template <Color kUs>
constexpr Piece kOwnPawn = pawn_of(kUs);

template <Color kUs>
constexpr int kEnemyPawnBit = pawn_bit(color_opposite(kUs));

template <Color kUs>
bool enemy_pawn_attacks(const PieceSum<kUs>& sum, Square square) {
    return has_beside(sum.board, square + pawn_step_of(kUs), kEnemyPawnBit<kUs>);
}

template <Color kUs>
int own_pawns_defending(const PieceSum<kUs>& sum, Square square) {
    const Square behind = square - pawn_step_of(kUs);
    return (sum.at(behind - 1) == kOwnPawn<kUs> ? 1 : 0) +
           (sum.at(behind + 1) == kOwnPawn<kUs> ? 1 : 0);
}

template <Color kUs>
void count_attacker(PieceSum<kUs>& sum, Square square, unsigned weight) {
    if (kUs == kWhite ? square >= kA5 : square <= kH4) {
        sum.attack += kAttacker + weight;
    }
}

template <Color kUs>
void add_knight(PieceSum<kUs>& sum, Square square) {
    constexpr Color kThem = color_opposite(kUs);
    count_attacker(sum, square, 1);
    const Square64 square64 = square64_of(square);
    const SquareSet not_free = sum.men | pawn_targets<kThem>(sum.board.pawns[kThem]);
    const SquareSet reached = knight_view(square64) & ~not_free;
    sum.score += eval_weights.mobility.knight[knight_count(reached, square64)];
    constexpr Square64 kFlipRanks = kUs == kWhite ? 0 : 56;
    const int outpost = kKnightOutpost[static_cast<std::size_t>(square64 ^ kFlipRanks)];
    if (outpost != 0 && !enemy_pawn_attacks(sum, square)) {
        sum.score += pack({outpost * own_pawns_defending(sum, square), 0});
    }
}

template <Color kUs>
void add_bishop(PieceSum<kUs>& sum, Square square) {
    count_attacker(sum, square, 1);
    const bool shut_in =
        has_on_both_sides(sum.board, square + pawn_step_of(kUs), kEnemyPawnBit<kUs>);
    const auto& mobility =
        shut_in ? eval_weights.mobility.shut_in_bishop : eval_weights.mobility.bishop;
    sum.score += mobility[bishop_reach(sum.men, square64_of(square))];
}

// Is the man on the seventh rank, with pawns to attack or a king to shut in?
template <Color kUs>
bool presses_seventh(const PieceSum<kUs>& sum, Square square) {
    constexpr Color kThem = color_opposite(kUs);
    constexpr int kSeventhRow = kUs == kWhite ? kLastLine - 1 : kFirstLine + 1;
    constexpr int kEnemyHomeRow = kUs == kWhite ? kLastLine : kFirstLine;
    return square_row(square) == kSeventhRow &&
           (sum.pawns.second_rank[kThem] != 0 || square_row(sum.enemy_king()) == kEnemyHomeRow);
}

template <Color kUs>
void add_rook(PieceSum<kUs>& sum, Square square) {
    const MobilityWeights& weights = eval_weights.mobility;
    count_attacker(sum, square, 2);
    sum.score += weights.rook[rook_reach(sum.men, square64_of(square))];
    const int column = square_column(square);
    const auto file = static_cast<std::size_t>(column);
    if (sum.board.pawn_file[kUs][file] == 0) {
        sum.score += sum.board.pawn_file[color_opposite(kUs)][file] == 0 ? weights.rook_open
                                                                         : weights.rook_half_open;
    }
    const int distance = column - square_column(sum.enemy_king());
    if (distance >= -1 && distance <= 1 && sum.press_king) {
        sum.score += distance == 0 ? weights.rook_on_king_file : weights.rook_near_king;
    }
    if (presses_seventh(sum, square)) {
        sum.score += weights.rook_seventh;
    }
}

template <Color kUs>
void add_queen(PieceSum<kUs>& sum, Square square) {
    count_attacker(sum, square, 4);
    const int nearness =
        kQueenNearKing[static_cast<std::size_t>(square - sum.enemy_king() + kDeltaBias)];
    sum.score += pack({nearness, nearness});
    if (presses_seventh(sum, square)) {
        sum.score += eval_weights.mobility.queen_seventh;
    }
}

template <Color kUs>
PackedPair evaluate_side(const Board& board, const PawnRecord& pawns, bool press_king) {
    PieceSum<kUs> sum{
        .board = board,
        .pawns = pawns,
        .men = board_men(board),
        .press_king = press_king,
        .score = {},
        .attack = 0,
    };
    // The list holds the men type by type, so no man need be looked at for its type.
    const std::uint8_t* man = board_officers(board, kUs).begin();
    const auto add_all = [&](PieceType type, auto add_one) {
        const std::uint8_t* const end =
            man + board.kind_count[static_cast<std::size_t>(piece12_make(type, kUs))];
        while (man != end) {
            add_one(sum, *man++);
        }
    };
    add_all(kQueen, add_queen<kUs>);
    add_all(kRook, add_rook<kUs>);
    add_all(kBishop, add_bishop<kUs>);
    add_all(kKnight, add_knight<kUs>);
    const std::size_t attackers =
        std::min<std::size_t>(sum.attack / kAttacker, kKingAttackScale.size() - 1);
    sum.score += pack({static_cast<int>(sum.attack % kAttacker) * kKingAttackScale[attackers], 0});
    return sum.score;
}

}  // namespace

PackedPair evaluate_pieces(const Board& board, Color color, const PawnRecord& pawns,
                           bool press_king) {
    return color == kWhite ? evaluate_side<kWhite>(board, pawns, press_king)
                           : evaluate_side<kBlack>(board, pawns, press_king);
}

}  // namespace zar
