#include "eval/patterns.h"

#include <initializer_list>

#include "board/geometry.h"
#include "board/piece.h"
#include "board/set.h"
#include "eval/weights.h"

namespace zar {

namespace {

// The board as one colour sees it: its own first rank is rank 1 of every square named below.
template <Color kUs>
struct SideView {
    const Board& board;

    [[nodiscard]] static constexpr Square seen(Square square) {
        return kUs == kWhite ? square : square_flip_rows(square);
    }
    [[nodiscard]] Piece at(Square square) const { return board_piece(board, seen(square)); }
    [[nodiscard]] bool own(PieceType type, Square square) const {
        return at(square) == piece_of_12(piece12_make(type, kUs));
    }
    [[nodiscard]] bool enemy_pawn(Square square) const {
        return at(square) == pawn_of(color_opposite(kUs));
    }
    // Does any own man stand on one of these squares, or any own pawn? Asked before a pattern of
    // several squares is looked for.
    [[nodiscard]] bool own_on(SquareSet squares) const {
        return (board.men[kUs] & seen_set(squares)) != 0;
    }
    [[nodiscard]] bool own_pawn_on(SquareSet squares) const {
        return (board.pawns[kUs] & seen_set(squares)) != 0;
    }
    [[nodiscard]] static constexpr SquareSet seen_set(SquareSet squares) {
        return kUs == kWhite ? squares : set_flip_ranks(squares);
    }
};

constexpr SquareSet squares_of(std::initializer_list<Square> squares) {
    SquareSet set = 0;
    for (const Square square : squares) {
        set |= set_of(square64_of(square));
    }
    return set;
}

// The bishop is asked for first, here and below: it is rarely there, pawns often are.
template <Color kUs>
bool bishop_with_pawn(const SideView<kUs>& view, Square bishop, Square pawn) {
    return view.own(kBishop, bishop) && view.enemy_pawn(pawn);
}

// Once for each corner, and half for a bishop that is about to be trapped.
template <Color kUs>
int trapped_bishops(const SideView<kUs>& view) {
    constexpr SquareSet kTraps = squares_of({kA6, kA7, kB8, kH6, kH7, kG8});
    if (!view.own_on(kTraps)) {
        return 0;
    }
    const int weight = eval_weights.patterns.trapped_bishop;
    int penalty = 0;
    if (bishop_with_pawn(view, kA7, kB6) || bishop_with_pawn(view, kB8, kC7)) {
        penalty += weight;
    }
    if (bishop_with_pawn(view, kH7, kG6) || bishop_with_pawn(view, kG8, kF7)) {
        penalty += weight;
    }
    if (bishop_with_pawn(view, kA6, kB5)) {
        penalty += weight / 2;
    }
    if (bishop_with_pawn(view, kH6, kG5)) {
        penalty += weight / 2;
    }
    return penalty;
}

template <Color kUs>
bool bishop_is_blocked(const SideView<kUs>& view, Square bishop, Square pawn) {
    return view.own(kBishop, bishop) && view.own(kPawn, pawn) && view.at(pawn + kRowStep) != kEmpty;
}

template <Color kUs>
int blocked_bishops(const SideView<kUs>& view) {
    constexpr SquareSet kBlockers = squares_of({kD2, kE2});
    if (!view.own_pawn_on(kBlockers)) {
        return 0;
    }
    int penalty = 0;
    if (bishop_is_blocked(view, kC1, kD2)) {
        penalty += eval_weights.patterns.blocked_bishop;
    }
    if (bishop_is_blocked(view, kF1, kE2)) {
        penalty += eval_weights.patterns.blocked_bishop;
    }
    return penalty;
}

template <Color kUs>
bool rook_is_trapped(const SideView<kUs>& view) {
    const auto rook = [&](Square square) { return view.own(kRook, square); };
    switch (view.seen(board_king(view.board, kUs))) {
        case kB1:
            return rook(kA1) || rook(kA2);
        case kC1:
            return rook(kA1) || rook(kA2) || rook(kB1);
        case kF1:
            return rook(kH1) || rook(kH2) || rook(kG1);
        case kG1:
            return rook(kH1) || rook(kH2);
        default:
            return false;
    }
}

template <Color kUs>
ScorePair pattern_penalty(const Board& board) {
    const SideView<kUs> view{board};
    const int trapped = trapped_bishops(view);
    int opening = trapped + blocked_bishops(view);
    if (rook_is_trapped(view)) {
        opening += eval_weights.patterns.trapped_rook;
    }
    return {opening, trapped};
}

}  // namespace

ScorePair evaluate_patterns(const Board& board) {
    return pattern_penalty<kBlack>(board) - pattern_penalty<kWhite>(board);
}

}  // namespace zar
