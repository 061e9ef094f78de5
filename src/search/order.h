// Move pickers: they hand the searches one legal move at a time, best first, and generate each
// class of moves only when the class before it is used up.
#pragma once

#include <array>
#include <cstdint>

#include "board/attack.h"
#include "board/movegen.h"

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
    MoveList list;         // moves of the current stage
    int next;              // index in `list` of the move to look at next
    Move hash_move;
    std::array<Move, 2> killers;
    int deferred_size;
    std::array<Move, kMaxMoves> deferred;
    // Of the move returned last; kHistoryRatioOne for all but quiet moves out of check.
    int history_ratio;
};

// Starts the main search's picker. The checkers must outlive the picker; the hash move may be any
// code.
void picker_init(Picker& picker, Board& board, const Attack& attack, int ply, Move hash_move,
                 int thread);

// The next legal move, or kMoveNone when all have been served; each move is served once.
[[nodiscard]] Move next_move(Picker& picker, int thread);

// How many evasions there are, for a picker that was started in check.
[[nodiscard]] inline int picker_evasion_count(const Picker& picker) { return picker.list.size; }

// Starts the quiescence search's picker: all evasions in check, else captures, and quiet checks if
// wanted. Serve it with next_move.
void qpicker_init(Picker& picker, Board& board, const Attack& attack, bool include_checks,
                  int thread);

// Orders legal root moves before the first iteration, as evasions are ordered, without killers.
void order_root_moves(MoveList& list, const Board& board, Move hash_move, int thread);

}  // namespace zar
