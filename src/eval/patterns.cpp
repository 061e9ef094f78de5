#include "eval/patterns.h"

#include "board/geometry.h"
#include "board/piece.h"
#include "eval/weights.h"

namespace zar {

namespace {

// The board as one colour sees it: its own first rank is rank 1 of every square named below.
struct SideView {
    const Board& board;
    Color color;

    [[nodiscard]] Piece at(Square square) const {
        return board_piece(board, color == kWhite ? square : square_flip_rows(square));
    }
    [[nodiscard]] bool own(PieceType type, Square square) const {
        return at(square) == piece_of_12(piece12_make(type, color));
    }
    [[nodiscard]] bool enemy_pawn(Square square) const {
        return at(square) == pawn_of(color_opposite(color));
    }
};

bool bishop_with_pawn(const SideView& view, Square bishop, Square pawn) {
    return view.own(kBishop, bishop) && view.enemy_pawn(pawn);
}

// At most one penalty for each corner.
int trapped_bishops(const SideView& view) {
    int count = 0;
    if (bishop_with_pawn(view, kA7, kB6) || bishop_with_pawn(view, kB8, kC7)) {
        ++count;
    }
    if (bishop_with_pawn(view, kH7, kG6) || bishop_with_pawn(view, kG8, kF7)) {
        ++count;
    }
    return count;
}

int half_trapped_bishops(const SideView& view) {
    return (bishop_with_pawn(view, kA6, kB5) ? 1 : 0) + (bishop_with_pawn(view, kH6, kG5) ? 1 : 0);
}

bool bishop_is_blocked(const SideView& view, Square bishop, Square pawn) {
    return view.own(kPawn, pawn) && view.at(pawn + kRowStep) != kEmpty && view.own(kBishop, bishop);
}

int blocked_bishops(const SideView& view) {
    return (bishop_is_blocked(view, kC1, kD2) ? 1 : 0) +
           (bishop_is_blocked(view, kF1, kE2) ? 1 : 0);
}

int trapped_rooks(const SideView& view) {
    const auto rook = [&](Square square) { return view.own(kRook, square); };
    int count = 0;
    if (view.own(kKing, kC1) && (rook(kA1) || rook(kA2) || rook(kB1))) {
        ++count;
    } else if (view.own(kKing, kB1) && (rook(kA1) || rook(kA2))) {
        ++count;
    }
    if (view.own(kKing, kF1) && (rook(kH1) || rook(kH2) || rook(kG1))) {
        ++count;
    } else if (view.own(kKing, kG1) && (rook(kH1) || rook(kH2))) {
        ++count;
    }
    return count;
}

ScorePair pattern_penalty(const Board& board, Color color) {
    const PatternWeights& weights = eval_weights.patterns;
    const SideView view{board, color};
    const int trapped = weights.trapped_bishop * trapped_bishops(view) +
                        weights.trapped_bishop / 2 * half_trapped_bishops(view);
    const int opening =
        weights.blocked_bishop * blocked_bishops(view) + weights.trapped_rook * trapped_rooks(view);
    return {trapped + opening, trapped};
}

}  // namespace

ScorePair evaluate_patterns(const Board& board) {
    return pattern_penalty(board, kBlack) - pattern_penalty(board, kWhite);
}

}  // namespace zar
