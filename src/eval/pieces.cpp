#include "eval/pieces.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <span>

#include "board/geometry.h"
#include "board/piece.h"
#include "eval/rank_mask.h"
#include "eval/weights.h"

namespace zar {

namespace {

// By the number of squares that the piece reaches, in units of mobility.
constexpr std::array<int, 9> kKnightMobility = {-16, -12, -8, -4, 0, 4, 8, 12, 16};

// A bishop that reaches more than eight squares gets no bonus: such boards are open to both sides.
constexpr std::array<int, 16> kBishopMobility = {-20, -15, -10, -5, 0, 5, 10, 15,
                                                 20,  0,   0,   0,  0, 0, 0,  0};

consteval std::array<ScorePair, 16> make_rook_mobility() {
    std::array<ScorePair, 16> table{};
    for (int count = 0; count < 15; ++count) {
        table[static_cast<std::size_t>(count)] = {2 * count - 14, 4 * count - 28};
    }
    return table;
}
constexpr std::array<ScorePair, 16> kRookMobility = make_rook_mobility();

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

constexpr int kQueenNearKing = 10;

// By the number of pieces in the enemy's half; more than six count like six.
constexpr std::array<int, 7> kKingAttackScale = {0, 2, 5, 8, 12, 15, 20};

// Pieces in the enemy's half, and the sum of their weights.
struct KingAttack {
    int count = 0;
    int weight = 0;
};

// What the terms of every piece of one colour need to know.
struct PieceContext {
    const Board& board;
    Square enemy_king;
    bool press_king;
    bool seventh_counts;  // a rook or queen on the seventh rank has something to attack or shut in
    KingAttack attack;
};

template <std::size_t kSize, typename Entry>
Entry entry_at(const std::array<Entry, kSize>& table, int index) {
    return table[static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(kSize) - 1))];
}

ScorePair both(int value) { return {value, value}; }

template <Color kUs>
constexpr Piece kOwnPawn = pawn_of(kUs);

template <Color kUs>
constexpr Piece kEnemyPawn = pawn_of(color_opposite(kUs));

template <Color kUs>
bool enemy_pawn_attacks(const Board& board, Square square) {
    const Square ahead = square + pawn_step_of(kUs);
    return board_piece(board, ahead - 1) == kEnemyPawn<kUs> ||
           board_piece(board, ahead + 1) == kEnemyPawn<kUs>;
}

template <Color kUs>
int own_pawns_defending(const Board& board, Square square) {
    const Square behind = square - pawn_step_of(kUs);
    return (board_piece(board, behind - 1) == kOwnPawn<kUs> ? 1 : 0) +
           (board_piece(board, behind + 1) == kOwnPawn<kUs> ? 1 : 0);
}

// Empty squares along the steps, up to the first man or edge.
int reached_squares(const Board& board, Square from, std::span<const int> steps) {
    int count = 0;
    for (const int step : steps) {
        for (Square to = from + step; board_piece(board, to) == kEmpty; to += step) {
            ++count;
        }
    }
    return count;
}

template <Color kUs>
void count_attacker(PieceContext& context, Square square, int weight) {
    if (relative_rank(square, kUs) >= 5) {
        context.attack.count += 1;
        context.attack.weight += weight;
    }
}

template <Color kUs>
ScorePair knight_score(PieceContext& context, Square square) {
    const Board& board = context.board;
    count_attacker<kUs>(context, square, 1);
    int reached = 0;
    for (const int step : knight_steps) {
        const Square to = square + step;
        if (board_piece(board, to) == kEmpty && !enemy_pawn_attacks<kUs>(board, to)) {
            ++reached;
        }
    }
    ScorePair score = both(entry_at(kKnightMobility, reached * eval_weights.mobility.unit));
    const Square seen = kUs == kWhite ? square : square_flip_rows(square);
    const int outpost = kKnightOutpost[static_cast<std::size_t>(square64_of(seen))];
    if (outpost != 0 && !enemy_pawn_attacks<kUs>(board, square)) {
        score.opening += outpost * own_pawns_defending<kUs>(board, square);
    }
    return score;
}

