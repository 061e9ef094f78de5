// The opening book: a file of 16-byte entries in the Polyglot format, sorted by position key, read
// entry by entry from the open stream and never loaded. Only the command thread uses it.
//
//   bytes 0-7    position key, as board/key.h computes it
//   bytes 8-9    move: bits 0-5 to-square, 6-11 from-square, 12-14 promotion
//   bytes 10-11  weight: relative frequency of the move
//   bytes 12-15  for learning; read, never used
//
// All fields have their most significant byte first.
#pragma once

#include <cstdint>
#include <cstdio>

#include "board/board.h"
#include "board/move.h"

namespace zar {

constexpr int kBookEntrySize = 16;

struct BookEntry {
    std::uint64_t key;
    std::uint16_t move;
    std::uint16_t weight;
    std::uint16_t learn_high;
    std::uint16_t learn_low;
};

struct Book {
    std::FILE* file;           // null while no book is open
    std::int32_t entry_count;  // whole entries
};

// Without a file. To be called before anything else.
void book_reset(Book& book);

// Opens the file at this path, relative to the working directory. A path that cannot be opened, or
// is no regular file, leaves the book closed without a word. "X-Error 3EBK1RE1" when the end cannot
// be sought, "X-Error 3EBK1RE2" for a size of 2^36 - 16 bytes, whose count reads as -1.
void book_open(Book& book, const char* path);

// The same for a stream that is open already; the book then owns it.
void book_open_stream(Book& book, std::FILE* file);

// Harmless when no book is open. "X-Error 3EBK1RE3" when closing fails.
void book_close(Book& book);

// Reads the entry at an index from 0 on. "X-Error 3EBK1RE4" when it cannot be sought, "X-Error
// 3EBK1RE5" at the end of the file, "X-Error 3EBK1RE6" when reading fails otherwise.
[[nodiscard]] BookEntry book_read_entry(Book& book, std::int32_t index);

// A legal move that the book has for the position, chosen at random by weight; kMoveNone when it
// has none. Promotions and castling are told by from- and to-square alone.
[[nodiscard]] Move book_probe(Book& book, Board& board);

// The engine's book.
extern Book opening_book;

}  // namespace zar
