#include "board/board.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>

#include "board/attack.h"
#include "board/key.h"
#include "board/psq_table.h"
#include "board/set.h"
#include "platform/fatal.h"

namespace zar {

namespace {

constexpr int kMostBishopsWithoutWarning = 9;

std::size_t index_of(std::ptrdiff_t value) { return static_cast<std::size_t>(value); }

void count_man(Board& board, Square square, int index) {
    const int kind = piece12_of(board_piece(board, square));
    board.list_index[index_of(square)] = static_cast<std::int8_t>(index);
    board.total_count += 1;
    board.kind_count[index_of(kind)] += 1;
}

// Highest type first, which leaves the king at entry 0. Stable: a man moves ahead only of men of a
// strictly lower type.
void sort_pieces(Board& board, Color color) {
    auto& list = board.piece_list[index_of(color)];
    for (int i = 1; i < board_piece_count(board, color); ++i) {
        const Square square = list[index_of(i)];
        const int type = piece_type_of(board_piece(board, square));
        int place = i;
        while (place > 0 && type > piece_type_of(board_piece(board, list[index_of(place - 1)]))) {
            list[index_of(place)] = list[index_of(place - 1)];
            board.list_index[index_of(list[index_of(place)])] = static_cast<std::int8_t>(place);
            --place;
        }
        list[index_of(place)] = packed(square);
        board.list_index[index_of(square)] = static_cast<std::int8_t>(place);
    }
}

const PositionFault* list_pieces(Board& board, Color color) {
    auto& list = board.piece_list[index_of(color)];
    int count = 0;
    for (const Square square : square_from_64) {
        const Piece piece = board_piece(board, square);
        if (piece == kEmpty) {
            continue;
        }
        if (!piece_is_ok(piece)) {
            return &kFaultPieceCode;
        }
        if (piece_color(piece) != color || piece_is_pawn(piece)) {
            continue;
        }
        if (count >= kMaxMen) {
            return &kFaultPieces;
        }
        list[index_of(count)] = packed(square);
        count_man(board, square, count);
        ++count;
    }
    if (board.kind_count[index_of(piece12_make(kKing, color))] != 1) {
        return &kFaultKings;
    }
    // White's bishops are counted on both passes.
    if (board.kind_count[kWhiteBishop12] > kMostBishopsWithoutWarning) {
        warn_line("X-Error 2EB1IP4");
    }
    list[index_of(count)] = kNoSquare;
    board.piece_count[index_of(color)] = count;
    sort_pieces(board, color);
    return nullptr;
}

const PositionFault* list_pawns(Board& board, Color color) {
    auto& list = board.pawn_list[index_of(color)];
    int count = 0;
    board.pawn_file[index_of(color)].fill(0);
    for (const Square square : square_from_64) {
        if (board_piece(board, square) != pawn_of(color)) {
            continue;
        }
        if (count >= kMaxPawns || square_is_promotion_rank(square)) {
            return &kFaultPawns;
        }
        list[index_of(count)] = packed(square);
        count_man(board, square, count);
        ++count;
        board.pawn_file[index_of(color)][index_of(square_column(square))] |=
            pawn_rank_bit(square, color);
    }
    list[index_of(count)] = kNoSquare;
    board.pawn_count[index_of(color)] = count;
    if (board_piece_count(board, color) + count > kMaxMen) {
        return &kFaultMen;
    }
    return nullptr;
}

// The squares of one colour's men, or of its pawns only.
SquareSet squares_of(const Board& board, Color color, bool pawns_only) {
    const int wanted = pawns_only ? pawn_bit(color) : color_bit(color);
    SquareSet squares = 0;
    for (const Square square : square_from_64) {
        if ((board_piece(board, square) & wanted) != 0) {
            squares |= set_of(square64_of(square));
        }
    }
    return squares;
}

struct PsqSum {
    int opening;
    int endgame;
};

PsqSum psq_sum(const Board& board) {
    PsqSum sum{0, 0};
    for (Color color = kWhite; color <= kBlack; ++color) {
        for (const SquareRange list : {board_pieces(board, color), board_pawns(board, color)}) {
            for (const Square square : list) {
                const PsqEntry entry =
                    psq_of(piece12_of(board_piece(board, square)), square64_of(square));
                sum.opening += entry.opening;
                sum.endgame += entry.endgame;
            }
        }
    }
    return sum;
}

bool list_is_consistent(const Board& board, Color color, SquareRange list, bool pawns) {
    int index = 0;
    int previous_type = kKing;
    for (const Square square : list) {
        const Piece piece = board_piece(board, square);
        if (!square_is_on_board(square) || !piece_is_ok(piece) || piece_color(piece) != color ||
            piece_is_pawn(piece) != pawns || board.list_index[index_of(square)] != index) {
            return false;
        }
        const int type = piece_type_of(piece);
        if (!pawns && ((index == 0) != (type == kKing) || type > previous_type)) {
            return false;
        }
        previous_type = type;
        ++index;
    }
    return *list.last == kNoSquare;
}

}  // namespace

void board_clear(Board& board) {
    board.square.fill(kEdge);
    for (const Square square : square_from_64) {
        board.square[index_of(square)] = kEmpty;
    }
    board.turn = -1;
    board.castle_flags = 0;
    board.ep_square = kNoSquare;
    board.ply_nb = 0;
}

void board_sum_psq(Board& board) {
    const PsqSum sum = psq_sum(board);
    board.pst_opening = sum.opening;
    board.pst_endgame = sum.endgame;
}

void board_fill_sets(Board& board) {
    for (Color color = kWhite; color <= kBlack; ++color) {
        board.men[index_of(color)] = squares_of(board, color, false);
        board.pawns[index_of(color)] = squares_of(board, color, true);
    }
}

const PositionFault* board_finish_setup(Board& board) {
    assert(board.turn == kWhite || board.turn == kBlack);
    assert(board.ply_nb >= 0 && board.ply_nb <= kMaxClock);
    board.list_index.fill(-1);
    board.total_count = 0;
    board.kind_count.fill(0);
    for (Color color = kWhite; color <= kBlack; ++color) {
        board.piece_list[index_of(color)].fill(kNoSquare);
        board.pawn_list[index_of(color)].fill(kNoSquare);
        if (const PositionFault* const fault = list_pieces(board, color)) {
            return fault;
        }
        if (const PositionFault* const fault = list_pawns(board, color)) {
            return fault;
        }
    }
    board_fill_sets(board);
    board.cap_sq = kNoSquare;
    board.moved_piece = kEmpty;
    board.last_move = 0;
    board_sum_psq(board);
    // The moves before the set-up are unknown: their slots hold a key that no position has.
    board.key_history.fill(0);
    board.sp = board.ply_nb;
    board.key = key_compute(board);
    board.pawn_key = pawn_key_compute(board);
    board.material_key = material_key_compute(board);
    return board_is_legal(board) ? nullptr : &kFaultCheck;
}

void board_copy(Board& to, const Board& from) {
    static_assert(offsetof(Board, key_history) + sizeof(from.key_history) == sizeof(Board));
    std::memcpy(&to, &from, offsetof(Board, key_history));
    std::copy_n(from.key_history.begin(), from.sp, to.key_history.begin());
}

void board_trim_history(Board& board, int keep) {
    if (board.sp <= keep) {
        return;
    }
    const auto first = board.key_history.begin() + (board.sp - keep);
    std::copy(first, first + keep, board.key_history.begin());
    board.sp = keep;
}

bool board_consistent(const Board& board) {
    std::array<int, kPieceKindCount> kinds{};
    std::array<std::array<std::uint8_t, 16>, 2> files{};
    int men = 0;
    for (Square square = 0; square < kSquareCount; ++square) {
        const Piece piece = board_piece(board, square);
        if (!square_is_on_board(square)) {
            if (piece != kEdge) {
                return false;
            }
            continue;
        }
        if (piece == kEmpty) {
            if (board.list_index[index_of(square)] != -1) {
                return false;
            }
            continue;
        }
        const Color color = piece_color(piece);
        ++men;
        ++kinds[index_of(piece12_of(piece))];
        if (piece_is_pawn(piece)) {
            files[index_of(color)][index_of(square_column(square))] |= pawn_rank_bit(square, color);
        }
    }
    int listed = 0;
    for (Color color = kWhite; color <= kBlack; ++color) {
        if (!list_is_consistent(board, color, board_pieces(board, color), false) ||
            !list_is_consistent(board, color, board_pawns(board, color), true) ||
            board.men[index_of(color)] != squares_of(board, color, false) ||
            board.pawns[index_of(color)] != squares_of(board, color, true)) {
            return false;
        }
        listed += board_piece_count(board, color) + board_pawn_count(board, color);
    }
    const PsqSum sum = psq_sum(board);
    return listed == men && board.total_count == men && board.kind_count == kinds &&
           board.pawn_file == files && board.pst_opening == sum.opening &&
           board.pst_endgame == sum.endgame && board.key == key_compute(board) &&
           board.pawn_key == pawn_key_compute(board) &&
           board.material_key == material_key_compute(board);
}

bool square_to_string(Square square, char* buffer, int size) {
    if (size < 3) {
        return false;
    }
    buffer[0] = static_cast<char>('a' + square_column(square) - kFirstLine);
    buffer[1] = static_cast<char>('1' + square_row(square) - kFirstLine);
    buffer[2] = '\0';
    return true;
}

Square square_from_string(std::string_view text) {
    if (text.size() != 2 || text[0] < 'a' || text[0] > 'h' || text[1] < '1' || text[1] > '8') {
        return kNoSquare;
    }
    return square_make(text[1] - '1' + kFirstLine, text[0] - 'a' + kFirstLine);
}

}  // namespace zar
