#include "search/quiesce.h"

#include <algorithm>

#include "board/attack.h"
#include "board/make.h"
#include "eval/draws.h"
#include "eval/eval.h"
#include "eval/pawns.h"
#include "search/budget.h"
#include "search/hash.h"
#include "search/order.h"
#include "search/parameters.h"

namespace zar {

namespace {

// In what is stored the quiescence search has no depth.
constexpr int kQuiescenceDraft = 0;

struct QNode {
    Board& board;
    Line& pv;
    Attack& attack;
    Score alpha;
    Score beta;
    Score alpha_at_entry;  // the caller's, before mate distance and stand-pat
    int qdepth;
    int ply;
    int thread;
    Score best;
    Score delta_base;  // stand-pat score plus margin; not looked at in check
    Move best_move;
};

void store(const QNode& node, Move move, int bound, Score value) {
    hash_store(hash_table, node.board.key, move, kQuiescenceDraft, bound,
               value_to_hash(value, node.ply));
}

bool hash_cuts(const Board& board, Score alpha, Score beta, int ply, Score& score) {
    HashHit hit;
    if (!hash_probe(hash_table, board.key, hit)) {
        return false;
    }
    score = value_from_hash(hit.value, ply);
    const bool null_window = beta == alpha + 1;
    return (null_window && hit.bound == kBoundExact && score != kNoScore) ||
           ((hit.bound & kBoundLower) != 0 && score >= beta) ||
           ((hit.bound & kBoundUpper) != 0 && score <= alpha);
}

// A bare king in a corner that cannot move: the stalemate that matters and is cheap to see.
bool is_cornered_stalemate(const Board& board) {
    const Square king = board_king(board, board.turn);
    if (board_piece_count(board, board.turn) != 1 || board_pawn_count(board, board.turn) != 0 ||
        (king != kA1 && king != kH1 && king != kA8 && king != kH8)) {
        return false;
    }
    const Color enemy = color_opposite(board.turn);
    return std::none_of(king_steps.begin(), king_steps.end(), [&](int step) {
        const Piece target = board_piece(board, king + step);
        return (target == kEmpty || (target & color_bit(enemy)) != 0) &&
               !is_attacked(board, king + step, enemy);
    });
}

// What calm means before any move is tried; true when the score is final.
bool stand_pat(QNode& node, Score& score) {
    if (is_cornered_stalemate(node.board)) {
        score = 0;
        return true;
    }
    score = evaluate(node.board, node.alpha, node.beta, node.thread);
    if (score >= node.beta) {
        store(node, kMoveNone, kBoundLower, score);
        return true;
    }
    node.alpha = std::max(node.alpha, score);
    node.best = score;
    node.delta_base = score + search_parameters.delta_margin;
    return false;
}

// May this move be skipped when even winning its victim for nothing does not reach alpha? Never a
// promotion: those are pawn moves to the last rank.
bool delta_applies(const QNode& node, Move move) {
    Board& board = node.board;
    if (!search_parameters.delta_pruning || node.beta != node.alpha_at_entry + 1 ||
        node.attack.count > 0) {
        return false;
    }
    constexpr int kSecondRow = kFirstLine + 1;
    constexpr int kSeventhRow = kLastLine - 1;
    const int to_row = square_relative_row(move_to(move), board.turn);
    const Piece piece = board_piece(board, move_from(move));
    const Piece captured = move_captured(move, board);
    if (piece_is_pawn(piece) && to_row >= kSeventhRow) {
        return false;
    }
    // An enemy pawn on the mover's second rank is about to promote.
    if (piece_type_of(captured) == kQueen || (piece_is_pawn(captured) && to_row <= kSecondRow)) {
        return false;
    }
    return !move_is_check(move, board);
}

Score optimistic_value(const QNode& node, Move move) {
    return node.delta_base + piece_value_of(move_captured(move, node.board));
}

// Would delta_prunes skip this capture and learn nothing from it? Asked before the costly tests of
// exchange and legality: many captures need neither.
bool is_pointless(const QNode& node, Move move) {
    const Score optimistic = optimistic_value(node, move);
    return optimistic <= node.alpha && optimistic <= node.best && delta_applies(node, move);
}

// Skips a capture that cannot reach alpha, keeping its optimistic value as a bound.
bool delta_prunes(QNode& node, Move move) {
    const Score optimistic = optimistic_value(node, move);
    if (optimistic > node.alpha || !delta_applies(node, move)) {
        return false;
    }
    if (optimistic > node.best) {
        node.best = optimistic;
        node.pv[0] = kMoveNone;
    }
    return true;
}

Score search_move(QNode& node, Move move, Line& child_pv) {
    UndoInfo undo;
    move_do(node.board, move, undo);
    count_node(node.ply + 1, node.thread);
    child_pv[0] = kMoveNone;
    const Score value = is_draw(node.board, node.thread)
                            ? 0
                            : -qsearch(node.board, -node.beta, -node.alpha, node.qdepth - 1,
                                       node.ply + 1, child_pv, node.thread);
    move_undo(node.board, move, undo);
    return value;
}

Score search_moves(QNode& node) {
    const bool include_checks = node.qdepth >= search_thread(node.thread).check_plies_limit;
    Picker picker;
    qpicker_init(picker, node.board, node.attack, include_checks, node.thread);
    Line child_pv;
    const auto skip = [&node](Move move) { return is_pointless(node, move); };
    while (const Move move = next_qmove(picker, skip, node.thread)) {
        if (delta_prunes(node, move)) {
            continue;
        }
        const Score value = search_move(node, move, child_pv);
        if (value > node.best) {
            node.best = value;
            line_set(node.pv, move, child_pv);
        }
        if (value <= node.alpha) {
            continue;
        }
        if (value >= node.beta) {
            store(node, move, kBoundLower, value);
            return value;
        }
        node.alpha = value;
        node.best_move = move;
    }
    if (node.best == kNoScore) {
        return node.ply - kMateScore;
    }
    const Bound bound = node.best > node.alpha_at_entry ? kBoundExact : kBoundUpper;
    store(node, node.best_move, bound, node.best);
    return node.best;
}

}  // namespace

bool is_draw(Board& board, int thread) {
    return board_is_repetition(board) || is_recognised_draw(board, thread);
}

bool mate_distance_cuts(Board& board, Score& alpha, Score& beta, int ply, Score& score) {
    // Nearly always no mate is in sight, however deep the node.
    static_assert(kMaxPly + 1 - kMateScore <= -kMateBound + 1);
    if (alpha > -kMateBound && beta < kMateBound) {
        return false;
    }
    Score lower = ply + 2 - kMateScore;
    if (alpha < lower && board_is_mate(board)) {
        lower = ply - kMateScore;
    }
    if (alpha < lower) {
        alpha = lower;
        if (beta <= lower) {
            score = lower;
            return true;
        }
    }
    const Score upper = kMateScore - 1 - ply;
    if (upper < beta) {
        beta = upper;
        if (upper <= alpha) {
            score = upper;
            return true;
        }
    }
    return false;
}

Score qsearch(Board& board, Score alpha, Score beta, int qdepth, int ply, Line& pv_out,
              int thread) {
    const Score alpha_at_entry = alpha;
    Score score = 0;
    pawns_prefetch(board, thread);
    if (mate_distance_cuts(board, alpha, beta, ply, score) ||
        hash_cuts(board, alpha, beta, ply, score)) {
        return score;
    }
    Attack attack;
    attack_set(attack, board);
    if (ply > kLastPly) {
        return evaluate(board, alpha, beta, thread);
    }
    QNode node{.board = board,
               .pv = pv_out,
               .attack = attack,
               .alpha = alpha,
               .beta = beta,
               .alpha_at_entry = alpha_at_entry,
               .qdepth = qdepth,
               .ply = ply,
               .thread = thread,
               .best = kNoScore,
               .delta_base = 0,
               .best_move = kMoveNone};
    if (node.attack.count > 0) {
        node.qdepth += 1;
    } else if (stand_pat(node, score)) {
        return score;
    }
    return search_moves(node);
}

}  // namespace zar
