// Moves that neither capture nor promote, handed out one by one as they are found.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "board/attack.h"
#include "board/board.h"
#include "board/move.h"
#include "board/set.h"

namespace zar {

// Castling, king side first: right held, squares between empty, crossed square not attacked.
// Whether the king stands in check or arrives on an attacked square is not looked at.
template <typename Accept>
void for_each_castling(const Board& board, Accept accept) {
    constexpr std::array<int, kColorCount> kRights = {kWhiteKingSide | kWhiteQueenSide,
                                                      kBlackKingSide | kBlackQueenSide};
    if ((board.castle_flags & kRights[static_cast<std::size_t>(board.turn)]) == 0) {
        return;
    }
    struct Castling {
        Color color;
        int flag;
        Square king;
        Square king_to;
        Square crossed;      // passed by the king, where it may not be attacked
        Square beside_rook;  // must be empty too; equal to king_to where there is no such square
    };
    static constexpr std::array<Castling, 4> castlings = {{
        {kWhite, kWhiteKingSide, kE1, kG1, kF1, kG1},
        {kWhite, kWhiteQueenSide, kE1, kC1, kD1, kB1},
        {kBlack, kBlackKingSide, kE8, kG8, kF8, kG8},
        {kBlack, kBlackQueenSide, kE8, kC8, kD8, kB8},
    }};
    for (const Castling& castling : castlings) {
        if (castling.color == board.turn && (board.castle_flags & castling.flag) != 0 &&
            board_piece(board, castling.crossed) == kEmpty &&
            board_piece(board, castling.king_to) == kEmpty &&
            board_piece(board, castling.beside_rook) == kEmpty &&
            !is_attacked(board, castling.crossed, color_opposite(board.turn))) {
            accept(move_make(castling.king, castling.king_to, kKindCastling));
        }
    }
}

namespace detail {

// To the empty squares along one step, nearest first.
template <int kStep, typename Accept>
void for_each_slide(const Board& board, Square from, Accept accept) {
    for (Square to = from + kStep; board_piece(board, to) == kEmpty; to += kStep) {
        accept(move_make(from, to));
    }
}

// The steps are spelt out one by one, so that each is a constant of its own.
template <const auto& kSteps, typename Accept>
void for_each_slide_of(const Board& board, Square from, Accept accept) {
    [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
        (for_each_slide<kSteps[kIndex]>(board, from, accept), ...);
    }
    (std::make_index_sequence<kSteps.size()>{});
}

// Of a king or knight: lowest square first is the order of their steps.
template <typename Accept>
void for_each_step(Square64 from, SquareSet targets, Accept accept) {
    for (; targets != 0; targets = set_rest(targets)) {
        accept(move_of_64(from, set_first(targets)));
    }
}

// The moves of the men of one type, from `man` on, which is moved past them.
template <PieceType kType, typename Accept>
void for_each_quiet_of(const Board& board, const std::uint8_t*& man, Accept accept) {
    const std::uint8_t* const end =
        man + board.kind_count[static_cast<std::size_t>(piece12_make(kType, board.turn))];
    const auto accept_move = [&](Move move) { accept(move, kType); };
    for (; man != end; ++man) {
        if constexpr (kType == kKnight) {
            const Square64 from = square64_of(*man);
            for_each_step(from, knight_view(from) & ~board_men(board), accept_move);
        } else if constexpr (kType == kBishop) {
            for_each_slide_of<bishop_steps>(board, *man, accept_move);
        } else if constexpr (kType == kRook) {
            for_each_slide_of<rook_steps>(board, *man, accept_move);
        } else {
            for_each_slide_of<king_steps>(board, *man, accept_move);
        }
    }
}

template <Color kUs, typename Accept>
void for_each_quiet_pawn_move(const Board& board, Accept accept) {
    constexpr Square kForward = pawn_step_of(kUs);
    for (const Square from : board_pawns(board, kUs)) {
        const Square to = from + kForward;
        if (board_piece(board, to) != kEmpty || is_seventh_rank(from, kUs)) {
            continue;
        }
        accept(move_make(from, to));
        if (is_second_rank(from, kUs) && board_piece(board, to + kForward) == kEmpty) {
            accept(move_make(from, to + kForward));
        }
    }
}

}  // namespace detail

// Calls accept(move, type of the mover) for the moves of gen_quiets in their order.
template <typename Accept>
void for_each_quiet(const Board& board, Accept accept) {
    const auto accept_king_move = [&](Move move) { accept(move, kKing); };
    const auto accept_pawn_move = [&](Move move) { accept(move, kPawn); };
    const Square64 king = square64_of(board_king(board, board.turn));
    detail::for_each_step(king, king_view(king) & ~board_men(board), accept_king_move);
    const std::uint8_t* man = board_officers(board, board.turn).begin();
    detail::for_each_quiet_of<kQueen>(board, man, accept);
    detail::for_each_quiet_of<kRook>(board, man, accept);
    detail::for_each_quiet_of<kBishop>(board, man, accept);
    detail::for_each_quiet_of<kKnight>(board, man, accept);
    if (board.turn == kWhite) {
        detail::for_each_quiet_pawn_move<kWhite>(board, accept_pawn_move);
    } else {
        detail::for_each_quiet_pawn_move<kBlack>(board, accept_pawn_move);
    }
    for_each_castling(board, accept_king_move);
}

}  // namespace zar
