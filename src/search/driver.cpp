#include "search/driver.h"

#include <algorithm>
#include <csetjmp>

#include "board/exchange.h"
#include "board/make.h"
#include "book/book.h"
#include "frontend/difficulty.h"
#include "frontend/option.h"
#include "search/budget.h"
#include "search/extend.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/node.h"
#include "search/order.h"
#include "search/parameters.h"
#include "search/workers.h"

namespace zar {

namespace {

constexpr int kAspirationDepth = 5;  // before it, the window is open
constexpr Score kFirstDelta = 16;
constexpr int kSingleMoveDepth = 4;  // a forced move is not worth a long search

struct Window {
    Score alpha;
    Score beta;
};

constexpr Window kOpenWindow = {-kMateScore, kMateScore};

// The window of a thread's iterations; the step grows at every miss and never shrinks.
struct Aspiration {
    Window window = kOpenWindow;
    Score delta = kFirstDelta;
};

// One search of the root moves.
struct Root {
    SearchThread& self;
    Window window;  // alpha is raised by good moves
    int depth;
    bool first_iteration;
    int thread;
    Score best = kNoScore;
    Line child_pv;
};

RootResult& current_result(SearchThread& self) {
    return self.result[static_cast<std::size_t>(self.pv_index)];
}

// Reports the current line, and judges its score, on the main thread.
void report_result(SearchThread& self, int thread) {
    search_shared.hooks.report_pv(thread);
    if (thread == 0) {
        const RootResult& result = current_result(self);
        budget_note_score(result.score, result.depth);
    }
}

void report_root_move(int thread) {
    if (thread == 0) {
        search_shared.hooks.report_currmove(thread);
    }
}

// A move other than the first is about to become the best.
void report_new_best(int thread) {
    if (thread == 0) {
        budget_note_new_best();
        search_shared.hooks.report_currmove(thread);
    }
}

// Earlier lines have taken their first moves.
bool belongs_to_earlier_line(const SearchThread& self, Move move) {
    return std::any_of(self.result.begin(), self.result.begin() + self.pv_index,
                       [&](const RootResult& result) { return result.pv[0] == move; });
}

// Depth left behind a root move; `ext` is set when a capture keeps its ply.
int root_child_depth(const Root& root, Move move, bool& ext) {
    Board& board = root.self.board;
    ext = false;
    if (move_is_check(move, board) || move_makes_passed_pawn(move, board) ||
        move_captures_into_ending(move, board)) {
        return root.depth;
    }
    ext = move_is_capture(move, board) && see_at_least(move, board, kExtensionExchange);
    return ext ? root.depth : root.depth - 1;
}

// Score of a root move: at first by a null window unless it is the first of its line.
Score root_move_score(Root& root, Move move) {
    SearchThread& self = root.self;
    bool ext = false;
    const int depth = root_child_depth(root, move, ext);
    const auto child = [&](Score beta, NodeType type) {
        return -search(self.board, -beta, -root.window.alpha, depth, 1, root.child_pv, type, ext,
                       root.thread);
    };
    UndoInfo undo;
    move_do(self.board, move, undo);
    Score value = 0;
    if (root.first_iteration || root.best == kNoScore) {
        value = child(root.window.beta, kPvNode);
    } else {
        value = child(root.window.alpha + 1, kCutNode);
        if (value > root.window.alpha) {
            report_new_best(root.thread);
            value = child(root.window.beta, kPvNode);
        }
    }
    move_undo(self.board, move, undo);
    return value;
}

void record_result(Root& root, Move move, Score value) {
    RootResult& result = current_result(root.self);
    result.best_move = move;
    result.score = value;
    result.bound = bound_of(value, root.window.alpha, root.window.beta);
    result.depth = root.depth;
    line_set(result.pv, move, root.child_pv);
    report_result(root.self, root.thread);
}

// Takes a score into account; true when it ends the search of the root.
bool note_root_score(Root& root, std::size_t index, Score value) {
    Window& window = root.window;
    const Score listed = std::clamp(value, window.alpha, window.beta);
    root.self.root.value[index] = static_cast<std::int16_t>(listed);
    if (value > root.best) {
        if (value > window.alpha || root.best == kNoScore) {
            record_result(root, root.self.root.move[index], value);
        }
        root.best = value;
    }
    if (value <= window.alpha) {
        return false;
    }
    const bool cut = value >= window.beta;
    if (!root.first_iteration) {
        window.alpha = value;
    }
    return cut;
}

bool can_follow(Board& board, const HashHit& hit) {
    MoveList legal;
    gen_legal_moves(legal, board);
    return move_is_ok(hit.move) && list_contains(legal, hit.move);
}

// Lengthens the line by what the table says of the positions behind it, and makes the table
// remember the line.
void extend_line(SearchThread& self) {
    Board& board = self.board;
    Line& pv = current_result(self).pv;
    UndoInfo undo;
    std::size_t length = 0;
    for (; pv[length] != kMoveNone; ++length) {
        hash_store(hash_table, board.key, pv[length], 0, kBoundLower, -kMateScore);
        move_do(board, pv[length], undo);
    }
    HashHit hit;
    while (length < pv.size() - 1 && !board_is_repetition(board) &&
           hash_probe(hash_table, board.key, hit) && can_follow(board, hit)) {
        pv[length++] = hit.move;
        move_do(board, hit.move, undo);
    }
    pv[length] = kMoveNone;
    board_copy(board, *search_shared.root_board);
}

Score search_root(Window window, int depth, bool first_iteration, int thread) {
    SearchThread& self = search_thread(thread);
    Root root{.self = self,
              .window = window,
              .depth = depth,
              .first_iteration = first_iteration,
              .thread = thread,
              .child_pv = {}};
    for (std::size_t i = 0; i < static_cast<std::size_t>(self.root.size); ++i) {
        const Move move = self.root.move[i];
        if (belongs_to_earlier_line(self, move)) {
            continue;
        }
        self.root_move = move;
        self.root_index = static_cast<int>(i);
        report_root_move(thread);
        const Score value = root_move_score(root, move);
        if (note_root_score(root, i, value)) {
            break;
        }
    }
    list_sort(self.root);
    if (root.best > window.alpha && root.best < window.beta) {
        extend_line(self);
    }
    return root.best;
}

// Searches the root with a window that is widened until it holds the score.
Score search_aspiring(Aspiration& aspiration, int depth, int thread) {
    if (depth < kAspirationDepth) {
        aspiration.window = kOpenWindow;
    }
    while (true) {
        Window& window = aspiration.window;
        const Score score = search_root(window, depth, depth == 1, thread);
        if (score_is_mate(score) || (score > window.alpha && score < window.beta)) {
            window = {score - aspiration.delta, score + aspiration.delta};
            return score;
        }
        if (score >= window.beta) {
            window.beta += aspiration.delta;
        } else {
            window.alpha -= aspiration.delta;
        }
        aspiration.delta *= 2;
    }
}

// Searches one line of an iteration on the main thread; true when the search ends with it.
bool search_line(Aspiration& aspiration, int depth, int line) {
    SearchThread& self = search_thread(0);
    budget_line_started();
    self.pv_index = line;
    board_copy(self.board, *search_shared.root_board);
    const Score score = search_aspiring(aspiration, depth, 0);
    elapsed_update(0);
    report_result(self, 0);
    self.abort_allowed = true;
    if (depth == 1 && line == 0) {
        budget_note_first_iteration(self.root);
    }
    return budget_line_done(score, depth, line == search_shared.last_pv_index);
}

// The main thread searches all lines and applies the stop rules.
void iterate_main() {
    SearchThread& self = search_thread(0);
    Aspiration aspiration;
    const int limit = difficulty_depth_limit(search_parameters.level, 0);
    for (int depth = 1; depth < limit; ++depth) {
        self.iteration_depth = depth;
        for (int line = 0; line <= search_shared.last_pv_index; ++line) {
            if (search_line(aspiration, depth, line)) {
                return;
            }
        }
    }
}

// A worker searches the first line until it is told to stop.
void iterate_worker(int thread) {
    SearchThread& self = search_thread(thread);
    Aspiration aspiration;
    const int limit = difficulty_depth_limit(search_parameters.level, thread);
    for (int depth = 1; depth < limit && !self.stop.load(std::memory_order_relaxed); ++depth) {
        self.iteration_depth = depth;
        board_copy(self.board, *search_shared.root_board);
        static_cast<void>(search_aspiring(aspiration, depth, thread));
    }
}

void prepare_thread(int thread) {
    SearchThread& self = search_thread(thread);
    self.root = search_shared.root_moves;
    board_copy(self.board, *search_shared.root_board);
    stopwatch_reset(self.stopwatch);
    stopwatch_start(self.stopwatch, search_shared.limits.start_time);
    search_tables_clear(thread);
    self.reduce_one = search_parameters.reduce_one;
    HashHit hit{};
    const bool found = hash_probe(hash_table, self.board.key, hit);
    order_root_moves(self.root, self.board, found ? hit.move : kMoveNone, thread);
}

void clear_results() {
    for (SearchThread& thread : search_threads) {
        for (RootResult& result : thread.result) {
            result = RootResult{};
            result.score = kNoScore;
        }
        thread.pv_index = 0;
    }
}

// The book answers for the engine, except at low levels and when the search is to go on until
// "stop".
bool play_from_book(Board& board) {
    const SearchLimits& limits = search_shared.limits;
    if (!option_get_bool("Own Book") || limits.limit_infinite || limits.only_moves.size > 0 ||
        !difficulty_allows_book(difficulty_level())) {
        return false;
    }
    const Move move = book_probe(opening_book, board);
    if (move == kMoveNone) {
        return false;
    }
    RootResult& result = search_thread(0).result[0];
    result.best_move = move;
    result.score = 0;
    result.pv[0] = move;
    return true;
}

// A search that was abandoned before any thread had searched a move to the end plays the first move
// in the order of the root.
void ensure_result() {
    for (int thread = 0; thread < search_shared.thread_count; ++thread) {
        if (search_thread(thread).result[0].best_move != kMoveNone) {
            return;
        }
    }
    SearchThread& self = search_thread(0);
    RootResult& result = self.result[0];
    result = {
        .best_move = self.root.move[0], .score = 0, .bound = kBoundNone, .depth = 1, .pv = {}};
    result.pv[0] = result.best_move;
}

}  // namespace

void thread_search(int thread) {
    // An abandoned search comes back here; nothing local is used after that.
    if (setjmp(search_thread(thread).return_point) == 0) {
        prepare_thread(thread);
        if (thread == 0) {
            iterate_main();
        } else {
            iterate_worker(thread);
        }
    }
    elapsed_update(thread);
    stopwatch_stop(search_thread(thread).stopwatch);
}

const RootResult& search_result(int thread) {
    const auto& results = search_thread(thread).result;
    const RootResult* first = &results[0];
    for (const RootResult& line : results) {
        if (line.depth == results[0].depth && line.score > first->score) {
            first = &line;
        }
    }
    return *first;
}

void search_run(Board& board) {
    clear_results();
    if (play_from_book(board)) {
        return;
    }
    search_shared.root_board = &board;
    gen_legal_moves(search_shared.root_moves, board);
    SearchLimits& limits = search_shared.limits;
    if (search_shared.root_moves.size < 2) {
        limits.limit_depth_set = true;
        limits.limit_depth = kSingleMoveDepth;
    }
    if (limits.only_moves.size > 0) {
        search_shared.root_moves = limits.only_moves;
    }
    const int moves = search_shared.root_moves.size;
    search_shared.last_pv_index = std::min(option_get_bounded("MultiPV"), moves) - 1;
    hash_new_search(hash_table);
    if (moves == 0) {
        return;
    }
    search_parameters_setup();
    threads_start_search();
    thread_search(0);
    threads_stop_search();
    ensure_result();
}

}  // namespace zar
