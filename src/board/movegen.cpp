#include "board/movegen.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "board/captures.h"
#include "board/movegen_parts.h"
#include "board/set.h"

namespace zar {

namespace {

// Which targets a generator wants.
enum class Targets { all, quiets };

// Moves of a king or knight, lowest square first: the order of its steps.
void gen_steps(MoveList& list, Square64 from, SquareSet targets) {
    for (; targets != 0; targets = set_rest(targets)) {
        list_add(list, move_of_64(from, set_first(targets)));
    }
}

template <Targets kTargets, int kStep>
void gen_ray(MoveList& list, const Board& board, Square from) {
    Square to = from + kStep;
    for (; board_piece(board, to) == kEmpty; to += kStep) {
        list_add(list, move_make(from, to));
    }
    if (kTargets == Targets::all &&
        (board_piece(board, to) & color_bit(color_opposite(board.turn))) != 0) {
        list_add(list, move_make(from, to));
    }
}

// Moves of a slider, along each step of its list by distance. The steps are spelt out one by one,
// so that each is a constant of its own.
template <Targets kTargets, const auto& kSteps>
void gen_slides(MoveList& list, const Board& board, Square from) {
    [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
        (gen_ray<kTargets, kSteps[kIndex]>(list, board, from), ...);
    }
    (std::make_index_sequence<kSteps.size()>{});
}

// Walks the piece list by types, whose places follow from their counts.
template <Targets kTargets>
void gen_pieces(MoveList& list, const Board& board) {
    const std::uint8_t* man = board_pieces(board, board.turn).begin();
    const auto end_of = [&](PieceType type) {
        return man + board.kind_count[static_cast<std::size_t>(piece12_make(type, board.turn))];
    };
    const SquareSet wanted =
        ~(kTargets == Targets::quiets ? board_men(board)
                                      : board.men[static_cast<std::size_t>(board.turn)]);
    const Square64 king = square64_of(*man++);
    gen_steps(list, king, king_view(king) & wanted);
    for (const std::uint8_t* const end = end_of(kQueen); man != end; ++man) {
        gen_slides<kTargets, king_steps>(list, board, *man);
    }
    for (const std::uint8_t* const end = end_of(kRook); man != end; ++man) {
        gen_slides<kTargets, rook_steps>(list, board, *man);
    }
    for (const std::uint8_t* const end = end_of(kBishop); man != end; ++man) {
        gen_slides<kTargets, bishop_steps>(list, board, *man);
    }
    for (const std::uint8_t* const end = end_of(kKnight); man != end; ++man) {
        const Square64 knight = square64_of(*man);
        gen_steps(list, knight, knight_view(knight) & wanted);
    }
}

template <Color kUs>
void gen_pawn_push(MoveList& list, const Board& board, Square from) {
    constexpr Square kForward = pawn_step_of(kUs);
    if (board_piece(board, from + kForward) != kEmpty) {
        return;
    }
    list_add_pawn_move(list, from, from + kForward);
    if (is_second_rank(from, kUs) && board_piece(board, from + 2 * kForward) == kEmpty) {
        list_add(list, move_make(from, from + 2 * kForward));
    }
}

// Promotions count as captures.
template <Targets kTargets, Color kUs>
void gen_pawns_of(MoveList& list, const Board& board) {
    for (const Square from : board_pawns(board, kUs)) {
        if constexpr (kTargets == Targets::all) {
            for_each_pawn_capture<kUs>(board, from, [&](Move move) { list_add(list, move); });
            gen_pawn_push<kUs>(list, board, from);
        } else if (!is_seventh_rank(from, kUs)) {
            gen_pawn_push<kUs>(list, board, from);
        }
    }
}

template <Targets kTargets>
void gen_pawns(MoveList& list, const Board& board) {
    if (board.turn == kWhite) {
        gen_pawns_of<kTargets, kWhite>(list, board);
    } else {
        gen_pawns_of<kTargets, kBlack>(list, board);
    }
}

}  // namespace

bool list_contains(const MoveList& list, Move move) {
    const auto end = list.move.begin() + list.size;
    return std::find(list.move.begin(), end, move) != end;
}

void list_sort(MoveList& list) {
    // Insertion: stable, and fast on the short lists that arrive.
    for (std::size_t i = 1; i < static_cast<std::size_t>(list.size); ++i) {
        const Move move = list.move[i];
        const std::int16_t value = list.value[i];
        std::size_t place = i;
        while (place > 0 && list.value[place - 1] < value) {
            list.move[place] = list.move[place - 1];
            list.value[place] = list.value[place - 1];
            --place;
        }
        list.move[place] = move;
        list.value[place] = value;
    }
}

void gen_castling(MoveList& list, const Board& board) {
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
            list_add(list, move_make(castling.king, castling.king_to, kKindCastling));
        }
    }
}

void gen_moves(MoveList& list, Board& board) {
    list.size = 0;
    gen_pieces<Targets::all>(list, board);
    gen_pawns<Targets::all>(list, board);
    for_each_en_passant(board, [&](Move move) { list_add(list, move); });
    gen_castling(list, board);
}

void gen_captures(MoveList& list, const Board& board) {
    list.size = 0;
    for_each_capture(board, [&](Move move, PieceType) { list_add(list, move); });
}

void gen_quiets(MoveList& list, const Board& board) {
    list.size = 0;
    gen_pieces<Targets::quiets>(list, board);
    gen_pawns<Targets::quiets>(list, board);
    gen_castling(list, board);
}

void gen_legal_moves(MoveList& list, Board& board) {
    Attack attack;
    attack_set(attack, board);
    if (attack.count > 0) {
        gen_evasions(list, board, attack);
        return;
    }
    gen_moves(list, board);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(list.size); ++i) {
        const Move move = list.move[i];
        if (move_is_legal(move, board)) {
            list.move[kept++] = move;
        }
    }
    list.size = static_cast<int>(kept);
}

}  // namespace zar
