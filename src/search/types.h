// The records of a search: its limits, what each thread owns, the results at the root, and the
// hooks through which the search speaks to the front end.
#pragma once

#include <array>
#include <atomic>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "board/board.h"
#include "board/move.h"
#include "board/movegen.h"
#include "board/types.h"
#include "platform/memory.h"
#include "search/stopwatch.h"

namespace zar {

constexpr int kMaxThreads = 4;
constexpr int kMaxMultiPv = 4;
constexpr int kMaxPly = 256;
constexpr int kLastPly = kMaxPly - 2;  // deeper nodes are evaluated, not searched

// Scores are centipawns for the side to move. Being mated at ply p is p - kMateScore; anything
// beyond kMateBound is a mate score.
constexpr Score kMateScore = 30000;
constexpr Score kMateBound = 29744;
constexpr Score kNoScore = -32767;  // no move searched yet

[[nodiscard]] constexpr bool score_is_mate(Score score) noexcept {
    return score > kMateBound || score < -kMateBound;
}

// Which side of the true score a stored or reported score is on. Tested bit by bit.
enum Bound : std::uint8_t {
    kBoundNone = 0,
    kBoundUpper = 1,  // the true score is at most this
    kBoundLower = 2,  // the true score is at least this
    kBoundExact = 3,
};

// Where a score stands to a window.
[[nodiscard]] constexpr Bound bound_of(Score score, Score alpha, Score beta) noexcept {
    if (score <= alpha) {
        return kBoundUpper;
    }
    return score >= beta ? kBoundLower : kBoundExact;
}

// A principal variation, ended by kMoveNone.
using Line = std::array<Move, kMaxPly>;

// line = move, then the rest.
inline void line_set(Line& line, Move move, const Line& rest) noexcept {
    line[0] = move;
    std::size_t i = 0;
    while (i + 2 < line.size() && rest[i] != kMoveNone) {
        line[i + 1] = rest[i];
        ++i;
    }
    line[i + 1] = kMoveNone;
}

// What "go" asks for. Set by the front end before a search; "ponderhit" clears `limit_infinite`
// during one, on the main thread.
struct SearchLimits {
    bool limit_infinite;   // limits of time, depth and nodes do not apply
    bool limit_depth_set;  // `limit_depth` applies
    int limit_depth;       // last iteration, in plies
    bool limit_time_set;   // the two times apply
    double time_target;    // seconds, normal thinking time for this move
    double time_limit;     // seconds, hard maximum
    double start_time;     // seconds of the wall clock; search_reset sets it to now
    // Of strict mode only.
    bool limit_nodes_set;       // `limit_nodes` applies
    std::uint64_t limit_nodes;  // the search ends when it is seen to have visited as many
    MoveList only_moves;        // the root moves to search; all when there are none
};

// Result of one line at the root.
struct RootResult {
    Move best_move;
    Score score;
    Bound bound;
    int depth;
    Line pv;
};

constexpr int kHistorySize = kPieceKindCount * 64;

// Everything that one search thread writes while it searches. No two records share a cache line, so
// that no thread waits for what another one writes.
struct alignas(kCacheLine) SearchThread {
    // Copied or cleared at the start of every search.
    Board board;
    MoveList root;  // root moves, best first, with their scores
    std::array<RootResult, kMaxMultiPv> result;
    std::array<std::array<Move, 2>, kMaxPly> killers;
    // Indexed by piece12 * 64 + target Square64.
    std::array<std::uint16_t, kHistorySize> history;          // depth-squared credit
    std::array<std::uint16_t, kHistorySize> history_success;  // quiet move was the best one
    std::array<std::uint16_t, kHistorySize> history_tried;    // ... was searched before a cut-off
    std::uint64_t nodes;
    int selective_depth;  // highest ply reached
    int iteration_depth;
    int pv_index;           // which of the MultiPV lines is being searched
    int root_index;         // place of the root move being searched among all, from 0 ...
    Move root_move;         // ... and the move itself
    bool abort_allowed;     // the first iteration is complete
    int reduce_one;         // how many plies more try quiet checks in quiescence, from the options
    int check_plies_limit;  // quiet checks are tried in quiescence plies not below this
    int poll_countdown;
    double hashfull_time;  // elapsed seconds when the hash fill was last printed by the poll
    Stopwatch stopwatch;
    double elapsed;  // seconds, as of the last look at the stopwatch
    // Where an abandoned search returns to.
    std::jmp_buf return_point;
    // Written by the command thread, polled by this one.
    std::atomic<bool> stop;
};

// How stable the main thread's search looks; steers the use of time. Main thread only.
struct RootStability {
    bool score_dropped;       // a reported score is well below the one accepted before
    bool score_dropped_last;  // ... in the line completed before
    bool best_changed;        // a move other than the first has raised alpha
    bool easy_move;           // one move was far better than all others from the start
    bool stop_search;         // the search is to end at the next opportunity
    Score previous_score;     // score accepted last
    // Elapsed seconds when the first iteration was first seen to be due to end.
    double overdue_time = std::numeric_limits<double>::infinity();
};

// What the search calls in the front end. The defaults do nothing, so that tools and tests may
// search without one. All but report_pv are called by the main thread only.
struct SearchHooks {
    void (*report_pv)(int thread) = [](int) {};
    void (*report_currmove)(int thread) = [](int) {};
    void (*report_hashfull)() = [] {};
    // Executes waiting commands; true when the main thread's `stop` is set afterwards.
    bool (*poll_input)() = [] { return false; };
    // Score of a position with few men from a database of endgames, in the table's mate-distance
    // form; false when the position is not in it. No database exists: null.
    bool (*probe_endgame)(const Board& board, Score& score) = nullptr;
};

// What the threads of one search share, apart from the transposition table. Written by the command
// thread while no search runs, and by the main search thread (limits, stability).
struct SearchShared {
    SearchLimits limits;
    SearchHooks hooks;
    RootStability stability;
    int thread_count = 1;
    int last_pv_index;        // MultiPV - 1, less when there are fewer root moves
    const Board* root_board;  // the position searched
    MoveList root_moves;      // its legal moves
};

extern SearchShared search_shared;

// Each record is written by its own thread; `stop` by the command thread.
extern std::array<SearchThread, kMaxThreads> search_threads;

[[nodiscard]] inline SearchThread& search_thread(int thread) noexcept {
    return search_threads[static_cast<std::size_t>(thread)];
}

}  // namespace zar
