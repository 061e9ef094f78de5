// Whole opening books in memory. The engine never loads its book; the tools look at all of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "board/move.h"
#include "book/book.h"

namespace zar::tools {

constexpr int kHighestWeight = 65535;  // of an entry

struct BookFile {
    std::vector<BookEntry> entries;  // in the order of the file
    int trailing_bytes;              // behind the last whole entry, 0..15
};

// False when the file cannot be read.
[[nodiscard]] bool book_file_read(const std::string& path, BookFile& file);

// Replaces the file; false when it cannot be written.
[[nodiscard]] bool book_file_write(const std::string& path, const std::vector<BookEntry>& entries);

// A move as the file holds it: from- and to-square as the engine has them, castling as the king's
// move of two files, and in bits 12-14 the piece of a promotion, 1 knight to 4 queen, else 0.
[[nodiscard]] std::uint16_t book_code_of(Move move);

// The coordinate text of any code, whether such a move exists or not; bits that mean no promotion
// piece are shown as '?'.
[[nodiscard]] std::string book_code_name(std::uint16_t code);

}  // namespace zar::tools
