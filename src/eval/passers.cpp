#include "eval/passers.h"

#include <algorithm>
#include <bit>
#include <cstddef>

#include "board/exchange.h"
#include "board/geometry.h"
#include "board/move.h"
#include "board/piece.h"
#include "eval/rank_mask.h"
#include "eval/weights.h"

namespace zar {

namespace {

struct Passer {
    Color color;
    Square square;
    int rank;
    Square stop;       // the square in front
    Square promotion;  // the last square of its file
};

Passer passer_on(const Board& board, Color color, int column) {
    const Square square = most_advanced_pawn(board, color, column);
    return {
        .color = color,
        .square = square,
        .rank = relative_rank(square, color),
        .stop = square + pawn_step_of(color),
        .promotion = square_make(color == kWhite ? kLastLine : kFirstLine, column),
    };
}

// Does an own man, the king included, stand in the way?
bool is_blocked_by_own(const Board& board, const Passer& pawn) {
    const Square step = pawn_step_of(pawn.color);
    for (Square square = pawn.stop; square_is_on_board(square); square += step) {
        if ((board_piece(board, square) & color_bit(pawn.color)) != 0) {
            return true;
        }
    }
    return false;
}

// Would the pawn promote before the enemy king comes near?
bool outruns_king(const Board& board, const Passer& pawn) {
    const Color enemy = color_opposite(pawn.color);
    const int moves = 8 - pawn.rank;
    const int delay = board.turn == enemy ? 1 : 0;
    return king_distance_of(board_king(board, enemy), pawn.promotion) > moves + delay;
}

// Does the own king hold the promotion square and the pawn, without being shut in before it?
bool is_escorted(const Board& board, const Passer& pawn) {
    const Square king = board_king(board, pawn.color);
    const int column = square_column(pawn.square);
    const bool shut_in =
        (column == kFirstLine || column == kLastLine) && square_column(king) == column;
    return king_distance_of(king, pawn.promotion) <= 1 &&
           king_distance_of(king, pawn.square) <= 1 && !shut_in;
}

bool is_unstoppable(const Board& board, const Passer& pawn) {
    if (board_piece_count(board, color_opposite(pawn.color)) > 1) {
        return false;
    }
    return (!is_blocked_by_own(board, pawn) && outruns_king(board, pawn)) ||
           is_escorted(board, pawn);
}

// Can the pawn step forward without being lost?
bool can_step_safely(const Board& board, const Passer& pawn) {
    return board_piece(board, pawn.stop) == kEmpty &&
           see_at_least(move_make(pawn.square, pawn.stop), board, 0);
}

// What the endgame promises to the pawn once it has come far.
int endgame_promise(const Board& board, const Passer& pawn) {
    const PasserWeights& weights = eval_weights.passers;
    int promise = weights.max.endgame - weights.min.endgame;
    if (is_unstoppable(board, pawn)) {
        promise += weights.unstoppable;
    } else if (can_step_safely(board, pawn)) {
        promise += weights.free_stop;
    }
    const Square own_king = board_king(board, pawn.color);
    const Square enemy_king = board_king(board, color_opposite(pawn.color));
    promise += weights.enemy_king_step * king_distance_of(pawn.stop, enemy_king);
    promise -= weights.own_king_step * king_distance_of(pawn.stop, own_king);
    return std::max(promise, 0);
}

ScorePair passer_score(const Board& board, const Passer& pawn) {
    const PasserWeights& weights = eval_weights.passers;
    ScorePair score = {interpolate(weights.min.opening, weights.max.opening, pawn.rank),
                       weights.min.endgame};
    // On the first ranks no promise counts yet.
    if (kPasserRankFactor[static_cast<std::size_t>(pawn.rank)] > 0) {
        score.endgame += interpolate(0, endgame_promise(board, pawn), pawn.rank);
    }
    return score;
}

}  // namespace

ScorePair evaluate_passers(const Board& board, Color color, const PawnRecord& pawns) {
    ScorePair score;
    for (unsigned files = pawns.passed_files[static_cast<std::size_t>(color)]; files != 0;
         files &= files - 1) {
        const int column = kFirstLine + std::countr_zero(files);
        score += passer_score(board, passer_on(board, color, column));
    }
    return score;
}

}  // namespace zar
