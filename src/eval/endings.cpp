#include "eval/endings.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "board/geometry.h"
#include "board/piece.h"
#include "eval/rank_mask.h"

namespace zar {

namespace {

// What is left of a side's hopes in a drawn ending.
constexpr int kDrawnScale = 1;

constexpr int kColumnA = kFirstLine;
constexpr int kLastColumnOfLeftHalf = kFirstLine + 3;

// XOR masks that turn the board round.
constexpr int kFlipRows = 0xF0;
constexpr int kFlipColumns = 0x0F;

Square promotion_square(Square pawn) { return square_make(kLastLine, square_column(pawn)); }

int white_rank(Square square) { return relative_rank(square, kWhite); }

bool is_in_front(Square king, Square pawn) {
    return square_column(king) == square_column(pawn) && king > pawn;
}

// Queen against a pawn about to promote. The queen's side needs its king near; the pawn's king
// decides how near. 0: the ending is won however far.
int queen_king_reach(const StandardEnding& ending) {
    const bool pawn_to_move = ending.pawn_side_to_move;
    const Square king = ending.pawn_king;
    if (ending.pawn == kA7) {
        switch (king) {
            case kB7:
            case kB8:
                return 4;
            case kA8:
            case kC7:
            case kC8:
                return pawn_to_move ? 4 : 0;
            default:
                return 0;
        }
    }
    if (ending.pawn == kC7) {
        switch (king) {
            case kA7:
            case kA8:
                return pawn_to_move ? 3 : 0;
            case kB7:
            case kB8:
                return pawn_to_move ? 3 : 4;
            case kC8:
            case kD7:
            case kD8:
                return pawn_to_move ? 4 : 5;
            case kE7:
            case kE8:
                return pawn_to_move ? 4 : 0;
            default:
                return 0;
        }
    }
    return 0;
}

bool queen_cannot_win(const StandardEnding& ending) {
    const int reach = queen_king_reach(ending);
    return reach != 0 && king_distance_of(ending.other_king, promotion_square(ending.pawn)) > reach;
}

// Rook against pawn: does the pawn, helped by its king, come before the enemy king?
bool rook_cannot_win(const StandardEnding& ending) {
    const Square pawn = ending.pawn;
    const Square king = ending.pawn_king;
    const Square promotion = promotion_square(pawn);
    const bool level_at_two = square_row(king) == square_row(pawn) &&
                              std::abs(square_column(king) - square_column(pawn)) == 2;
    const bool near =
        king_distance_of(king, pawn) == 1 || (level_at_two && ending.pawn_side_to_move);
    const int needed = 8 - white_rank(pawn) + king_distance_of(king, promotion) +
                       (ending.pawn_side_to_move ? 0 : 1);
    return near && needed < king_distance_of(ending.other_king, promotion);
}

bool knight_attacks(Square from, Square to) { return (delta_mask_of(from, to) & kKnightBit) != 0; }

// Only the bishop's own king is in its way: all others will have to move.
bool bishop_attacks(Square from, Square to, Square own_king) {
    if ((delta_mask_of(from, to) & kBishopBit) == 0) {
        return false;
    }
    const int step = delta_inc_of(from, to);
    for (Square square = from + step; square != to; square += step) {
        if (square == own_king) {
            return false;
        }
    }
    return true;
}

// Does the bishop of the side without the pawn attack a square that the pawn must cross?
bool bishop_guards_path(const StandardEnding& ending) {
    for (Square square = ending.pawn + kRowStep; square <= promotion_square(ending.pawn);
         square += kRowStep) {
        if (bishop_attacks(ending.other_piece, square, ending.other_king)) {
            return true;
        }
    }
    return false;
}

bool bishop_stops_pawn(const StandardEnding& ending) {
    return is_in_front(ending.other_piece, ending.pawn) || bishop_guards_path(ending);
}

bool knight_stops_pawn(const StandardEnding& ending) {
    // In the corner a knight is lost to the enemy king.
    const bool rook_pawn = square_column(ending.pawn) == kColumnA;
    const Square last = promotion_square(ending.pawn) - (rook_pawn ? kRowStep : 0);
    for (Square square = ending.pawn + kRowStep; square <= last; square += kRowStep) {
        if (ending.other_piece == square || knight_attacks(ending.other_piece, square)) {
            return true;
        }
    }
    return false;
}

// A knight cannot both hold a pawn on a7 and drive a king out of the corner.
bool knight_and_pawn_cannot_win(const StandardEnding& ending) {
    return ending.pawn == kA7 && king_distance_of(ending.other_king, kA8) <= 1;
}

bool rook_and_pawn_cannot_win(const StandardEnding& ending) {
    const Square pawn = ending.pawn;
    const Square king = ending.other_king;
    const Square rook = ending.other_piece;
    if (king == promotion_square(pawn)) {
        return square_column(rook) > square_column(pawn);
    }
    if (is_in_front(king, pawn)) {
        return true;
    }
    const bool rook_shuts_in_pawn = white_rank(pawn) == 7 &&
                                    ending.pawn_piece == promotion_square(pawn) &&
                                    square_column(rook) == square_column(pawn);
    if (rook_shuts_in_pawn && (king == kG7 || king == kH7)) {
        const int least = white_rank(rook) >= 4 ? 3 : 2;
        return king_distance_of(ending.pawn_king, pawn) >= least;
    }
    return false;
}

bool bishop_and_pawn_cannot_win(const StandardEnding& ending) {
    return square_shade(ending.pawn_piece) != square_shade(ending.other_piece) &&
           bishop_guards_path(ending);
}

struct Recogniser {
    bool (*is_drawn)(const StandardEnding& ending);  // null for classes without one
    Color pawn_side;
};

Recogniser recogniser_of(EndingClass ending) {
    switch (ending) {
        case EndingClass::kqvkp:
            return {queen_cannot_win, kBlack};
        case EndingClass::kpvkq:
            return {queen_cannot_win, kWhite};
        case EndingClass::krvkp:
            return {rook_cannot_win, kBlack};
        case EndingClass::kpvkr:
            return {rook_cannot_win, kWhite};
        case EndingClass::kbvkp:
            return {bishop_stops_pawn, kBlack};
        case EndingClass::kpvkb:
            return {bishop_stops_pawn, kWhite};
        case EndingClass::knvkp:
            return {knight_stops_pawn, kBlack};
        case EndingClass::kpvkn:
            return {knight_stops_pawn, kWhite};
        case EndingClass::knpvk:
            return {knight_and_pawn_cannot_win, kWhite};
        case EndingClass::kvknp:
            return {knight_and_pawn_cannot_win, kBlack};
        case EndingClass::krpvkr:
            return {rook_and_pawn_cannot_win, kWhite};
        case EndingClass::krvkrp:
            return {rook_and_pawn_cannot_win, kBlack};
        case EndingClass::kbpvkb:
            return {bishop_and_pawn_cannot_win, kWhite};
        case EndingClass::kbvkbp:
            return {bishop_and_pawn_cannot_win, kBlack};
        default:
            return {nullptr, kWhite};
    }
}

Square corner_of(Color color, int column) {
    return square_make(color == kWhite ? kLastLine : kFirstLine, column);
}

// Of a side with pawns and bishops only.
bool has_bishop_of_shade(const Board& board, Color color, int shade) {
    const SquareRange bishops = board_officers(board, color);
    return std::any_of(bishops.begin(), bishops.end(),
                       [&](Square square) { return square_shade(square) == shade; });
}

// Pawns on a rook's file alone, and the enemy king at the corner where no bishop drives it out.
bool corner_is_held(const Board& board, Color color, Square lone_pawn) {
    const int column = square_column(lone_pawn);
    if (lone_pawn == kNoSquare || (column != kFirstLine && column != kLastLine)) {
        return false;
    }
    const Square corner = corner_of(color, column);
    return king_distance_of(board_king(board, color_opposite(color)), corner) <= 1 &&
           !has_bishop_of_shade(board, color, square_shade(corner));
}

bool is_ahead(Square square, Square pawn, Color color) {
    return square_column(square) == square_column(pawn) &&
           relative_rank(square, color) > relative_rank(pawn, color);
}

// All pawns on the file of the enemy king, which stands in front where no bishop drives it away.
bool file_is_blocked(const Board& board, Color color) {
    const Square king = board_king(board, color_opposite(color));
    const int column = square_column(king);
    const int pawns =
        board.pawn_file[static_cast<std::size_t>(color)][static_cast<std::size_t>(column)];
    return rank_count(pawns) == board_pawn_count(board, color) &&
           is_ahead(king, most_advanced_pawn(board, color, column), color) &&
           !has_bishop_of_shade(board, color, square_shade(king));
}

// Of knight and pawn: the enemy king is in front of a pawn that has not come far.
bool knight_pawn_is_blocked(const Board& board, Color color) {
    const Square pawn = *board_pawns(board, color).begin();
    return relative_rank(pawn, color) <= 6 &&
           is_ahead(board_king(board, color_opposite(color)), pawn, color);
}

constexpr int kEndingTests = kTestRookFile | kTestBlockedFile | kTestKnightPawn;

// A later test overrides an earlier one.
int tested_scale(const Board& board, Color color, const MaterialRecord& material,
                 const PawnRecord& pawns) {
    const auto side = static_cast<std::size_t>(color);
    const int flags = material.side_flags[side];
    int scale = material.scale[side];
    if ((flags & kTestRookFile) != 0 && corner_is_held(board, color, pawns.lone_pawn[side])) {
        scale = 0;
    }
    if ((flags & kTestBlockedFile) != 0 && file_is_blocked(board, color)) {
        scale = kDrawnScale;
    }
    if ((flags & kTestKnightPawn) != 0 && knight_pawn_is_blocked(board, color)) {
        scale = kDrawnScale;
    }
    return scale;
}

}  // namespace

StandardEnding standard_ending(const Board& board, Color pawn_side) {
    const Color other_side = color_opposite(pawn_side);
    const Square pawn = *board_pawns(board, pawn_side).begin();
    int flip = pawn_side == kWhite ? 0 : kFlipRows;
    if (square_column(pawn) > kLastColumnOfLeftHalf) {
        flip ^= kFlipColumns;
    }
    const auto piece_of = [&](Color color) {
        const SquareRange officers = board_officers(board, color);
        return officers.begin() == officers.end() ? kNoSquare : *officers.begin() ^ flip;
    };
    return {
        .pawn = pawn ^ flip,
        .pawn_king = board_king(board, pawn_side) ^ flip,
        .pawn_piece = piece_of(pawn_side),
        .other_king = board_king(board, other_side) ^ flip,
        .other_piece = piece_of(other_side),
        .pawn_side_to_move = board.turn == pawn_side,
    };
}

Scales ending_scales(const Board& board, const MaterialRecord& material, const PawnRecord& pawns) {
    // Nearly all positions of a search end here.
    const int flags = material.side_flags[kWhite] | material.side_flags[kBlack];
    if ((flags & kEndingTests) == 0 && material.ending == EndingClass::none) {
        return {material.scale[kWhite], material.scale[kBlack]};
    }
    Scales scales = {tested_scale(board, kWhite, material, pawns),
                     tested_scale(board, kBlack, material, pawns)};
    const Recogniser recogniser = recogniser_of(material.ending);
    if (recogniser.is_drawn != nullptr &&
        recogniser.is_drawn(standard_ending(board, recogniser.pawn_side))) {
        for (int& scale : scales) {
            scale = std::min(scale, kDrawnScale);
        }
    }
    return scales;
}

}  // namespace zar
