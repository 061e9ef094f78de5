// The UCI command interpreter. The same code executes commands between searches and, called from
// the search's poll, during one; commands that would change what a search works on are refused
// then.
#pragma once

#include <string_view>

#include "board/board.h"
#include "board/move.h"
#include "platform/clock.h"

namespace zar {

// Main thread only.
struct UciState {
    bool engine_initialised;  // the tables exist
    bool searching;           // "go" is running; input arrives through poll_input
    bool wait_for_stop;       // the running search must not answer on its own
    bool bestmove_pending;    // a finished search waits for "stop" or "ponderhit" to answer
    bool go_infinite;
    bool go_ponder;
    bool ponder_limit;  // the level is not the full one; only ever reported
    bool strict;        // see frontend/strict.h; set at the start
    Board board;        // the position that "position" has set up
};

extern UciState uci_state;

// Resets the state, sets up the start position, and executes commands until the process ends.
[[noreturn]] void uci_loop();

// Reads and executes one line. The end of input ends the process with status 0.
void uci_command();

// Executes one line, without its newline. Unknown commands are ignored. `received` is the earliest
// time at which the line can have been sent, in seconds of the wall clock: a search counts its time
// from there, so that what kept the engine from reading "go" is not added to it.
void uci_execute(std::string_view line, double received = clock_wall_seconds());

// The legal move of this text; kMoveNone when there is none.
[[nodiscard]] Move uci_move(Board& board, std::string_view text);

// Plays a legal move of "position". Of a long history all but the newest positions are forgotten,
// so that a search has room for its own.
void uci_play(Board& board, Move move);

// Executes all waiting lines; true when the main search thread's `stop` is set.
bool poll_input();

// Creates what depends on options: tables, weights. Harmless when it has been done.
void engine_init();

// Ends the process with status 0, even in the middle of a search.
[[noreturn]] void engine_exit();

// "go" with what follows it on the line, in uci_go.cpp; `received` as above. Returns when the
// search has ended.
void uci_go(std::string_view arguments, double received = clock_wall_seconds());

}  // namespace zar
