// What a thread remembers about moves: two killers a ply, credit for refuting moves, and how often
// a quiet move succeeded. Every thread has its own tables.
#pragma once

#include <cstddef>

#include "board/board.h"
#include "board/move.h"

namespace zar {

// A history ratio of 1; no move can have more.
constexpr int kHistoryRatioOne = 16384;

// Forgets everything. Called at the start of every search.
void search_tables_clear(int thread);

// Place of a move in the history tables: kind of man (piece12, 0..11) and target.
[[nodiscard]] constexpr std::size_t history_index(int kind, Square64 to) noexcept {
    return static_cast<std::size_t>(kind * Square64{64} + to);
}

[[nodiscard]] inline std::size_t history_index(Move move, const Board& board) noexcept {
    return history_index(piece12_of(board_piece(board, move_from(move))), move_to64(move));
}

// A quiet move was the best one or refuted the node: it becomes a killer of the ply and earns the
// square of the depth. Captures and promotions are passed over.
void history_cutoff(Move move, const Board& board, int depth, int ply, int thread);

// A quiet move succeeded, or was searched without success, at a node that ended in a cut-off.
// Captures and promotions are passed over.
void history_good(Move move, const Board& board, int thread);
void history_bad(Move move, const Board& board, int thread);

// Is the share of its searches in which the move succeeded, in parts of kHistoryRatioOne, below the
// threshold, 0..kHistoryRatioOne?
[[nodiscard]] bool history_is_below(int threshold, Move move, const Board& board, int thread);

}  // namespace zar
