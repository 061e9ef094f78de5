#include "board/make.h"

#include <cassert>
#include <cstddef>
#include <cstring>

#include "board/key.h"
#include "board/psq_table.h"
#include "board/set.h"

namespace zar {

namespace {

std::size_t index_of(std::ptrdiff_t value) { return static_cast<std::size_t>(value); }

// Place of the man on the square in its list; -1 for an empty square.
int place_of(const Board& board, Square square) {
    return static_cast<int>(board.list_index[index_of(square)]);
}

void set_cell(Board& board, Square square, Piece piece) {
    board.square[index_of(square)] = packed(piece);
}

// Adds a man to the sets of its squares, or takes it away.
void toggle_sets(Board& board, SquareSet squares, Piece piece) {
    const std::size_t color = index_of(piece_color(piece));
    board.men[color] ^= squares;
    if (piece_is_pawn(piece)) {
        board.pawns[color] ^= squares;
    }
}

// A list of men and its length, whichever of a colour's two lists the piece belongs to.
struct ManList {
    std::uint8_t* square;
    int* count;
};

ManList list_of(Board& board, Piece piece) {
    const std::size_t color = index_of(piece_color(piece));
    if (piece_is_pawn(piece)) {
        return {board.pawn_list[color].data(), &board.pawn_count[color]};
    }
    return {board.piece_list[color].data(), &board.piece_count[color]};
}

void toggle_pawn_file(Board& board, Square square, Color color) {
    board.pawn_file[index_of(color)][index_of(square_column(square))] ^=
        pawn_rank_bit(square, color);
}

// The later entries close up and the freed last slot becomes the end mark.
void list_remove(Board& board, const ManList& list, int index) {
    const int last = *list.count - 1;
    for (int i = index; i < last; ++i) {
        const std::uint8_t square = list.square[i + 1];
        list.square[i] = square;
        board.list_index[square] = static_cast<std::int8_t>(i);
    }
    list.square[last] = kNoSquare;
    *list.count = last;
}

// The entries from `index` on move up by one.
void list_insert(Board& board, const ManList& list, int index, Square man) {
    for (int i = *list.count; i > index; --i) {
        const std::uint8_t square = list.square[i - 1];
        list.square[i] = square;
        board.list_index[square] = static_cast<std::int8_t>(i);
    }
    list.square[index] = packed(man);
    board.list_index[index_of(man)] = static_cast<std::int8_t>(index);
    *list.count += 1;
    list.square[*list.count] = kNoSquare;
}

// Takes a man off the board. With `update_state`, sums, keys and sets follow; unmaking leaves that
// out, since it restores them from the record. Taken into its callers, which know what they clear:
// 8 instructions a node less.
[[gnu::always_inline]] inline void square_clear(Board& board, Square square, Piece piece,
                                                bool update_state) {
    const Color color = piece_color(piece);
    const int kind = piece12_of(piece);
    const int index = place_of(board, square);
    assert(index >= 0 && board_piece(board, square) == piece);
    set_cell(board, square, kEmpty);
    board.list_index[index_of(square)] = -1;
    list_remove(board, list_of(board, piece), index);
    if (piece_is_pawn(piece)) {
        toggle_pawn_file(board, square, color);
    }
    board.total_count -= 1;
    board.kind_count[index_of(kind)] -= 1;
    if (update_state) {
        toggle_sets(board, set_of(square64_of(square)), piece);
        const PsqEntry& psq = psq_of(kind, square64_of(square));
        board.pst_opening -= psq.opening;
        board.pst_endgame -= psq.endgame;
        const std::uint64_t term = piece_key_of(kind, square64_of(square));
        board.key ^= term;
        if (piece_is_pawn(piece)) {
            board.pawn_key ^= term;
        }
        board.material_key ^= material_key_of(kind, board.kind_count[index_of(kind)]);
    }
}

// Puts a man at a place of its list, without touching sums, keys and sets.
void square_put(Board& board, Square square, Piece piece, int index) {
    const Color color = piece_color(piece);
    assert(board_piece(board, square) == kEmpty);
    set_cell(board, square, piece);
    list_insert(board, list_of(board, piece), index, square);
    if (piece_is_pawn(piece)) {
        toggle_pawn_file(board, square, color);
    }
    board.total_count += 1;
    board.kind_count[index_of(piece12_of(piece))] += 1;
}

// Moves a man to an empty square, without touching sums, keys and sets.
[[gnu::always_inline]] inline void square_shift(Board& board, Square from, Square to, Piece piece) {
    const int index = place_of(board, from);
    assert(index >= 0 && board_piece(board, from) == piece && board_piece(board, to) == kEmpty);
    set_cell(board, from, kEmpty);
    board.list_index[index_of(from)] = -1;
    set_cell(board, to, piece);
    board.list_index[index_of(to)] = static_cast<std::int8_t>(index);
    const Color color = piece_color(piece);
    if (piece_is_pawn(piece)) {
        board.pawn_list[index_of(color)][index_of(index)] = packed(to);
        toggle_pawn_file(board, from, color);
        toggle_pawn_file(board, to, color);
    } else {
        board.piece_list[index_of(color)][index_of(index)] = packed(to);
    }
}

[[gnu::always_inline]] inline void square_move(Board& board, Square from, Square to, Piece piece) {
    square_shift(board, from, to, piece);
    const int kind = piece12_of(piece);
    const Square64 from64 = square64_of(from);
    const Square64 to64 = square64_of(to);
    toggle_sets(board, set_of(from64) | set_of(to64), piece);
    const PsqEntry& old_psq = psq_of(kind, from64);
    const PsqEntry& new_psq = psq_of(kind, to64);
    board.pst_opening += new_psq.opening - old_psq.opening;
    board.pst_endgame += new_psq.endgame - old_psq.endgame;
    const std::uint64_t term = piece_key_of(kind, from64) ^ piece_key_of(kind, to64);
    board.key ^= term;
    if (piece_is_pawn(piece)) {
        board.pawn_key ^= term;
    }
}

// A new piece stands behind the last entry whose code is not below its own: behind the king and its
// own kind, ahead of weaker ones.
int promotion_index(const Board& board, Piece piece) {
    const Color color = piece_color(piece);
    const auto& list = board.piece_list[index_of(color)];
    int index = board_piece_count(board, color);
    while (board_piece(board, list[index_of(index - 1)]) < piece) {
        --index;
    }
    return index;
}

[[gnu::noinline]] void promote(Board& board, Move move, Piece pawn, UndoInfo& undo) {
    const Square from = move_from(move);
    const Square to = move_to(move);
    undo.pawn_index = place_of(board, from);
    square_clear(board, from, pawn, true);
    const Piece piece = move_promote(move);
    const int kind = piece12_of(piece);
    board.material_key ^= material_key_of(kind, board.kind_count[index_of(kind)]);
    square_put(board, to, piece, promotion_index(board, piece));
    toggle_sets(board, set_of(square64_of(to)), piece);
    const PsqEntry& psq = psq_of(kind, square64_of(to));
    board.pst_opening += psq.opening;
    board.pst_endgame += psq.endgame;
    board.key ^= piece_key_of(kind, square64_of(to));
    board.cap_sq = to;
}

struct RookMove {
    Square from;
    Square to;
};

// The rook's part of castling, by the king's to-square; no squares for any other.
RookMove castling_rook(Square king_to) {
    switch (king_to) {
        case kG1:
            return {kH1, kF1};
        case kC1:
            return {kA1, kD1};
        case kG8:
            return {kH8, kF8};
        case kC8:
            return {kA8, kD8};
        default:
            return {kNoSquare, kNoSquare};
    }
}

// The rook's part of castling, forward and back.
[[gnu::noinline]] void castle(Board& board, Square king_to) {
    const RookMove rook = castling_rook(king_to);
    if (rook.from != kNoSquare) {
        square_move(board, rook.from, rook.to, board_piece(board, rook.from));
    }
}

[[gnu::noinline]] void uncastle(Board& board, Square king_to) {
    const RookMove rook = castling_rook(king_to);
    if (rook.from != kNoSquare) {
        square_shift(board, rook.to, rook.from, board_piece(board, rook.to));
    }
}

// What changes with every move lies together, in the same order in both records, and is copied as
// one piece: 25 instructions a node less than field by field. The piece ends where the next field
// begins, since a copy of an odd size ends with two words that overlap, and a processor waits for
// these before it reads them again.
constexpr std::size_t kStateStart = offsetof(Board, turn);
constexpr std::size_t kStateSize = offsetof(Board, key_history) - kStateStart;
static_assert(offsetof(UndoInfo, cap_square) == kStateSize);
static_assert(offsetof(UndoInfo, turn) == 0);
static_assert(offsetof(UndoInfo, key) == offsetof(Board, key) - kStateStart);
static_assert(offsetof(UndoInfo, castle_flags) == offsetof(Board, castle_flags) - kStateStart);
static_assert(offsetof(UndoInfo, last_move) == offsetof(Board, last_move) - kStateStart);

void save_state(const Board& board, UndoInfo& undo) {
    std::memcpy(&undo, reinterpret_cast<const std::byte*>(&board) + kStateStart, kStateSize);
}

void restore_state(Board& board, const UndoInfo& undo) {
    std::memcpy(reinterpret_cast<std::byte*>(&board) + kStateStart, &undo, kStateSize);
}

void push_key(Board& board) {
    assert(board.sp < kKeyHistorySize);
    board.key_history[index_of(board.sp++)] = board.key;
}

void clear_en_passant(Board& board) {
    if (board.ep_square != kNoSquare) {
        board.key ^= ep_key_of(board.ep_square);
        board.ep_square = kNoSquare;
    }
}

// A double step can be answered en passant only with an enemy pawn beside the arrival square.
void set_en_passant(Board& board, Square from, Square to) {
    if (to - from != 2 * kRowStep && to - from != -2 * kRowStep) {
        return;
    }
    const Piece enemy = pawn_of(board.turn);
    if (board_piece(board, to - 1) == enemy || board_piece(board, to + 1) == enemy) {
        board.ep_square = (from + to) / 2;
        board.key ^= ep_key_of(to);
    }
}

// Takes the victim, which there is, off its square and notes it. Into both callers, as is play:
// each knows more of the move than a function for both could.
[[gnu::always_inline]] inline void capture(Board& board, Square victim, Square to, UndoInfo& undo) {
    const Piece piece = board_piece(board, victim);
    assert(piece != kEmpty);
    undo.captured = true;
    undo.cap_square = victim;
    undo.cap_piece = piece;
    undo.cap_index = place_of(board, victim);
    square_clear(board, victim, piece, true);
    board.ply_nb = 0;
    board.cap_sq = to;
}

// Kept out of its caller, as rarely needed: rights go a few times in a game.
[[gnu::noinline]] void set_rights(Board& board, int flags) {
    board.key ^= castle_key_of(flags ^ board.castle_flags);
    board.castle_flags = flags;
}

// What a move may be, as far as playing it goes. Three of five are plain, and most others captures:
// a way of its own for each spares them each other's questions, 15 and 12 instructions a node.
enum class Play {
    plain,    // neither a capture nor castling nor promotion
    capture,  // of a man on the to-square, without promotion
    special,  // castling, promotion, en passant
};

template <Play kPlay>
[[gnu::always_inline]] inline void play(Board& board, Move move, UndoInfo& undo) {
    save_state(board, undo);
    undo.captured = false;
    const Square from = move_from(move);
    const Square to = move_to(move);
    const Piece piece = board_piece(board, from);
    assert(piece_is_ok(piece) && piece_color(piece) == board.turn);
    board.moved_piece = piece;
    board.last_move = move;
    push_key(board);
    board.turn = color_opposite(board.turn);
    board.key ^= random64[kTurnKeyIndex];
    clear_en_passant(board);
    if constexpr (kPlay == Play::capture) {
        // It sets what counts from the last move, and a capturing pawn makes no double step.
        capture(board, to, to, undo);
    } else {
        if (piece_is_pawn(piece)) {
            set_en_passant(board, from, to);
            board.ply_nb = 0;
        } else {
            board.ply_nb += 1;
        }
        board.cap_sq = kNoSquare;
    }
    if (kPlay == Play::special && move_is_capture(move, board)) {
        capture(board, move_is_en_passant(move) ? to ^ kRowStep : to, to, undo);
    }
    if (kPlay == Play::special && move_is_promotion(move)) {
        promote(board, move, piece, undo);
    } else {
        square_move(board, from, to, piece);
    }
    if (kPlay == Play::special && move_kind(move) == kKindCastling) {
        castle(board, to);
    }
    const int flags = board.castle_flags & castle_mask_of(from) & castle_mask_of(to);
    if (flags != board.castle_flags) {
        set_rights(board, flags);
    }
}

[[gnu::noinline]] void play_capture(Board& board, Move move, UndoInfo& undo) {
    play<Play::capture>(board, move, undo);
}

[[gnu::noinline]] void play_special(Board& board, Move move, UndoInfo& undo) {
    play<Play::special>(board, move, undo);
}

[[gnu::noinline]] void put_back(Board& board, const UndoInfo& undo) {
    square_put(board, undo.cap_square, undo.cap_piece, undo.cap_index);
}

// What is left to do once the mover has been taken back.
[[gnu::always_inline]] inline void finish_undo(Board& board, const UndoInfo& undo) {
    restore_state(board, undo);
    board.sp -= 1;
    if (undo.captured) {
        put_back(board, undo);
    }
}

// Takes back castling or a promotion.
[[gnu::noinline]] void undo_special(Board& board, Move move, const UndoInfo& undo) {
    const Square from = move_from(move);
    const Square to = move_to(move);
    if (move_is_promotion(move)) {
        square_clear(board, to, board_piece(board, to), false);
        square_put(board, from, pawn_of(undo.turn), undo.pawn_index);
    } else {
        uncastle(board, to);
        square_shift(board, to, from, board.moved_piece);
    }
    finish_undo(board, undo);
}

}  // namespace

void move_do(Board& board, Move move, UndoInfo& undo) {
    if (move_kind(move) != kKindNormal) {
        play_special(board, move, undo);
    } else if (board_piece(board, move_to(move)) != kEmpty) {
        play_capture(board, move, undo);
    } else {
        play<Play::plain>(board, move, undo);
    }
    assert(board_consistent(board));
}

void move_undo(Board& board, Move move, const UndoInfo& undo) {
    if (move_kind(move) == kKindNormal || move_is_en_passant(move)) {
        square_shift(board, move_to(move), move_from(move), board.moved_piece);
        finish_undo(board, undo);
    } else {
        undo_special(board, move, undo);
    }
    assert(board_consistent(board));
}

void move_do_null(Board& board, UndoInfo& undo) {
    save_state(board, undo);
    push_key(board);
    board.turn = color_opposite(board.turn);
    board.key ^= random64[kTurnKeyIndex];
    clear_en_passant(board);
    board.ply_nb = 0;
    board.cap_sq = kNoSquare;
    board.moved_piece = kEmpty;
    board.last_move = kMoveNull;
    assert(board_consistent(board));
}

void move_undo_null(Board& board, const UndoInfo& undo) {
    restore_state(board, undo);
    board.sp -= 1;
    assert(board_consistent(board));
}

}  // namespace zar
