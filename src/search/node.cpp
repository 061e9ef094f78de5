#include "search/node.h"

#include <algorithm>
#include <limits>

#include "board/attack.h"
#include "board/exchange.h"
#include "board/key.h"
#include "board/make.h"
#include "eval/draws.h"
#include "eval/eval.h"
#include "eval/pawns.h"
#include "search/budget.h"
#include "search/endgame.h"
#include "search/extend.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/order.h"
#include "search/parameters.h"
#include "search/quiesce.h"

namespace zar {

namespace {

constexpr int kRazorDepth = 3;
constexpr Score kRazorMargin = 300;
constexpr Score kRazorMarginPerPly = 39;
constexpr int kDeepeningDepth = 3;  // least depth for internal iterative deepening
constexpr int kHistoryPruningDepth = 6;
constexpr int kFutilityDepth = 5;
constexpr int kReductionDepth = 3;  // least depth and least number of moves searched
constexpr int kReductionMoves = 3;

struct Node {
    Board& board;
    Score alpha;
    Score beta;
    int depth;
    int ply;
    Line& pv;
    NodeType type;
    bool ext_flag;
    int thread;
    Attack& attack;  // the checkers of the side to move
    bool in_check;
    bool hash_found;
    HashHit hash;
    Move hash_move;
    Estimates estimates;
};

// Stands above all scores for one that has not been asked for.
constexpr Score kNotAsked = std::numeric_limits<Score>::max();

// The state of a node's loop over its moves.
struct MoveLoop {
    Picker picker;
    Line child_pv;
    Score best = kNoScore;
    Score alpha;  // raised by good moves
    Move best_move = kMoveNone;
    int history_threshold;  // of kHistoryRatioOne
    int searched_count = 0;
    std::array<Move, kMaxMoves> searched;
    bool first_reduction_pending = true;
    Score futility_value = kNotAsked;
};

void enter_node(int ply, Line& pv_out, int thread) {
    count_node(ply, thread);
    pv_out[0] = kMoveNone;
}

void store(const Node& node, Move move, int bound, Score value) {
    hash_store(hash_table, node.board.key, move, node.depth, bound, value_to_hash(value, node.ply));
}

// Enters the node and resolves it by captures.
Score calm_score(Board& board, Score alpha, Score beta, int ply, Line& pv_out, int thread) {
    enter_node(ply, pv_out, thread);
    return is_draw(board, thread) ? 0 : qsearch(board, alpha, beta, 0, ply, pv_out, thread);
}

Score search_node(Board& board, Score alpha, Score beta, int depth, int ply, Line& pv_out,
                  NodeType node_type, bool ext_flag, int thread);

// Searches a position or, at the horizon, resolves it by captures. Two of five nodes are there and
// need nothing of what the others do: made part of the callers, this saves 17 instructions a node.
[[gnu::always_inline]] inline Score search_child(Board& board, Score alpha, Score beta, int depth,
                                                 int ply, Line& pv_out, NodeType node_type,
                                                 bool ext_flag, int thread) {
    if (depth < 1) {
        SearchThread& self = search_thread(thread);
        self.check_plies_limit = (node_type != kPvNode ? 1 : 0) - self.reduce_one;
        return calm_score(board, alpha, beta, ply, pv_out, thread);
    }
    return search_node(board, alpha, beta, depth, ply, pv_out, node_type, ext_flag, thread);
}

void probe_hash(Node& node) {
    node.hash_found = hash_probe(hash_table, node.board.key, node.hash);
    node.hash_move = node.hash_found ? node.hash.move : kMoveNone;
}

// A stored result that is deep enough, or a mate score on the right side, settles the node. Of this
// and the other ways to be done early, `score` counts where they give true.
bool hash_cuts(const Node& node, Score& score) {
    if (!node.hash_found || node.type == kPvNode) {
        return false;
    }
    int bound = node.hash.bound;
    if (node.hash.depth < node.depth) {
        if (node.hash.value < -kMateBound && (bound & kBoundUpper) != 0) {
            bound = kBoundUpper;
        } else if (node.hash.value > kMateBound && (bound & kBoundLower) != 0) {
            bound = kBoundLower;
        } else {
            return false;
        }
    }
    score = value_from_hash(node.hash.value, node.ply);
    return bound == kBoundExact || ((bound & kBoundLower) != 0 && score >= node.beta) ||
           ((bound & kBoundUpper) != 0 && score <= node.alpha);
}

// The evaluation. Razoring asks for it first, and futility pruning often for the same again: 7
// instructions a node less than by evaluating twice.
Score node_score(Node& node, Score alpha, Score beta) {
    return evaluate_once(node.estimates, node.board, alpha, beta, node.thread);
}

bool null_move_is_tried(Node& node) {
    const SearchParameters& parameters = search_parameters;
    const int reduced_depth = node.depth - parameters.null_reduction - 1;
    if (!parameters.null_enabled || node.depth < 2 || node.type == kPvNode || node.in_check ||
        score_is_mate(node.beta) || board_piece_count(node.board, node.board.turn) < 2) {
        return false;
    }
    // The table already knows that the reduced search will not reach beta.
    if (node.hash_found && (node.hash.bound & kBoundUpper) != 0 &&
        node.hash.depth >= reduced_depth &&
        value_from_hash(node.hash.value, node.ply) < node.beta) {
        return false;
    }
    return !parameters.null_fail_high || node.depth <= parameters.null_reduction + 1 ||
           node_score(node, node.alpha, node.beta) >= node.beta;
}

// Confirms a null-move cut-off by a reduced search of the real moves, against zugzwang.
bool verify_null_move(Node& node, Score& best) {
    const int depth = node.depth - search_parameters.verify_reduction;
    Picker picker;
    picker_init(picker, node.board, node.attack, node.ply, node.hash_move, node.thread);
    Score alpha = node.alpha;
    best = kNoScore;
    Move best_move = kMoveNone;
    Line child_pv;
    while (const Move move = next_move(picker, node.thread)) {
        const bool extended =
            move_is_check(move, node.board) && see_at_least(move, node.board, kExtensionExchange);
        UndoInfo undo;
        move_do(node.board, move, undo);
        const Score value = -search(node.board, -node.beta, -alpha, extended ? depth : depth - 1,
                                    node.ply + 1, child_pv, kAllNode, false, node.thread);
        move_undo(node.board, move, undo);
        if (value > best) {
            best = value;
            line_set(node.pv, move, child_pv);
        }
        if (value > alpha) {
            best_move = move;
            alpha = value;
            if (value >= node.beta) {
                break;
            }
        }
    }
    if (best == kNoScore) {
        best = 0;
    }
    if (best < node.beta) {
        return false;
    }
    if (best_move != kMoveNone) {
        history_cutoff(best_move, node.board, node.depth, node.ply, node.thread);
        history_good(best_move, node.board, node.thread);
    }
    store(node, best_move, kBoundLower, best);
    return true;
}

// A side that may pass and still stands well enough will do so with a real move, too.
bool null_move_cuts(Node& node, Score& score) {
    if (!null_move_is_tried(node)) {
        return false;
    }
    const SearchParameters& parameters = search_parameters;
    Line child_pv;
    UndoInfo undo;
    move_do_null(node.board, undo);
    const Score value =
        -search(node.board, -node.beta, 1 - node.beta, node.depth - parameters.null_reduction - 1,
                node.ply + 1, child_pv, -node.type, false, node.thread);
    move_undo_null(node.board, undo);
    if (value < node.beta) {
        return false;
    }
    constexpr int kEndgamePieces = 3;
    const bool many_pieces = board_piece_count(node.board, node.board.turn) > kEndgamePieces;
    if (!parameters.verify_enabled || node.depth <= parameters.verify_reduction ||
        (parameters.verify_endgame_only && many_pieces)) {
        score = std::min(value, kMateBound);
        store(node, kMoveNone, kBoundLower, score);
        return true;
    }
    return verify_null_move(node, score);
}

// A position far below beta with little depth left is hopeless unless captures say otherwise.
bool razoring_cuts(Node& node, Score& score) {
    if (node.type == kPvNode || node.in_check || node.depth > kRazorDepth ||
        node.hash_move != kMoveNone) {
        return false;
    }
    const Score target = node.beta - kRazorMargin + (1 - node.depth) * kRazorMarginPerPly;
    if (node_score(node, target - 1, target) >= target) {
        return false;
    }
    score = calm_score(node.board, target - 1, target, node.ply, node.pv, node.thread);
    return score < target;
}

// Finds a move to begin with by a shallower search of the same node.
void deepen_internally(Node& node) {
    if (node.type != kPvNode || node.depth < kDeepeningDepth || node.hash_move != kMoveNone) {
        return;
    }
    const int depth = node.depth / 2;
    const Score value = search(node.board, node.alpha, node.beta, depth, node.ply, node.pv, kPvNode,
                               false, node.thread);
    if (value <= node.alpha) {
        // Only the variation is of interest.
        static_cast<void>(search(node.board, -kMateScore, node.beta, depth, node.ply, node.pv,
                                 kPvNode, false, node.thread));
    }
    node.hash_move = node.pv[0];
}

// From here on kPv tells whether the node is one of the principal variation. Few are: the others,
// spared the question at every step, need 10 instructions a node less.

// Is the move to be searched without losing a ply? `ext` is set when that is for a capture.
template <bool kPv>
bool move_is_extended(const Node& node, const Picker& picker, Move move, bool& ext) {
    Board& board = node.board;
    ext = false;
    if (kPv && move_captures_into_ending(move, board)) {
        return true;
    }
    if (node.in_check && picker_evasion_count(picker) == 1) {
        return true;
    }
    if (move_is_check(move, board) && (kPv || see_at_least(move, board, kExtensionExchange))) {
        return true;
    }
    if (kPv && move_makes_passed_pawn(move, board)) {
        return true;
    }
    ext = kPv && !node.ext_flag && board_piece(board, move_to(move)) != kEmpty &&
          see_at_least(move, board, kExtensionExchange);
    return ext;
}

int history_threshold(int depth) {
    return 2 * search_parameters.history_threshold / (depth + (depth & 1));
}

// Has the quiet move failed too often elsewhere to be worth a look here? Most such moves have been
// passed over as pointless: what comes here is a check that loses.
template <bool kPv>
bool history_prunes(const Node& node, const MoveLoop& loop, Move move) {
    return !kPv && node.depth <= kHistoryPruningDepth && loop.searched_count > node.depth &&
           picker_is_quiet(loop.picker) &&
           history_is_below(loop.history_threshold, move, node.board, node.thread) &&
           !move_makes_passed_pawn(move, node.board);
}

Score futility_value(Node& node, const MoveLoop& loop) {
    const Score margin = node.depth == 1
                             ? search_parameters.futility_margin
                             : search_parameters.futility_extension + 100 * (node.depth & 1);
    return node_score(node, loop.alpha - margin, loop.alpha) + margin;
}

// Can a quiet move not lift the evaluation to alpha any more?
template <bool kPv>
bool futility_prunes(Node& node, MoveLoop& loop, Move move) {
    if (!search_parameters.futility_enabled || node.depth > kFutilityDepth || kPv ||
        node.in_check || move_is_tactical(move, node.board) ||
        move_makes_passed_pawn(move, node.board)) {
        return false;
    }
    if (loop.futility_value == kNotAsked) {
        loop.futility_value = futility_value(node, loop);
    }
    if (loop.futility_value > loop.alpha) {
        return false;
    }
    if (loop.futility_value > loop.best) {
        loop.best = loop.futility_value;
        node.pv[0] = kMoveNone;
    }
    return true;
}

// Would a quiet move be pruned and change nothing? Asked before the costly tests: at the least
// depths this is the lot of most moves. 16 instructions a node less.
template <bool kPv>
bool is_pointless(const Node& node, const MoveLoop& loop, Move move) {
    if (kPv) {
        return false;
    }
    // The first one pruned has left its value in `best`, or a better one has come since.
    const bool futile = loop.futility_value <= loop.alpha;
    const bool is_poor =
        futile || (node.depth <= kHistoryPruningDepth && loop.searched_count > node.depth &&
                   history_is_below(loop.history_threshold, move, node.board, node.thread));
    return is_poor && !move_is_check(move, node.board) && !move_makes_passed_pawn(move, node.board);
}

// Plies by which a late move is searched less deep at first.
template <bool kPv>
int late_move_reduction(const Node& node, MoveLoop& loop, Move move) {
    if (!search_parameters.history_reduction_enabled || node.in_check ||
        node.depth < kReductionDepth || loop.searched_count < kReductionMoves ||
        (loop.first_reduction_pending && move_is_tactical(move, node.board)) ||
        move_makes_passed_pawn(move, node.board)) {
        return 0;
    }
    loop.first_reduction_pending = false;
    return reduction_of(kPv, node.depth, loop.searched_count);
}

// Searches the position after the move, which has been made.
template <bool kPv>
Score child_score(const Node& node, MoveLoop& loop, int depth, int reduction, bool ext) {
    const auto child = [&](Score alpha, Score beta, int child_depth, NodeType type) {
        return -search_child(node.board, -beta, -alpha, child_depth, node.ply + 1, loop.child_pv,
                             type, ext, node.thread);
    };
    const Score alpha = loop.alpha;
    const Score beta = node.beta;
    if (!kPv || loop.best == kNoScore) {
        const Score value = child(alpha, beta, depth - reduction, -node.type);
        return value >= beta && reduction > 0 ? child(alpha, beta, depth, -node.type) : value;
    }
    Score value = child(alpha, alpha + 1, depth - reduction, kCutNode);
    if (value > alpha && reduction > 0) {
        value = child(alpha, beta, depth - reduction, kPvNode);
        if (value >= beta) {
            value = child(alpha, beta, depth, kPvNode);
        }
    } else if (value > alpha) {
        value = child(alpha, beta, depth, kPvNode);
    }
    return value;
}

Score cut_off(const Node& node, const MoveLoop& loop) {
    const Move move = loop.best_move;
    history_cutoff(move, node.board, node.depth, node.ply, node.thread);
    if (!move_is_tactical(move, node.board)) {
        for (int i = 0; i < loop.searched_count - 1; ++i) {
            history_bad(loop.searched[static_cast<std::size_t>(i)], node.board, node.thread);
        }
        history_good(move, node.board, node.thread);
    }
    store(node, move, kBoundLower, loop.best);
    return loop.best;
}

Score no_cut_off(const Node& node, const MoveLoop& loop) {
    if (loop.best == kNoScore) {
        return node.in_check ? node.ply - kMateScore : 0;
    }
    if (loop.best_move != kMoveNone) {
        history_cutoff(loop.best_move, node.board, node.depth, node.ply, node.thread);
    }
    store(node, loop.best_move, bound_of(loop.best, node.alpha, node.beta), loop.best);
    return loop.best;
}

template <bool kPv>
Score search_moves(Node& node) {
    MoveLoop loop;
    loop.alpha = node.alpha;
    loop.history_threshold = history_threshold(node.depth);
    picker_init(loop.picker, node.board, node.attack, node.ply, node.hash_move, node.thread);
    const auto skip = [&](Move move) { return is_pointless<kPv>(node, loop, move); };
    while (const Move move = next_move(loop.picker, skip, node.thread)) {
        bool ext = false;
        const bool extended = move_is_extended<kPv>(node, loop.picker, move, ext);
        int reduction = 0;
        if (!extended) {
            if (history_prunes<kPv>(node, loop, move) || futility_prunes<kPv>(node, loop, move)) {
                continue;
            }
            reduction = late_move_reduction<kPv>(node, loop, move);
        }
        UndoInfo undo;
        move_do(node.board, move, undo);
        const int depth = extended ? node.depth : node.depth - 1;
        const Score value = child_score<kPv>(node, loop, depth, reduction, ext);
        move_undo(node.board, move, undo);
        loop.searched[static_cast<std::size_t>(loop.searched_count++)] = move;
        if (value > loop.best) {
            loop.best = value;
            line_set(node.pv, move, loop.child_pv);
        }
        if (value > loop.alpha) {
            loop.best_move = move;
            loop.alpha = value;
            if (value >= node.beta) {
                return cut_off(node, loop);
            }
        }
        if (!kPv && node.type == kCutNode) {
            node.type = kAllNode;
        }
    }
    return no_cut_off(node, loop);
}

// A node above the horizon, with a depth of 1 or more.
Score search_node(Board& board, Score alpha, Score beta, int depth, int ply, Line& pv_out,
                  NodeType node_type, bool ext_flag, int thread) {
    // Draws, known endings and mate distance.
    enter_node(ply, pv_out, thread);
    if (board_is_repetition(board)) {
        return 0;
    }
    Score score = 0;
    if (probe_endgame(board, ply, score, thread)) {
        return score;
    }
    if (is_recognised_draw(board, thread)) {
        return 0;
    }
    if (mate_distance_cuts(board, alpha, beta, ply, score)) {
        return score;
    }
    // The transposition table.
    Attack attack;
    Node node{.board = board,
              .alpha = alpha,
              .beta = beta,
              .depth = depth,
              .ply = ply,
              .pv = pv_out,
              .type = node_type,
              .ext_flag = ext_flag,
              .thread = thread,
              .attack = attack,
              .in_check = false,
              .hash_found = false,
              .hash = {},
              .hash_move = kMoveNone,
              .estimates = {}};
    pawns_prefetch(board, thread);
    hash_prefetch(hash_table, board.key ^ random64[kTurnKeyIndex]);  // for the null move
    probe_hash(node);
    if (hash_cuts(node, score)) {
        return score;
    }
    if (ply > kLastPly) {
        return evaluate(board, alpha, beta, thread);
    }
    // The stored move may be one of another position.
    if (board_piece(board, move_from(node.hash_move)) != kEmpty) {
        hash_prefetch(hash_table, key_after(board, node.hash_move));
    }
    attack_set(node.attack, board);
    node.in_check = node.attack.count > 0;
    // Ways to be done without looking at the moves.
    if (null_move_cuts(node, score) || razoring_cuts(node, score)) {
        return score;
    }
    deepen_internally(node);
    return node.type == kPvNode ? search_moves<true>(node) : search_moves<false>(node);
}

}  // namespace

Score search(Board& board, Score alpha, Score beta, int depth, int ply, Line& pv_out,
             NodeType node_type, bool ext_flag, int thread) {
    return search_child(board, alpha, beta, depth, ply, pv_out, node_type, ext_flag, thread);
}

}  // namespace zar
