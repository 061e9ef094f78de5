// Search results as the lines that a GUI reads: variations, current move, hash fill, best move.
#pragma once

#include "search/types.h"

namespace zar {

constexpr int kPvTextSize = 512;

// Moves to mate of a mate score, negative when the side to move is mated; 0 for other scores, and
// for exactly 30000.
[[nodiscard]] int score_to_mate(Score score);

// " lowerbound", " upperbound" or nothing: what follows a score.
[[nodiscard]] const char* bound_word(Bound bound);

// Writes the moves of a line, separated by blanks; moves that do not fit are left out. False, with
// nothing written, when size is below 512.
bool pv_to_text(const Line& pv, char* buffer, int size);

// Hooks of the search. report_pv puts the thread's current result into the table of variations and
// prints that; for workers it only reads their stopwatches.
void report_pv(int thread);
void report_currmove(int thread);
void report_hashfull();

// Prints the answer to "go": the best of all threads' results and a move to ponder on. After "go"
// with both "ponder" and "infinite" only the hash fill.
void report_bestmove();

}  // namespace zar
