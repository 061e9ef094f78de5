// Move pickers: they hand the searches one legal move at a time, best first, and generate each
// class of moves only when the class before it is used up.
#pragma once

#include <array>
#include <cstdint>

#include "board/attack.h"
#include "board/key.h"
#include "board/movegen.h"
#include "search/hash.h"

namespace zar {

enum class Stage : std::uint8_t {
    hash_move,
    captures,
    killers,
    quiets,
    deferred,    // losing captures and under-promotions
    evasions,    // all of them, scored at once
    q_evasions,  // the quiescence search's scoring
    q_captures,  // captures that do not lose, promotions to a queen
    q_checks,    // quiet checks that do not lose
    end,
};

// One a node, on the stack. The board must be back at the node's position at every call.
struct Picker {
    Board* board;
    const Attack* attack;  // the checkers of the side to move
    const Stage* stage;    // current place in the sequence of stages
    std::size_t next;      // place of the move to look at next
    std::size_t end;       // place behind the last move of the current stage
    // The moves from place 1 on, best first: the code in the low half of a word, its score in the
    // high half. At place 0 a word above all, so that sorting need not ask where the moves begin.
    std::array<std::int32_t, kMaxMoves + 1> scored;
    Move hash_move;
    std::array<Move, 2> killers;
    int deferred_size;
    std::array<Move, kMaxMoves> deferred;
};

// Starts the main search's picker. The checkers must outlive the picker; the hash move may be any
// code.
void picker_init(Picker& picker, Board& board, const Attack& attack, int ply, Move hash_move,
                 int thread);

// Fills the picker with the moves of the next stage; false when there is none.
bool picker_advance(Picker& picker, int thread);

// Takes the next move of the current stage, which must have one.
inline Move picker_take(Picker& picker) noexcept {
    return static_cast<Move>(picker.scored[picker.next++]);
}

// Are the moves of the current stage the quiet ones out of check? Then so is the one served last.
[[nodiscard]] inline bool picker_is_quiet(const Picker& picker) {
    return *picker.stage == Stage::quiets;
}

// Is a move of the main search's current stage legal, and to be played in this stage? A capture
// that loses is put off to a later one.
[[nodiscard]] bool picker_serves(Picker& picker, Move move);

// A fetch from the table takes as long as half a node, and many moves are passed over without a
// search of their own. So the entries of the following moves are asked for this many moves ahead.
constexpr std::size_t kFetchedAhead = 3;

inline void picker_prefetch(const Picker& picker, std::size_t ahead) {
    const std::size_t place = picker.next + ahead;
    if (place < picker.end) {
        const auto following = static_cast<Move>(picker.scored[place]);
        hash_prefetch(hash_table, key_after(*picker.board, following));
    }
}

// For the first moves of a stage.
inline void picker_prefetch_first(const Picker& picker) {
    for (std::size_t i = 0; i < kFetchedAhead; ++i) {
        picker_prefetch(picker, i);
    }
}

// The next legal move, or kMoveNone when all have been served; each move is served once. Quiet
// moves for which skip(move) holds are passed over before anything costly is asked about them.
template <typename Skip>
[[nodiscard]] Move next_move(Picker& picker, Skip skip, int thread) {
    while (true) {
        while (picker.next < picker.end) {
            const Move move = picker_take(picker);
            picker_prefetch(picker, kFetchedAhead - 1);
            if (picker_is_quiet(picker) && skip(move)) {
                continue;
            }
            if (picker_serves(picker, move)) {
                return move;
            }
        }
        if (!picker_advance(picker, thread)) {
            return kMoveNone;
        }
        picker_prefetch_first(picker);
    }
}

[[nodiscard]] inline Move next_move(Picker& picker, int thread) {
    return next_move(
        picker, [](Move) { return false; }, thread);
}

// How many evasions there are, for a picker that was started in check.
[[nodiscard]] inline int picker_evasion_count(const Picker& picker) {
    return static_cast<int>(picker.end) - 1;
}

// Starts the quiescence search's picker: all evasions in check, else captures, and quiet checks if
// wanted. Serve it with next_qmove.
void qpicker_init(Picker& picker, Board& board, const Attack& attack, bool include_checks,
                  int thread);

// Is a move of the quiescence search's current stage legal, and one that loses nothing?
[[nodiscard]] bool qpicker_serves(const Picker& picker, Move move);

// As next_move, for the quiescence search. Captures for which skip(move) holds are passed over
// before anything costly is asked about them.
template <typename Skip>
[[nodiscard]] Move next_qmove(Picker& picker, Skip skip, int thread) {
    do {
        while (picker.next < picker.end) {
            const Move move = picker_take(picker);
            if (*picker.stage == Stage::q_captures && skip(move)) {
                continue;
            }
            // Before the costly tests: they take part of the time that the fetch needs.
            hash_prefetch(hash_table, key_after(*picker.board, move));
            if (qpicker_serves(picker, move)) {
                return move;
            }
        }
    } while (picker_advance(picker, thread));
    return kMoveNone;
}

// Orders legal root moves before the first iteration, as evasions are ordered, without killers.
void order_root_moves(MoveList& list, const Board& board, Move hash_move, int thread);

}  // namespace zar
