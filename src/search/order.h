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
    int size;              // moves of the current stage
    int next;              // index of the move to look at next
    // The moves, best first: the code in the low half of a word, its score in the high half.
    std::array<std::int32_t, kMaxMoves> scored;
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
    return static_cast<Move>(picker.scored[static_cast<std::size_t>(picker.next++)]);
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
constexpr int kFetchedAhead = 3;

inline void picker_prefetch(const Picker& picker, int place) {
    if (place < picker.size) {
        const std::int32_t following = picker.scored[static_cast<std::size_t>(place)];
        hash_prefetch(hash_table, key_after(*picker.board, static_cast<Move>(following)));
    }
}

// For the first moves of a stage.
inline void picker_prefetch_first(const Picker& picker) {
    for (int i = 0; i < kFetchedAhead; ++i) {
        picker_prefetch(picker, i);
    }
}

// The next legal move, or kMoveNone when all have been served; each move is served once. Quiet
// moves for which skip(move) holds are passed over before anything costly is asked about them.
template <typename Skip>
[[nodiscard]] Move next_move(Picker& picker, Skip skip, int thread) {
    while (true) {
        while (picker.next < picker.size) {
            const Move move = picker_take(picker);
            picker_prefetch(picker, picker.next + kFetchedAhead - 1);
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
[[nodiscard]] inline int picker_evasion_count(const Picker& picker) { return picker.size; }

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
        while (picker.next < picker.size) {
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
