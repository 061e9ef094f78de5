#include "search/order.h"

#include <algorithm>
#include <limits>

#include "board/captures.h"
#include "board/evasions.h"
#include "board/exchange.h"
#include "board/quiets.h"
#include "search/history.h"
#include "search/types.h"

namespace zar {

namespace {

// Sequences of stages, each ended by Stage::end.
constexpr std::array<Stage, 6> main_stages = {Stage::hash_move, Stage::captures, Stage::killers,
                                              Stage::quiets,    Stage::deferred, Stage::end};
constexpr std::array<Stage, 2> main_check_stages = {Stage::evasions, Stage::end};
constexpr std::array<Stage, 2> q_check_stages = {Stage::q_evasions, Stage::end};
constexpr std::array<Stage, 3> q_with_checks_stages = {Stage::q_captures, Stage::q_checks,
                                                       Stage::end};
constexpr std::array<Stage, 2> q_stages = {Stage::q_captures, Stage::end};

// Scores that set the classes of moves apart within one list.
constexpr int kHashMoveScore = 32766;
constexpr int kGoodCaptureScore = 4000;
constexpr int kBadCaptureScore = -28000;
constexpr int kQuietScore = -24000;
constexpr int kFirstKillerScore = 4;
constexpr int kSecondKillerScore = 2;

// How many codes a move may have: the unit of a score above its move.
constexpr std::int32_t kMoveCodes = 0x10000;

// What stands before the first move.
constexpr std::int32_t kAboveAllMoves = std::numeric_limits<std::int32_t>::max();

// Most valuable victim first, then least valuable attacker: the score is the victim's less the type
// of the attacker.
int victim_score(Piece victim) { return piece_type_of(victim) * 6 + 5; }

int capture_score(Move move, const Board& board) {
    const Piece victim = move_captured(move, board);
    if (victim == kEmpty) {
        return piece_type_of(move_promote(move)) - 5;
    }
    return victim_score(victim) - piece_type_of(board_piece(board, move_from(move)));
}

// Does this capture or promotion to a queen lose nothing?
bool capture_is_good(Move move, const Board& board) {
    if (move_is_promotion(move)) {
        return !move_is_under_promote(move);
    }
    const int victim = piece_value_of(move_captured(move, board));
    const int attacker = piece_value_of(board_piece(board, move_from(move)));
    return victim >= attacker || see_at_least(move, board, 0);
}

int quiet_score(Move move, const Board& board, const SearchThread& self) {
    return self.history[history_index(move, board)] + kQuietScore;
}

// Score of a move in a list that holds all kinds.
int mixed_score(Move move, const Board& board, Move hash_move, const std::array<Move, 2>& killers,
                const SearchThread& self) {
    if (move == hash_move) {
        return kHashMoveScore;
    }
    if (move_is_tactical(move, board)) {
        const int base = capture_is_good(move, board) ? kGoodCaptureScore : kBadCaptureScore;
        return capture_score(move, board) + base;
    }
    if (move == killers[0]) {
        return kFirstKillerScore;
    }
    if (move == killers[1]) {
        return kSecondKillerScore;
    }
    return quiet_score(move, board, self);
}

void picker_empty(Picker& picker) {
    picker.next = 1;
    picker.end = 1;
}

// Writes a move, with its score in the high half, behind those of at least its score that stand
// before the place. This makes one comparison and one store for each move that is passed.
void sort_in(std::int32_t* place, std::int32_t scored) {
    const std::int32_t score = scored & -kMoveCodes;
    for (; place[-1] < score; --place) {
        *place = place[-1];
    }
    *place = scored;
}

// Captures and promotions. They are written straight into the picker, scored by the mover alone;
// the victim is added when they are sorted in. 12 instructions a node less than by way of a list.
[[gnu::noinline]] void enter_captures(Picker& picker) {
    const Board& board = *picker.board;
    std::int32_t* const first = &picker.scored[1];
    std::int32_t* end = first;
    static_assert(kMostCaptures <= kMaxMoves);
    for_each_capture(board,
                     [&](Move move, PieceType attacker) { *end++ = move - attacker * kMoveCodes; });
    for (std::int32_t* next = first; next != end; ++next) {
        const auto move = static_cast<Move>(*next);
        const Piece victim = board_piece(board, move_to(move));
        const std::int32_t key = victim != kEmpty ? *next + victim_score(victim) * kMoveCodes
                                                  : capture_score(move, board) * kMoveCodes + move;
        sort_in(next, key);
    }
    picker.end = 1 + static_cast<std::size_t>(end - first);
}

void serve(Picker& picker, Move move) { picker.scored[picker.end++] = move; }

[[gnu::noinline]] void enter_killers(Picker& picker) {
    for (const Move killer : picker.killers) {
        if (killer != kMoveNone && killer != picker.hash_move &&
            quiet_is_pseudo(killer, *picker.board)) {
            serve(picker, killer);
        }
    }
}

// By history. Most quiet moves have none: they go behind the others as they come, so that no move
// has to pass them one by one.
[[gnu::noinline]] void enter_quiets(Picker& picker, const SearchThread& self) {
    const Board& board = *picker.board;
    std::int32_t* const first = &picker.scored[1];
    std::int32_t* end = first;
    for_each_quiet(board, [&](Move move, PieceType type) {
        if (end != first + kMaxMoves) {
            const int kind = piece12_make(type, board.turn);
            const int credit = self.history[history_index(kind, move_to64(move))];
            *end++ = credit * kMoveCodes + move;
        }
    });
    std::array<std::int32_t, kMaxMoves> plain;
    std::size_t plain_count = 0;
    std::int32_t* place = first;
    for (const std::int32_t* next = first; next != end; ++next) {
        if (*next < kMoveCodes) {
            plain[plain_count++] = *next;
        } else {
            sort_in(place++, *next);
        }
    }
    std::copy_n(plain.begin(), plain_count, place);
    picker.end = 1 + static_cast<std::size_t>(end - first);
}

[[gnu::noinline]] void enter_deferred(Picker& picker) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(picker.deferred_size); ++i) {
        serve(picker, picker.deferred[i]);
    }
}

