// Quiet moves that give check.

#include <cstddef>

#include "board/make.h"
#include "board/movegen.h"
#include "board/movegen_parts.h"

namespace zar {

namespace {

// Men whose move away uncovers a check by an own slider behind them.
struct Candidates {
    int size = 0;
    std::array<Square, kMaxMen> square;
};

bool is_candidate(const Candidates& candidates, Square square) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(candidates.size); ++i) {
        if (candidates.square[i] == square) {
            return true;
        }
    }
    return false;
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

void gen_direct_checks(MoveList& list, const Board& board, Square from, Square king) {
    const Piece piece = board_piece(board, from);
    for_each_quiet_target(board, from, [&](Square to) {
        if ((piece & delta_mask_of(to, king)) != 0 && line_is_empty(board, to, king)) {
            list_add(list, move_make(from, to));
        }
    });
}

// A rook off the king's lines checks it from the two squares where its lines cross the king's, and
// nowhere else: two looks instead of one at every square it reaches.
void gen_rook_checks(MoveList& list, const Board& board, Square from, Square king) {
    const int row = square_row(from);
    const int column = square_column(from);
    const int king_row = square_row(king);
    const int king_column = square_column(king);
    if (row == king_row || column == king_column) {
        return;
    }
    const auto add = [&](Square to) {
        if (board_piece(board, to) == kEmpty && line_is_empty(board, from, to) &&
            line_is_empty(board, to, king)) {
            list_add(list, move_make(from, to));
        }
    };
    // In the order of the steps: down, sideways, up.
    const Square on_own_column = square_make(king_row, column);
    if (king_row < row) {
        add(on_own_column);
    }
    add(square_make(row, king_column));
    if (king_row > row) {
        add(on_own_column);
    }
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
    for (std::size_t i = 0; i < static_cast<std::size_t>(candidates.size); ++i) {
        gen_discovered_checks(list, board, candidates.square[i], king);
    }
    for (const Square from : board_officers(board, board.turn)) {
        if (is_candidate(candidates, from)) {
            continue;
        }
        const int type = piece_type_of(board_piece(board, from));
        if (type == kRook) {
            gen_rook_checks(list, board, from, king);
        } else if (type == kQueen || square_shade(from) == square_shade(king)) {
            // A bishop attacks squares of its own shade only, and a knight checks a king of its
            // shade by moving to the other one: half of them need no closer look.
            gen_direct_checks(list, board, from, king);
        }
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
