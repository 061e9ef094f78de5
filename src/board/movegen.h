// Lists of moves. Pseudo-legal ones may leave the own king in check: move_is_legal settles that.
// The order inside every list is part of the contract, since the search's sorts are stable. The
// search takes captures and quiet moves one by one, from captures.h and quiets.h.
#pragma once

#include <array>
#include <cstdint>

#include "board/attack.h"
#include "board/board.h"
#include "board/move.h"

namespace zar {

constexpr int kMaxMoves = 256;

struct MoveList {
    int size;
    std::array<Move, kMaxMoves> move;
    // Ordering score that the search writes beside each move.
    std::array<std::int16_t, kMaxMoves> value;
};

// Appends a move; beyond 256 it is dropped.
inline void list_add(MoveList& list, Move move) noexcept {
    if (list.size < kMaxMoves) {
        list.move[static_cast<std::size_t>(list.size++)] = move;
    }
}

[[nodiscard]] bool list_contains(const MoveList& list, Move move);

// Sorts by value, highest first; moves of equal value keep their order.
void list_sort(MoveList& list);

// All pseudo-legal moves: pieces in list order, each along its step list by distance; pawns in list
// order, captures toward the a-file and the h-file, single and double push; en passant; castling
// king side, queen side. A promotion is four codes: queen, knight, rook, bishop. Every generator
// below keeps this order and starts by emptying the list.
void gen_moves(MoveList& list, Board& board);

// Captures and promotions.
void gen_captures(MoveList& list, const Board& board);

// Everything else, castling included.
void gen_quiets(MoveList& list, const Board& board);

// Legal moves of a side in check: the king's, captures of a single checker, interpositions. A
// king's flight straight away from a checking slider is not even tried, since the slider still
// attacks it.
void gen_evasions(MoveList& list, Board& board, const Attack& attack);

// The same without the tests that need other men: attacked king squares and pins.
void gen_evasions_pseudo(MoveList& list, Board& board, const Attack& attack);

// Would gen_evasions list a move?
[[nodiscard]] bool has_evasion(Board& board, const Attack& attack);

// Quiet moves that give check: discovered checks by the candidates' sliders, direct checks by
// pieces, pawn pushes, castling. No move stands twice; the king's own discovered checks are left
// out.
void gen_quiet_checks(MoveList& list, Board& board);

// gen_evasions when in check, else the legal ones of gen_moves.
void gen_legal_moves(MoveList& list, Board& board);

// Would gen_moves list this code? Any 16-bit code may be asked about (except that castling is not
// refused in check: ask only out of check, or test legality too).
[[nodiscard]] bool move_is_pseudo(Move move, Board& board);

// Would gen_quiets list this code?
[[nodiscard]] bool quiet_is_pseudo(Move move, const Board& board);

}  // namespace zar