template <Color kUs>
ScorePair bishop_score(PieceContext& context, Square square) {
    const Board& board = context.board;
    count_attacker<kUs>(context, square, 1);
    const Square ahead = square + pawn_step_of(kUs);
    const bool shut_in = board_piece(board, ahead - 1) == kEnemyPawn<kUs> &&
                         board_piece(board, ahead + 1) == kEnemyPawn<kUs>;
    const int reached = reached_squares(board, square, bishop_steps) * eval_weights.mobility.unit;
    return both(entry_at(kBishopMobility, reached + (shut_in ? 0 : 1)));
}

// Every rook pays half of the open file's bonus, so that only a file without own pawns gains.
template <Color kUs>
ScorePair rook_file_score(const Board& board, int column) {
    const MobilityWeights& weights = eval_weights.mobility;
    ScorePair score{-(weights.rook_open.opening / 2), -(weights.rook_open.endgame / 2)};
    const auto file = static_cast<std::size_t>(column);
    if (board.pawn_file[kUs][file] == 0) {
        score += weights.rook_half_open;
        if (board.pawn_file[color_opposite(kUs)][file] == 0) {
            score += weights.rook_open - weights.rook_half_open;
        }
    }
    return score;
}

template <Color kUs>
ScorePair rook_score(PieceContext& context, Square square) {
    const MobilityWeights& weights = eval_weights.mobility;
    count_attacker<kUs>(context, square, 2);
    const int reached = reached_squares(context.board, square, rook_steps) * weights.unit;
    const int column = square_column(square);
    ScorePair score =
        entry_at(kRookMobility, reached) + rook_file_score<kUs>(context.board, column);
    const int distance = std::abs(column - square_column(context.enemy_king));
    if (context.press_king && distance <= 1) {
        score.opening += distance == 0 ? weights.rook_on_king_file : weights.rook_near_king;
    }
    if (context.seventh_counts && relative_rank(square, kUs) == 7) {
        score += weights.rook_seventh;
    }
    return score;
}

template <Color kUs>
ScorePair queen_score(PieceContext& context, Square square) {
    count_attacker<kUs>(context, square, 4);
    const Square king = context.enemy_king;
    ScorePair score = both(kQueenNearKing - std::abs(square_row(square) - square_row(king)) -
                           std::abs(square_column(square) - square_column(king)));
    if (context.seventh_counts && relative_rank(square, kUs) == 7) {
        score += eval_weights.mobility.queen_seventh;
    }
    return score;
}

template <Color kUs>
ScorePair piece_score(PieceContext& context, Square square) {
    switch (piece_type_of(board_piece(context.board, square))) {
        case kKnight:
            return knight_score<kUs>(context, square);
        case kBishop:
            return bishop_score<kUs>(context, square);
        case kRook:
            return rook_score<kUs>(context, square);
        default:
            return queen_score<kUs>(context, square);
    }
}

template <Color kUs>
ScorePair evaluate_side(const Board& board, const PawnRecord& pawns, bool press_king) {
    constexpr Color kThem = color_opposite(kUs);
    const Square enemy_king = board_king(board, kThem);
    PieceContext context{
        .board = board,
        .enemy_king = enemy_king,
        .press_king = press_king,
        .seventh_counts = pawns.second_rank[kThem] != 0 || relative_rank(enemy_king, kThem) == 1,
        .attack = {},
    };
    ScorePair score;
    for (const Square square : board_officers(board, kUs)) {
        score += piece_score<kUs>(context, square);
    }
    score.opening += context.attack.weight * entry_at(kKingAttackScale, context.attack.count);
    return score;
}

}  // namespace

ScorePair evaluate_pieces(const Board& board, Color color, const PawnRecord& pawns,
                          bool press_king) {
    return color == kWhite ? evaluate_side<kWhite>(board, pawns, press_king)
                           : evaluate_side<kBlack>(board, pawns, press_king);
}

}  // namespace zar
