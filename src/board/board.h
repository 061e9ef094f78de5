// The one position record: a 16x16 mailbox with an edge ring, ordered lists of men, counts, and
// sums, keys and sets of squares that are kept up to date move by move. A flat record without
// pointers, copied whole.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "board/geometry.h"
#include "board/piece.h"
#include "board/position_fault.h"
#include "board/types.h"

namespace zar {

constexpr int kKeyHistorySize = 4096;
constexpr int kMaxMen = 16;      // of one colour, pawns included
constexpr int kMaxPawns = 8;     // of one colour
constexpr int kMaxClock = 1000;  // cap of the half-move clock read from a FEN text

// A square or a piece code in the byte that a Board keeps of it.
[[nodiscard]] constexpr std::uint8_t packed(std::ptrdiff_t code) noexcept {
    return static_cast<std::uint8_t>(code);
}

// Squares, pieces and places in lists take a byte each, so that the board stays in few cache lines.
struct Board {
    // Piece code of every cell: 0 empty, 16 edge.
    std::array<std::uint8_t, kSquareCount> square;
    // Place of the man on this square in its colour's piece or pawn list; -1 elsewhere.
    std::array<std::int8_t, kSquareCount> list_index;
    // Squares of the non-pawn men of each colour, ended by 0. Entry 0 is the king; the others are
    // ordered queens, rooks, bishops, knights, men of one type in the order they were listed.
    std::array<std::array<std::uint8_t, 32>, 2> piece_list;
    std::array<int, 2> piece_count;
    // Squares of the pawns of each colour, ended by 0.
    std::array<std::array<std::uint8_t, 16>, 2> pawn_list;
    std::array<int, 2> pawn_count;
    // Men on the board, kings and pawns included, and how many of each of the twelve kinds.
    int total_count;
    std::array<int, kPieceKindCount> kind_count;
    // Per colour and mailbox column: bit n set for a pawn on the colour's own rank n + 1.
    std::array<std::array<std::uint8_t, 16>, 2> pawn_file;
    // Number of entries in `key_history`.
    int sp;
    // From here to `last_move`: what changes with every move. UndoInfo keeps it in the same order,
    // so that it is saved and restored as one piece.
    Color turn;
    // Square that an en-passant capture would move to; 0 unless an enemy pawn stands beside the
    // pawn that has just made its double step.
    Square ep_square;
    // To-square of the last move if it captured or promoted, else 0.
    Square cap_sq;
    // Keys of the whole position, of the pawns alone and of the counts of men. See key.h.
    std::uint64_t key;
    std::uint64_t pawn_key;
    std::uint64_t material_key;
    // Per colour, the squares of its men, and those of its pawns.
    std::array<SquareSet, 2> men;
    std::array<SquareSet, 2> pawns;
    int castle_flags;
    // Half-moves since the last capture or pawn move.
    int ply_nb;
    // Sums of the piece-square values of all men, White's view.
    int pst_opening;
    int pst_endgame;
    // Piece code that made the last move; 0 after set-up and null moves.
    Piece moved_piece;
    // The last move, a legal one; 0 after set-up, and kMoveNull after a null move.
    Move last_move;
    // Keys of the positions before this one, oldest first.
    std::array<std::uint64_t, kKeyHistorySize> key_history;
};

[[nodiscard]] inline Piece board_piece(const Board& board, Square square) noexcept {
    return board.square[static_cast<std::size_t>(square)];
}

[[nodiscard]] inline Square board_king(const Board& board, Color color) noexcept {
    return board.piece_list[static_cast<std::size_t>(color)][0];
}

[[nodiscard]] inline int board_piece_count(const Board& board, Color color) noexcept {
    return board.piece_count[static_cast<std::size_t>(color)];
}

[[nodiscard]] inline int board_pawn_count(const Board& board, Color color) noexcept {
    return board.pawn_count[static_cast<std::size_t>(color)];
}

// The squares of all men.
[[nodiscard]] inline SquareSet board_men(const Board& board) noexcept {
    return board.men[kWhite] | board.men[kBlack];
}

// A range over the entries of a list that ends with 0, for the men that are listed at this moment.
struct SquareRange {
    const std::uint8_t* first;
    const std::uint8_t* last;
    [[nodiscard]] const std::uint8_t* begin() const noexcept { return first; }
    [[nodiscard]] const std::uint8_t* end() const noexcept { return last; }
};

// All non-pawn men of a colour, king first.
[[nodiscard]] inline SquareRange board_pieces(const Board& board, Color color) noexcept {
    const std::uint8_t* list = board.piece_list[static_cast<std::size_t>(color)].data();
    return {list, list + board_piece_count(board, color)};
}

// All non-pawn men of a colour but the king.
[[nodiscard]] inline SquareRange board_officers(const Board& board, Color color) noexcept {
    const SquareRange pieces = board_pieces(board, color);
    return {pieces.first + 1, pieces.last};
}

[[nodiscard]] inline SquareRange board_pawns(const Board& board, Color color) noexcept {
    const std::uint8_t* list = board.pawn_list[static_cast<std::size_t>(color)].data();
    return {list, list + board_pawn_count(board, color)};
}

// The rank bit that a pawn of this colour on this square sets in its column's `pawn_file` word.
[[nodiscard]] constexpr std::uint8_t pawn_rank_bit(Square square, Color color) noexcept {
    return static_cast<std::uint8_t>(1 << (square_relative_row(square, color) - kFirstLine));
}

// Empties all squares and the side, castling, en-passant and half-move fields. Lists, counts, keys
// and sets are left as they are: board_finish_setup rebuilds them.
void board_clear(Board& board);

// Builds lists, counts, sums, history, keys and sets from the squares, `turn`, `castle_flags`,
// `ep_square` and `ply_nb` (0..kMaxClock). Null for a position, else what is wrong with it. More
// than nine white bishops only warn.
[[nodiscard]] const PositionFault* board_finish_setup(Board& board);

// Fills the sets of men and pawns from the squares; board_finish_setup does it.
void board_fill_sets(Board& board);

// Copies the whole record, of the history what is in use.
void board_copy(Board& to, const Board& from);

// Sums the piece-square values of all men afresh; needed after psq_table has been rebuilt.
void board_sum_psq(Board& board);

// Forgets all but the newest `keep` entries of the key history.
void board_trim_history(Board& board, int keep);

// Do lists, counts, sums, keys and sets agree with the squares? For asserts and tests.
[[nodiscard]] bool board_consistent(const Board& board);

// Writes two characters and a zero; false, with nothing written, when size is below 3.
bool square_to_string(Square square, char* buffer, int size);

// 'a'..'h' then '1'..'8' and nothing else; 0 for any other text.
[[nodiscard]] Square square_from_string(std::string_view text);

}  // namespace zar
