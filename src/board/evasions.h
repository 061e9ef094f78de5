// Ways out of check, handed out one by one as they are found.
#pragma once

#include <cstddef>

#include "board/attack.h"
#include "board/board.h"
#include "board/captures.h"
#include "board/move.h"
#include "board/set.h"

namespace zar {

enum class Evasions {
    legal,
    pseudo,  // without tests of attacked squares and pins
};

namespace detail {

template <Evasions kEvasions>
[[nodiscard]] bool may_leave(const Board& board, Square from) {
    return kEvasions == Evasions::pseudo || !is_pinned(board, from, board.turn);
}

[[nodiscard]] inline bool has_own_pawn_on(const Board& board, Square square) {
    return board_piece(board, square) == pawn_of(board.turn);
}

// The squares straight away from checking sliders, where the king would still stand on their lines.
[[nodiscard]] inline SquareSet squares_on_lines(const Attack& attack, Square king) {
    SquareSet set = 0;
    for (int i = 0; i < attack.count; ++i) {
        const Square away = king - attack.inc[static_cast<std::size_t>(i)];
        if (square_is_on_board(away)) {
            set |= set_of(square64_of(away));
        }
    }
    return set;
}

template <Evasions kEvasions, typename Accept>
void for_each_flight(const Board& board, const Attack& attack, Accept accept) {
    const Square king = board_king(board, board.turn);
    const SquareSet own = board.men[static_cast<std::size_t>(board.turn)];
    const SquareSet excluded = own | squares_on_lines(attack, king);
    const Square64 from = square64_of(king);
    // Lowest square first is the order of the king's steps.
    for (SquareSet targets = king_view(from) & ~excluded; targets != 0;
         targets = set_rest(targets)) {
        const Square64 to = set_first(targets);
        if (kEvasions == Evasions::pseudo ||
            !is_attacked(board, square_of_64(to), color_opposite(board.turn))) {
            accept(move_of_64(from, to));
        }
    }
}

// All men but king and pawns that reach the square, in list order.
template <Evasions kEvasions, typename Accept>
void for_each_officer_move(const Board& board, Square to, Accept accept) {
    for (const Square from : board_officers(board, board.turn)) {
        if ((board_piece(board, from) & delta_mask_of(from, to)) != 0 &&
            line_is_empty(board, from, to) && may_leave<kEvasions>(board, from)) {
            accept(move_make(from, to));
        }
    }
}

template <Evasions kEvasions, typename Accept>
void for_each_en_passant_of_checker(Board& board, Square checker, Accept accept) {
    const Square target = board.ep_square;
    if (target == kNoSquare || (target ^ kRowStep) != checker) {
        return;
    }
    const Square behind = target - pawn_step_of(board.turn);
    for (const Square from : {behind + 1, behind - 1}) {
        if (!has_own_pawn_on(board, from) || !may_leave<kEvasions>(board, from)) {
            continue;
        }
        // Two pawns leave the rank at once, which no pin test of one of them sees.
        const Move move = move_make(from, target, kKindEnPassant);
        if (kEvasions == Evasions::pseudo || en_passant_is_legal(move, board)) {
            accept(move);
        }
    }
}

template <Evasions kEvasions, typename Accept>
void for_each_capture_of_checker(Board& board, Square checker, Accept accept) {
    const Square behind = checker - pawn_step_of(board.turn);
    for (const Square from : {behind + 1, behind - 1}) {
        if (has_own_pawn_on(board, from) && may_leave<kEvasions>(board, from)) {
            for_each_pawn_move(from, checker, accept);
        }
    }
    for_each_en_passant_of_checker<kEvasions>(board, checker, accept);
    for_each_officer_move<kEvasions>(board, checker, accept);
}

template <Evasions kEvasions, typename Accept>
void for_each_pawn_interposition(const Board& board, Square between, Accept accept) {
    const Square single = between - pawn_step_of(board.turn);
    const Square twice = single - pawn_step_of(board.turn);
    if (has_own_pawn_on(board, single)) {
        if (may_leave<kEvasions>(board, single)) {
            for_each_pawn_move(single, between, accept);
        }
    } else if (board_piece(board, single) == kEmpty && has_own_pawn_on(board, twice) &&
               is_second_rank(twice, board.turn) && may_leave<kEvasions>(board, twice)) {
        accept(move_make(twice, between));
    }
}

}  // namespace detail

// Eight flights; a piece's moves to the checker and to six squares between; two pawns that capture
// the checker, or do so en passant; and one that steps on each square between. Promotions are four.
constexpr int kMostEvasions = 8 + 7 * kMaxMen + 2 * 4 + 2 + 6 * 4;

// Calls accept(move) for the moves of gen_evasions or gen_evasions_pseudo in their order. Restores
// the board where it has to play a move.
template <Evasions kEvasions, typename Accept>
void for_each_evasion(Board& board, const Attack& attack, Accept accept) {
    detail::for_each_flight<kEvasions>(board, attack, accept);
    if (attack.count != 1) {
        return;
    }
    const Square checker = attack.square[0];
    const int step = attack.inc[0];
    detail::for_each_capture_of_checker<kEvasions>(board, checker, accept);
    if (step == 0) {
        return;
    }
    for (Square between = board_king(board, board.turn) + step; between != checker;
         between += step) {
        detail::for_each_pawn_interposition<kEvasions>(board, between, accept);
        detail::for_each_officer_move<kEvasions>(board, between, accept);
    }
}

}  // namespace zar
