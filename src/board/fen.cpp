#include "board/fen.h"

#include <algorithm>
#include <cstdio>

#include "platform/fatal.h"

namespace zar {

namespace {

// The functions that read a field give what is wrong with it, or null.

// Reads a text one character at a time; behind its end it yields zeros forever.
struct Reader {
    std::string_view text;
    std::size_t place = 0;
};

char reader_peek(const Reader& reader, std::size_t ahead = 0) {
    const std::size_t place = reader.place + ahead;
    return place < reader.text.size() ? reader.text[place] : '\0';
}

char reader_next(Reader& reader) {
    const char next = reader_peek(reader);
    ++reader.place;
    return next;
}

bool is_digit(char character) { return character >= '0' && character <= '9'; }

// The end of the text counts as a white pawn here, so that a text cut short inside the placement
// fails at the next separator.
Piece piece_from_placement(char letter) {
    return letter == '\0' ? kWhitePawn : piece_from_char(letter);
}

const PositionFault* read_row(Board& board, Reader& reader, int row) {
    int column = kFirstLine;
    while (column <= kLastLine) {
        const char letter = reader_next(reader);
        if (letter >= '1' && letter <= '8') {
            column += letter - '0';
            if (column > kLastLine + 1) {
                return &kFaultLongRank;
            }
            continue;
        }
        const Piece piece = piece_from_placement(letter);
        if (piece == kEmpty) {
            return &kFaultPieceLetter;
        }
        board.square[static_cast<std::size_t>(square_make(row, column))] = packed(piece);
        ++column;
    }
    return nullptr;
}

const PositionFault* read_placement(Board& board, Reader& reader) {
    for (int row = kLastLine; row >= kFirstLine; --row) {
        if (const PositionFault* const fault = read_row(board, reader, row)) {
            return fault;
        }
        if (row > kFirstLine && reader_next(reader) != '/') {
            return &kFaultNoSlash;
        }
    }
    if (reader_next(reader) != ' ') {
        return &kFaultNoBlankBehindRanks;
    }
    return nullptr;
}

const PositionFault* read_turn(Board& board, Reader& reader) {
    const char letter = reader_next(reader);
    if (letter != 'w' && letter != 'b') {
        return &kFaultTurn;
    }
    board.turn = letter == 'w' ? kWhite : kBlack;
    if (reader_next(reader) != ' ') {
        return &kFaultNoBlankBehindTurn;
    }
    return nullptr;
}

struct CastlingRight {
    char letter;
    int flag;
    Color color;
    Square king;
    Square rook;
};

constexpr std::array<CastlingRight, 4> castling_rights = {{
    {'K', kWhiteKingSide, kWhite, kE1, kH1},
    {'Q', kWhiteQueenSide, kWhite, kE1, kA1},
    {'k', kBlackKingSide, kBlack, kE8, kH8},
    {'q', kBlackQueenSide, kBlack, kE8, kA8},
}};

const PositionFault* read_castling(Board& board, Reader& reader) {
    board.castle_flags = 0;
    if (reader_peek(reader) == '-') {
        ++reader.place;
    } else {
        for (const CastlingRight& right : castling_rights) {
            if (reader_peek(reader) != right.letter) {
                continue;
            }
            ++reader.place;
            if (board_piece(board, right.king) == king_of(right.color) &&
                board_piece(board, right.rook) == (kRookBit | color_bit(right.color))) {
                board.castle_flags |= right.flag;
            }
        }
    }
    if (reader_next(reader) != ' ') {
        return &kFaultCastling;
    }
    return nullptr;
}

// Is there a pawn that could take en passant on this square?
bool en_passant_is_possible(const Board& board, Square square) {
    const Square victim = square ^ kRowStep;
    const Piece taker = pawn_of(board.turn);
    return board_piece(board, square) == kEmpty &&
           board_piece(board, victim) == pawn_of(color_opposite(board.turn)) &&
           (board_piece(board, victim - 1) == taker || board_piece(board, victim + 1) == taker);
}

const PositionFault* read_en_passant(Board& board, Reader& reader) {
    board.ep_square = kNoSquare;
    const char file = reader_next(reader);
    if (file == '-') {
        return nullptr;
    }
    if (file < 'a' || file > 'h') {
        return &kFaultEnPassant;
    }
    const char rank = reader_next(reader);
    if (rank != (board.turn == kWhite ? '6' : '3')) {
        return &kFaultEnPassantRank;
    }
    const Square square = square_make(rank - '1' + kFirstLine, file - 'a' + kFirstLine);
    if (en_passant_is_possible(board, square)) {
        board.ep_square = square;
    }
    return nullptr;
}

const PositionFault* read_clock(Board& board, Reader& reader) {
    board.ply_nb = 0;
    if (reader_peek(reader) != ' ' || !is_digit(reader_peek(reader, 1))) {
        return nullptr;
    }
    ++reader.place;
    while (is_digit(reader_peek(reader))) {
        const int digit = reader_next(reader) - '0';
        board.ply_nb = std::min(board.ply_nb * 10 + digit, kMaxClock);
    }
    return nullptr;
}

char* write_placement(const Board& board, char* out) {
    for (int row = kLastLine; row >= kFirstLine; --row) {
        int empty = 0;
        for (int column = kFirstLine; column <= kLastLine; ++column) {
            const Piece piece = board_piece(board, square_make(row, column));
            if (piece == kEmpty) {
                ++empty;
                continue;
            }
            if (empty > 0) {
                *out++ = static_cast<char>('0' + empty);
                empty = 0;
            }
            *out++ = piece_to_char(piece);
        }
        if (empty > 0) {
            *out++ = static_cast<char>('0' + empty);
        }
        *out++ = row > kFirstLine ? '/' : ' ';
    }
    return out;
}

char* write_castling(const Board& board, char* out) {
    if (board.castle_flags == 0) {
        *out++ = '-';
    }
    for (const CastlingRight& right : castling_rights) {
        if ((board.castle_flags & right.flag) != 0) {
            *out++ = right.letter;
        }
    }
    *out++ = ' ';
    return out;
}

}  // namespace

const PositionFault* board_read_fen(Board& board, std::string_view text) {
    Reader reader{text};
    board_clear(board);
    for (const auto read_field :
         {read_placement, read_turn, read_castling, read_en_passant, read_clock}) {
        if (const PositionFault* const fault = read_field(board, reader)) {
            return fault;
        }
    }
    return board_finish_setup(board);
}

void board_from_fen(Board& board, std::string_view text) {
    if (const PositionFault* const fault = board_read_fen(board, text)) {
        fatal_error("%s", fault->code);
    }
}

bool board_to_fen(const Board& board, char* buffer, int size) {
    if (size < kFenSize) {
        return false;
    }
    char* out = write_placement(board, buffer);
    *out++ = board.turn == kWhite ? 'w' : 'b';
    *out++ = ' ';
    out = write_castling(board, out);
    if (board.ep_square == kNoSquare) {
        *out++ = '-';
    } else {
        square_to_string(board.ep_square, out, 3);
        out += 2;
    }
    *out++ = ' ';
    std::snprintf(out, static_cast<std::size_t>(buffer + size - out), "%d 1", board.ply_nb);
    return true;
}

}  // namespace zar
