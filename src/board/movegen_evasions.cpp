// Ways out of check.

#include <cstddef>

#include "board/movegen.h"
#include "board/movegen_parts.h"
#include "board/set.h"

namespace zar {

namespace {

enum class Evasions {
    legal,
    pseudo,  // without tests of attacked squares and pins
    any,     // legal, and the first one is enough
};

template <Evasions kEvasions>
struct Generator {
    MoveList& list;
    Board& board;
    const Attack& attack;
    Square king;
    Square forward;  // the pawn step of the side in check

    [[nodiscard]] bool done() const { return kEvasions == Evasions::any && list.size > 0; }

    [[nodiscard]] bool may_move(Square from) const {
        return kEvasions == Evasions::pseudo || !is_pinned(board, from, board.turn);
    }

    [[nodiscard]] bool has_pawn_on(Square square) const {
        return board_piece(board, square) == pawn_of(board.turn);
    }
};

// The squares straight away from checking sliders, where the king would still stand on their lines.
SquareSet squares_on_lines(const Attack& attack, Square king) {
    SquareSet set = 0;
    for (int i = 0; i < attack.count; ++i) {
        const Square away = king - attack.inc[static_cast<std::size_t>(i)];
        if (square_is_on_board(away)) {
            set |= set_of(square64_of(away));
        }
    }
    return set;
}

template <Evasions kEvasions>
void gen_king_moves(Generator<kEvasions>& gen) {
    const Square64 king = square64_of(gen.king);
    const SquareSet own = gen.board.men[static_cast<std::size_t>(gen.board.turn)];
    const SquareSet excluded = own | squares_on_lines(gen.attack, gen.king);
    // Lowest square first is the order of the king's steps.
    for (SquareSet targets = king_view(king) & ~excluded; targets != 0;
         targets = set_rest(targets)) {
        const Square to = square_of_64(set_first(targets));
        if (kEvasions == Evasions::pseudo ||
            !is_attacked(gen.board, to, color_opposite(gen.board.turn))) {
            list_add(gen.list, move_of_64(king, set_first(targets)));
        }
    }
}

// All men but king and pawns that reach the square, in list order.
template <Evasions kEvasions>
void gen_officer_moves(Generator<kEvasions>& gen, Square to) {
    for (const Square from : board_officers(gen.board, gen.board.turn)) {
        if ((board_piece(gen.board, from) & delta_mask_of(from, to)) != 0 &&
            line_is_empty(gen.board, from, to) && gen.may_move(from)) {
            list_add(gen.list, move_make(from, to));
        }
    }
}

template <Evasions kEvasions>
void gen_en_passant_of_checker(Generator<kEvasions>& gen, Square checker) {
    const Square target = gen.board.ep_square;
    if (target == kNoSquare || (target ^ kRowStep) != checker) {
        return;
    }
    for (const Square from : {target - gen.forward + 1, target - gen.forward - 1}) {
        if (!gen.has_pawn_on(from) || !gen.may_move(from)) {
            continue;
        }
        // Two pawns leave the rank at once, which no pin test of one of them sees.
        const Move move = move_make(from, target, kKindEnPassant);
        if (kEvasions == Evasions::pseudo || en_passant_is_legal(move, gen.board)) {
            list_add(gen.list, move);
        }
    }
}

template <Evasions kEvasions>
void gen_captures_of_checker(Generator<kEvasions>& gen, Square checker) {
    for (const Square from : {checker - gen.forward + 1, checker - gen.forward - 1}) {
        if (gen.has_pawn_on(from) && gen.may_move(from)) {
            list_add_pawn_move(gen.list, from, checker);
        }
    }
    gen_en_passant_of_checker(gen, checker);
    gen_officer_moves(gen, checker);
}

template <Evasions kEvasions>
void gen_pawn_interpositions(Generator<kEvasions>& gen, Square between) {
    const Square single = between - gen.forward;
    const Square twice = single - gen.forward;
    if (gen.has_pawn_on(single)) {
        if (gen.may_move(single)) {
            list_add_pawn_move(gen.list, single, between);
        }
    } else if (board_piece(gen.board, single) == kEmpty && gen.has_pawn_on(twice) &&
               is_second_rank(twice, gen.board.turn) && gen.may_move(twice)) {
        list_add(gen.list, move_make(twice, between));
    }
}

template <Evasions kEvasions>
void generate(MoveList& list, Board& board, const Attack& attack) {
    list.size = 0;
    Generator<kEvasions> gen{list, board, attack, board_king(board, board.turn),
                             pawn_step_of(board.turn)};
    gen_king_moves(gen);
    if (attack.count != 1 || gen.done()) {
        return;
    }
    const Square checker = attack.square[0];
    const int step = attack.inc[0];
    gen_captures_of_checker(gen, checker);
    if (step == 0) {
        return;
    }
    for (Square between = gen.king + step; between != checker && !gen.done(); between += step) {
        gen_pawn_interpositions(gen, between);
        gen_officer_moves(gen, between);
    }
}

}  // namespace

void gen_evasions(MoveList& list, Board& board, const Attack& attack) {
    generate<Evasions::legal>(list, board, attack);
}

void gen_evasions_pseudo(MoveList& list, Board& board, const Attack& attack) {
    generate<Evasions::pseudo>(list, board, attack);
}

bool has_evasion(Board& board, const Attack& attack) {
    MoveList list;
    generate<Evasions::any>(list, board, attack);
    return list.size > 0;
}

}  // namespace zar
