// Quiet moves that give check.

#include <cstddef>

#include "board/make.h"
#include "board/movegen.h"
#include "board/movegen_parts.h"
#include "board/set.h"

namespace zar {

namespace {

// Men whose move away uncovers a check by an own slider behind them.
struct Candidates {
    int size = 0;
    std::array<Square, kMaxMen> square;
    SquareSet set = 0;
};

bool is_candidate(const Candidates& candidates, Square square) {
    return set_has(candidates.set, square64_of(square));
}

Candidates find_candidates(const Board& board, Square king) {
    Candidates candidates;
    for (const Square slider : board_officers(board, board.turn)) {
        const Piece piece = board_piece(board, slider);
        if (!piece_is_slider(piece) || (piece & delta_mask_of(slider, king)) == 0) {
            continue;
        }
        const int step = delta_ray_of(slider, king);
        Square square = slider + step;
        while (board_piece(board, square) == kEmpty) {
            square += step;
        }
        const Piece man = board_piece(board, square);
        if ((man & color_bit(board.turn)) != 0 && !piece_is_king(man) &&
            line_is_empty(board, square, king)) {
            candidates.square[static_cast<std::size_t>(candidates.size++)] = square;
            candidates.set |= set_of(square64_of(square));
        }
    }
    return candidates;
}

// Calls `accept(to)` for every empty square that a non-pawn man reaches.
template <typename Accept>
void for_each_quiet_target(const Board& board, Square from, Accept accept) {
    const Piece piece = board_piece(board, from);
    for (const int step : piece_steps(piece)) {
        for (Square to = from + step; board_piece(board, to) == kEmpty; to += step) {
            accept(to);
            if (!piece_is_slider(piece)) {
                break;
            }
        }
    }
}

// Calls `accept(to)` for the single and the double push, never for one to the last rank.
template <typename Accept>
void for_each_push(const Board& board, Square from, Accept accept) {
    const Square forward = pawn_step_of(board.turn);
    if (is_seventh_rank(from, board.turn) || board_piece(board, from + forward) != kEmpty) {
        return;
    }
    accept(from + forward);
    if (is_second_rank(from, board.turn) && board_piece(board, from + 2 * forward) == kEmpty) {
        accept(from + 2 * forward);
    }
}

void gen_discovered_checks(MoveList& list, const Board& board, Square from, Square king) {
    const auto add_if_off_line = [&](Square to) {
        if (delta_ray_of(to, king) != delta_ray_of(from, king)) {
            list_add(list, move_make(from, to));
        }
    };
    if (piece_is_pawn(board_piece(board, from))) {
        for_each_push(board, from, add_if_off_line);
    } else {
        for_each_quiet_target(board, from, add_if_off_line);
    }
}

// The empty squares from which a man of each kind would attack the king.
struct CheckingSquares {
    SquareSet men;
    SquareSet knight;
    SquareSet bishop;
    SquareSet rook;
};

CheckingSquares find_checking_squares(const Board& board, Square64 king) {
    const SquareSet men = board_men(board);
    return {
        .men = men,
        .knight = knight_view(king) & ~men,
        .bishop = bishop_view(men, king) & ~men,
        .rook = rook_view(men, king) & ~men,
    };
}

// The squares from which a piece that moves to them gives check.
SquareSet direct_checks(const CheckingSquares& checks, Piece piece, Square64 from) {
    switch (piece_type_of(piece)) {
        case kKnight:
            return knight_view(from) & checks.knight;
        case kBishop:
            return slider_view<kBishop>(checks.men, from) & checks.bishop;
        case kRook:
            return slider_view<kRook>(checks.men, from) & checks.rook;
        default:
            return slider_view<kQueen>(checks.men, from) & (checks.bishop | checks.rook);
    }
}

// Adds a piece's moves to these squares in the order in which it reaches them.
void add_in_order(MoveList& list, const Board& board, Square from, SquareSet targets) {
    if (targets == 0) {
        return;
    }
    for_each_quiet_target(board, from, [&](Square to) {
        if (set_has(targets, square64_of(to))) {
            list_add(list, move_make(from, to));
        }
    });
}

void gen_castling_checks(MoveList& list, Board& board) {
    MoveList castlings;
    castlings.size = 0;
    gen_castling(castlings, board);
    for (std::size_t i = 0; i < static_cast<std::size_t>(castlings.size); ++i) {
        if (move_is_check(castlings.move[i], board)) {
            list_add(list, castlings.move[i]);
        }
    }
}

}  // namespace

void gen_quiet_checks(MoveList& list, Board& board) {
    list.size = 0;
    const Square king = board_king(board, color_opposite(board.turn));
    const Candidates candidates = find_candidates(board, king);
    const CheckingSquares checks = find_checking_squares(board, square64_of(king));
    for (std::size_t i = 0; i < static_cast<std::size_t>(candidates.size); ++i) {
        gen_discovered_checks(list, board, candidates.square[i], king);
    }
    for (const Square from : board_officers(board, board.turn)) {
        if (is_candidate(candidates, from)) {
            continue;
        }
        const SquareSet targets =
            direct_checks(checks, board_piece(board, from), square64_of(from));
        add_in_order(list, board, from, targets);
    }
    for (const Square from : board_pawns(board, board.turn)) {
        if (is_candidate(candidates, from)) {
            continue;
        }
        for_each_push(board, from, [&](Square to) {
            if ((pawn_of(board.turn) & delta_mask_of(to, king)) != 0) {
                list_add(list, move_make(from, to));
            }
        });
    }
    gen_castling_checks(list, board);
}

}  // namespace zar