// Takes the evasions straight into the picker and sorts them by rule(move), highest first; moves of
// equal score keep their order.
template <Evasions kEvasions, typename Rule>
void serve_evasions(Picker& picker, Rule rule) {
    std::int32_t* const first = &picker.scored[1];
    std::int32_t* end = first;
    static_assert(kMostEvasions <= kMaxMoves);
    for_each_evasion<kEvasions>(*picker.board, *picker.attack, [&](Move move) { *end++ = move; });
    for (std::int32_t* next = first; next != end; ++next) {
        const auto move = static_cast<Move>(*next);
        sort_in(next, rule(move) * kMoveCodes + move);
    }
    picker.end = 1 + static_cast<std::size_t>(end - first);
}

[[gnu::noinline]] void enter_evasions(Picker& picker, const SearchThread& self) {
    serve_evasions<Evasions::legal>(picker, [&](Move move) {
        return mixed_score(move, *picker.board, picker.hash_move, picker.killers, self);
    });
}

[[gnu::noinline]] void enter_q_evasions(Picker& picker) {
    serve_evasions<Evasions::pseudo>(picker, [&](Move move) {
        const Board& board = *picker.board;
        return move_is_tactical(move, board) ? capture_score(move, board) : kQuietScore;
    });
}

[[gnu::noinline]] void enter_q_checks(Picker& picker) {
    MoveList list;
    gen_quiet_checks(list, *picker.board);
    for (std::size_t i = 0; i < static_cast<std::size_t>(list.size); ++i) {
        serve(picker, list.move[i]);
    }
}

