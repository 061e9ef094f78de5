// What opening lines come to: moves with weights by position, and from them a book's entries.
// Positions are told by their key, so lines meet where they transpose, and the weights of equal
// moves of a position are summed.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "board/board.h"
#include "book/book.h"

namespace zar::tools {

// Weight sums by position key, then by move code.
using BookMoves = std::map<std::uint64_t, std::map<std::uint16_t, std::uint64_t>>;

// A text of opening lines that is being read.
struct BookText {
    std::string name;    // for messages
    int most_plies = 0;  // to be taken of a line or game
    int number = 0;      // of the line read last, from 1
    int faults = 0;
    BookMoves moves;
};

// Reports a fault on standard error as "NAME:LINE: ..." and counts it.
void book_fault(BookText& text, const std::string& fault);

// Words that may stand among moves and mean none: "12." and "3...", "$1", "e.p.", and the result of
// a game. What of a word is left without a number in front, "e4" of "1.e4", is given back.
[[nodiscard]] std::string_view book_word(std::string_view word);
[[nodiscard]] bool book_is_result(std::string_view word);

// Adds a move and plays it. Empty when it is legal, else what is wrong with it, which it names.
[[nodiscard]] std::string book_add_move(BookText& text, std::string_view word, int weight,
                                        Board& board);

// The entries in the order of the file: by key, then by weight from the highest down, then by code.
// Where a sum passes 65535, all weights of that position are scaled down until the highest is
// 65535, and none below 1: a weight counts only against the others of its position.
[[nodiscard]] std::vector<BookEntry> book_entries(const BookMoves& moves);

}  // namespace zar::tools
