// Opening lines as text, one a line, and the book entries that they come to:
//
//     # Ruy Lopez                          a comment; it may stand behind a line too
//     e2e4 e7e5 g1f3 b8c6 f1b5 a7a6        moves from the start position
//     3: d2d4 d7d5 c2c4                    the same with a weight, 1..65535; it is 1 elsewhere
//
// Every move of a line gets the line's weight. Positions are told by their key, so lines meet where
// they transpose, and the weights of equal moves of a position are summed.
#pragma once

#include <cstdint>
#include <istream>
#include <map>
#include <string>
#include <vector>

#include "book/book.h"

namespace zar::tools {

// Weight sums by position key, then by move code.
using BookMoves = std::map<std::uint64_t, std::map<std::uint16_t, std::uint64_t>>;

// Adds the lines of a text. A fault costs the rest of its line, the whole line if it is one of the
// weight, and is reported on standard error as "NAME:LINE: ...". Returns the number of faults.
[[nodiscard]] int book_lines_read(std::istream& text, const std::string& name, BookMoves& moves);

// The entries in the order of the file: by key, then by weight from the highest down, then by code.
// Where a sum passes 65535, all weights of that position are scaled down until the highest is
// 65535, and none below 1: a weight counts only against the others of its position.
[[nodiscard]] std::vector<BookEntry> book_lines_entries(const BookMoves& moves);

}  // namespace zar::tools