// Gathers the moves of the current stage. Each stage has a function to itself and shares neither
// frame nor registers with the others: 13 instructions a node less than by one for all.
void enter_stage(Picker& picker, const SearchThread& self) {
    picker_empty(picker);
    switch (*picker.stage) {
        case Stage::captures:
        case Stage::q_captures:
            enter_captures(picker);
            break;
        case Stage::killers:
            enter_killers(picker);
            break;
        case Stage::quiets:
            enter_quiets(picker, self);
            break;
        case Stage::deferred:
            enter_deferred(picker);
            break;
        case Stage::evasions:
            enter_evasions(picker, self);
            break;
        case Stage::q_evasions:
            enter_q_evasions(picker);
            break;
        case Stage::q_checks:
            enter_q_checks(picker);
            break;
        case Stage::hash_move:  // served by picker_start
        case Stage::end:
            break;
    }
}

// Is the move, taken from the current stage's list, to be played in this stage?
bool stage_serves(Picker& picker, Move move) {
    switch (*picker.stage) {
        case Stage::captures:
            if (move == picker.hash_move) {
                return false;
            }
            if (!capture_is_good(move, *picker.board)) {
                picker.deferred[static_cast<std::size_t>(picker.deferred_size++)] = move;
                return false;
            }
            return true;
        case Stage::quiets:
            return move != picker.hash_move && move != picker.killers[0] &&
                   move != picker.killers[1];
        default:
            return true;
    }
}

void picker_start(Picker& picker, Board& board, const Attack& attack, const Stage* stages,
                  int thread) {
    picker.board = &board;
    picker.attack = &attack;
    picker.stage = stages;
    picker.deferred_size = 0;
    picker.scored[0] = kAboveAllMoves;
    if (*stages == Stage::hash_move) {
        picker_empty(picker);
        serve(picker, picker.hash_move);
    } else {
        enter_stage(picker, search_thread(thread));
    }
}

}  // namespace

void picker_init(Picker& picker, Board& board, const Attack& attack, int ply, Move hash_move,
                 int thread) {
    picker.hash_move = hash_move;
    picker.killers = search_thread(thread).killers[static_cast<std::size_t>(ply)];
    const Stage* stages = main_check_stages.data();
    if (attack.count == 0) {
        const bool is_playable = move_is_ok(hash_move) && move_is_pseudo(hash_move, board);
        stages = main_stages.data() + (is_playable ? 0 : 1);
    }
    picker_start(picker, board, attack, stages, thread);
    picker_prefetch_first(picker);
}

void qpicker_init(Picker& picker, Board& board, const Attack& attack, bool include_checks,
                  int thread) {
    const Stage* calm_stages = include_checks ? q_with_checks_stages.data() : q_stages.data();
    const Stage* stages = attack.count > 0 ? q_check_stages.data() : calm_stages;
    picker_start(picker, board, attack, stages, thread);
}

bool picker_advance(Picker& picker, int thread) {
    if (*picker.stage != Stage::end) {
        ++picker.stage;
    }
    if (*picker.stage == Stage::end) {
        return false;
    }
    enter_stage(picker, search_thread(thread));
    return true;
}

bool picker_serves(Picker& picker, Move move) {
    // Evasions are generated legal.
    return stage_serves(picker, move) &&
           (*picker.stage == Stage::evasions || move_is_legal(move, *picker.board));
}

bool qpicker_serves(const Picker& picker, Move move) {
    Board& board = *picker.board;
    switch (*picker.stage) {
        case Stage::q_captures:
            return capture_is_good(move, board) && move_is_legal(move, board);
        case Stage::q_checks:
            return see_at_least(move, board, 0) && move_is_legal(move, board);
        default:
            return move_is_legal(move, board);
    }
}

void order_root_moves(MoveList& list, const Board& board, Move hash_move, int thread) {
    constexpr std::array<Move, 2> no_killers = {kMoveNone, kMoveNone};
    for (std::size_t i = 0; i < static_cast<std::size_t>(list.size); ++i) {
        list.value[i] = static_cast<std::int16_t>(
            mixed_score(list.move[i], board, hash_move, no_killers, search_thread(thread)));
    }
    list_sort(list);
}

}  // namespace zar
