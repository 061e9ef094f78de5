#include "eval/draws.h"

#include "board/geometry.h"
#include "eval/endings.h"
#include "eval/material.h"
#include "eval/rank_mask.h"

namespace zar {

namespace {

bool is_beside(Square king, Square pawn) { return king == pawn - 1 || king == pawn + 1; }

// On one of the two squares diagonally before or behind, where `step` leads.
bool is_diagonal(Square king, Square pawn, int step) {
    return king == pawn + step - 1 || king == pawn + step + 1;
}

// The defender stands right before the pawn. Only on the seventh rank may it run out of moves.
bool is_drawn_right_before_pawn(const StandardEnding& ending) {
    if (relative_rank(ending.pawn, kWhite) <= 6) {
        return true;
    }
    const bool stalemates = is_diagonal(ending.pawn_king, ending.pawn, -kRowStep);
    return stalemates == ending.pawn_side_to_move;
}

// The defender stands two squares before the pawn.
bool is_drawn_two_before_pawn(const StandardEnding& ending) {
    return !ending.pawn_side_to_move || relative_rank(ending.pawn, kWhite) <= 5 ||
           !is_beside(ending.pawn_king, ending.pawn);
}

// The kings stand in opposition and the attacker, to move, must give way.
bool is_drawn_by_opposition(const StandardEnding& ending) {
    const Square king = ending.pawn_king;
    const Square pawn = ending.pawn;
    if (!ending.pawn_side_to_move || ending.other_king != king + 2 * kRowStep) {
        return false;
    }
    const bool before_pawn = king == pawn + kRowStep || is_diagonal(king, pawn, kRowStep);
    return is_beside(king, pawn) || (relative_rank(pawn, kWhite) <= 4 && before_pawn);
}

// A pawn on the a-file whose corner the defender reaches, or whose king it locks in.
bool is_drawn_rook_pawn(const StandardEnding& ending) {
    if (square_column(ending.pawn) != square_column(kA1)) {
        return false;
    }
    if (king_distance_of(ending.other_king, kA8) <= 1) {
        return true;
    }
    const int pawn_rank = relative_rank(ending.pawn, kWhite);
    return square_column(ending.pawn_king) == square_column(kA1) &&
           square_column(ending.other_king) == square_column(kC1) &&
           relative_rank(ending.other_king, kWhite) > (pawn_rank == 2 ? 3 : pawn_rank);
}

bool is_drawn_by_defender(const StandardEnding& ending) {
    if (ending.other_king == ending.pawn + kRowStep) {
        return is_drawn_right_before_pawn(ending);
    }
    if (ending.other_king == ending.pawn + 2 * kRowStep) {
        return is_drawn_two_before_pawn(ending);
    }
    return is_drawn_by_opposition(ending);
}

bool king_and_pawn_is_drawn(const StandardEnding& ending) {
    return is_drawn_by_defender(ending) || is_drawn_rook_pawn(ending);
}

// The bishop does not control the corner where its pawn would promote, and the king is there.
bool bishop_and_pawn_is_drawn(const StandardEnding& ending) {
    return square_column(ending.pawn) == square_column(kA1) &&
           king_distance_of(ending.other_king, kA8) <= 1 &&
           square_shade(ending.pawn_piece) != square_shade(kA8);
}

bool bishops_share_shade(const Board& board) {
    return square_shade(*board_officers(board, kWhite).begin()) ==
           square_shade(*board_officers(board, kBlack).begin());
}

}  // namespace

bool few_men_are_drawn(const Board& board, int thread) {
    const MaterialRecord material = material_probe(board, thread);
    if ((material.ending_flags & kEndingMayBeDrawn) == 0) {
        return false;
    }
    switch (material.ending) {
        case EndingClass::kvk:
        case EndingClass::kbvk:
        case EndingClass::kvkb:
        case EndingClass::knvk:
        case EndingClass::kvkn:
            return true;
        case EndingClass::kpvk:
            return king_and_pawn_is_drawn(standard_ending(board, kWhite));
        case EndingClass::kvkp:
            return king_and_pawn_is_drawn(standard_ending(board, kBlack));
        case EndingClass::kbvkb:
            return bishops_share_shade(board);
        case EndingClass::kbpvk:
            return bishop_and_pawn_is_drawn(standard_ending(board, kWhite));
        case EndingClass::kvkbp:
            return bishop_and_pawn_is_drawn(standard_ending(board, kBlack));
        default:
            return false;
    }
}

}  // namespace zar
