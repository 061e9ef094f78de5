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

// `seen` are the squares that the king sees over the men on the board.
Candidates find_candidates(const Board& board, Square king, SquareSet seen) {
    Candidates candidates;
    if ((seen & board.men[static_cast<std::size_t>(board.turn)]) == 0) {
        return candidates;
    }
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

// Adds a piece's moves to these squares, one at least and seldom more, in the order in which it
// reaches them.
void add_in_order(MoveList& list, const Board& board, Square from, SquareSet targets) {
    if (set_rest(targets) == 0) {
        list_add(list, move_of_64(square64_of(from), set_first(targets)));
        return;
    }
    for_each_quiet_target(board, from, [&](Square to) {
        if (set_has(targets, square64_of(to))) {
            list_add(list, move_make(from, to));
        }
    });
}

// Adds the checks of the men of one type that are no candidates, and moves `man` past them: the
// list holds type after type. `targets` are the empty squares from which that type attacks the
// king: most men reach none of them.
template <PieceType kType>
void gen_direct_checks(MoveList& list, const Board& board, const std::uint8_t*& man,
                       SquareSet targets, const Candidates& candidates) {
    const SquareSet men = board_men(board);
    const std::uint8_t* const end =
        man + board.kind_count[static_cast<std::size_t>(piece12_make(kType, board.turn))];
    if (targets == 0) {
        man = end;
    }
    for (; man != end; ++man) {
        const Square64 from = square64_of(*man);
        const SquareSet checks = piece_view<kType>(men, from) & targets;
        if (checks != 0 && !is_candidate(candidates, *man)) {
            add_in_order(list, board, *man, checks);
        }
    }
}

// Can any pawn step to a square from which it attacks the king?
template <Color kUs>
bool may_pawn_check(const Board& board, Square64 king) {
    const auto back = [](SquareSet set) { return kUs == kWhite ? set_down(set) : set_up(set); };
    const SquareSet targets = pawn_targets<color_opposite(kUs)>(set_of(king));
    const SquareSet single = back(targets);
    return ((single | back(single)) & board.pawns[kUs]) != 0;
}

void gen_pawn_checks(MoveList& list, const Board& board, Square king,
                     const Candidates& candidates) {
    const Square64 king64 = square64_of(king);
    if (!(board.turn == kWhite ? may_pawn_check<kWhite>(board, king64)
                               : may_pawn_check<kBlack>(board, king64))) {
        return;
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
}

void gen_castling_checks(MoveList& list, Board& board) {
    for_each_castling(board, [&](Move move) {
        if (move_is_check(move, board)) {
            list_add(list, move);
        }
    });
}

}  // namespace

void gen_quiet_checks(MoveList& list, Board& board) {
    list.size = 0;
    const Square king = board_king(board, color_opposite(board.turn));
    const SquareSet men = board_men(board);
    const SquareSet on_diagonals = bishop_view(men, square64_of(king));
    const SquareSet on_lines = rook_view(men, square64_of(king));
    const Candidates candidates = find_candidates(board, king, on_diagonals | on_lines);
    for (std::size_t i = 0; i < static_cast<std::size_t>(candidates.size); ++i) {
        gen_discovered_checks(list, board, candidates.square[i], king);
    }
    const std::uint8_t* man = board_officers(board, board.turn).begin();
    gen_direct_checks<kQueen>(list, board, man, (on_diagonals | on_lines) & ~men, candidates);
    gen_direct_checks<kRook>(list, board, man, on_lines & ~men, candidates);
    gen_direct_checks<kBishop>(list, board, man, on_diagonals & ~men, candidates);
    gen_direct_checks<kKnight>(list, board, man, knight_view(square64_of(king)) & ~men, candidates);
    gen_pawn_checks(list, board, king, candidates);
    gen_castling_checks(list, board);
}

}  // namespace zar
