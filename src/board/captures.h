// Captures and promotions, handed out one by one as they are found.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "board/board.h"
#include "board/cells.h"
#include "board/move.h"
#include "board/set.h"

namespace zar {

// One plain code, or four in the order queen, knight, rook, bishop when the pawn promotes.
template <typename Accept>
void for_each_pawn_move(Square from, Square to, Accept accept) {
    if (!square_is_promotion_rank(to)) {
        accept(move_make(from, to));
        return;
    }
    for (const int kind : {kPromoteQueen, kPromoteKnight, kPromoteRook, kPromoteBishop}) {
        accept(move_make(from, to, kind));
    }
}

// Captures of one pawn, toward the a-file first; no en passant.
template <Color kUs, typename Accept>
void for_each_pawn_capture(const Board& board, Square from, Accept accept) {
    constexpr int kEnemyBit = color_bit(color_opposite(kUs));
    const Square ahead = from + pawn_step_of(kUs);
    if (!has_beside(board, ahead, kEnemyBit)) {
        return;
    }
    for (const Square to : {ahead - 1, ahead + 1}) {
        if ((board_piece(board, to) & kEnemyBit) != 0) {
            for_each_pawn_move(from, to, accept);
        }
    }
}

// En passant captures of the side to move, from the h-file side first.
template <typename Accept>
void for_each_en_passant(const Board& board, Accept accept) {
    if (board.ep_square == kNoSquare) {
        return;
    }
    const Square behind = board.ep_square - pawn_step_of(board.turn);
    for (const Square from : {behind + 1, behind - 1}) {
        if (board_piece(board, from) == pawn_of(board.turn)) {
            accept(move_make(from, board.ep_square, kKindEnPassant));
        }
    }
}

namespace detail {

// Captures of a king, knight or rook: lowest square first is the order of their steps.
template <typename Accept>
void for_each_hit(Square64 from, SquareSet hits, Accept accept) {
    for (; hits != 0; hits = set_rest(hits)) {
        accept(move_of_64(from, set_first(hits)));
    }
}

// Captures of a bishop or queen, in the order of its steps; mostly there is none, and seldom more
// than one. The steps are spelt out, so that each is a constant of its own.
template <const auto& kSteps, typename Accept>
void for_each_hit_by_step(Square64 from, SquareSet hits, Accept accept) {
    if (set_rest(hits) == 0) {
        for_each_hit(from, hits, accept);
        return;
    }
    [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
        (for_each_hit(from, hits & ray_view<kSteps[kIndex]>(from), accept), ...);
    }
    (std::make_index_sequence<kSteps.size()>{});
}

// Captures of one pawn, or its promotion by a step.
template <Color kUs, typename Accept>
void for_each_tactical_move_of(const Board& board, Square from, Accept accept) {
    for_each_pawn_capture<kUs>(board, from, accept);
    const Square ahead = from + pawn_step_of(kUs);
    if (is_seventh_rank(from, kUs) && board_piece(board, ahead) == kEmpty) {
        for_each_pawn_move(from, ahead, accept);
    }
}

template <Color kUs, typename Accept>
void for_each_tactical_pawn_move(const Board& board, Accept accept) {
    constexpr Color kThem = color_opposite(kUs);
    constexpr SquareSet kSeventhRank = kFirstRank << 8 * (kUs == kWhite ? 6 : 1);
    // Often there is none, and seldom more than one.
    const SquareSet pawns =
        board.pawns[kUs] & (pawn_targets<kThem>(board.men[kThem]) | kSeventhRank);
    if (set_rest(pawns) == 0) {
        if (pawns != 0) {
            for_each_tactical_move_of<kUs>(board, square_of_64(set_first(pawns)), accept);
        }
        return;
    }
    for (const Square from : board_pawns(board, kUs)) {
        if (set_has(pawns, square64_of(from))) {
            for_each_tactical_move_of<kUs>(board, from, accept);
        }
    }
}

// The captures of the men of one type, from `man` on, which is moved past them: the list holds type
// after type, so no man need be looked at for its own.
template <PieceType kType, typename Accept>
void for_each_capture_of(const Board& board, const std::uint8_t*& man, SquareSet men,
                         SquareSet enemies, Accept accept) {
    const std::uint8_t* const end =
        man + board.kind_count[static_cast<std::size_t>(piece12_make(kType, board.turn))];
    const auto accept_move = [&](Move move) { accept(move, kType); };
    for (; man != end; ++man) {
        const Square64 from = square64_of(*man);
        const SquareSet hits = piece_view<kType>(men, from) & enemies;
        if constexpr (kType == kQueen) {
            for_each_hit_by_step<king_steps>(from, hits, accept_move);
        } else if constexpr (kType == kBishop) {
            for_each_hit_by_step<bishop_steps>(from, hits, accept_move);
        } else {
            for_each_hit(from, hits, accept_move);
        }
    }
}

}  // namespace detail

// No man has more captures and promotions than a pawn before its last rank: three squares with four
// codes each.
constexpr int kMostCaptures = kMaxMen * 12;

// Calls accept(move, type of the mover) for the moves of gen_captures in their order. Into its
// caller: what accept writes to can then stay in registers.
template <typename Accept>
[[gnu::always_inline]] inline void for_each_capture(const Board& board, Accept accept) {
    const SquareSet men = board_men(board);
    const SquareSet enemies = board.men[static_cast<std::size_t>(color_opposite(board.turn))];
    const Square64 king = square64_of(board_king(board, board.turn));
    detail::for_each_hit(king, king_view(king) & enemies, [&](Move move) { accept(move, kKing); });
    const std::uint8_t* man = board_officers(board, board.turn).begin();
    detail::for_each_capture_of<kQueen>(board, man, men, enemies, accept);
    detail::for_each_capture_of<kRook>(board, man, men, enemies, accept);
    detail::for_each_capture_of<kBishop>(board, man, men, enemies, accept);
    detail::for_each_capture_of<kKnight>(board, man, men, enemies, accept);
    const auto accept_pawn_move = [&](Move move) { accept(move, kPawn); };
    if (board.turn == kWhite) {
        detail::for_each_tactical_pawn_move<kWhite>(board, accept_pawn_move);
    } else {
        detail::for_each_tactical_pawn_move<kBlack>(board, accept_pawn_move);
    }
    for_each_en_passant(board, accept_pawn_move);
}

}  // namespace zar
