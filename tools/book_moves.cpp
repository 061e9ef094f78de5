#include "book_moves.h"

#include <algorithm>
#include <iostream>

#include "board/make.h"
#include "book_file.h"
#include "san.h"
#include "text_line.h"

namespace zar::tools {

void book_fault(BookText& text, const std::string& fault) {
    std::cerr << text.name << ":" << text.number << ": " << fault << "\n";
    ++text.faults;
}

bool book_is_result(std::string_view word) {
    return word == "1-0" || word == "0-1" || word == "1/2-1/2" || word == "*";
}

std::string_view book_word(std::string_view word) {
    if (word.starts_with('$') || word == "e.p." || book_is_result(word)) {
        return "";
    }
    const std::size_t dot = std::min(word.find_first_not_of("0123456789"), word.size());
    if (dot < word.size() && word[dot] == '.') {
        word.remove_prefix(std::min(word.find_first_not_of('.', dot), word.size()));
    }
    return word;
}

std::string book_add_move(BookText& text, std::string_view word, int weight, Board& board) {
    const SanMove found = move_read(word, board);
    if (found.fault != nullptr) {
        return printable(word) + " " + found.fault;
    }
    text.moves[board.key][book_code_of(found.move)] += static_cast<std::uint64_t>(weight);
    // Lines may be longer than the history that the board has room for.
    board_trim_history(board, 0);
    UndoInfo undo;
    move_do(board, found.move, undo);
    return "";
}

std::vector<BookEntry> book_entries(const BookMoves& moves) {
    constexpr std::uint64_t highest_weight = kHighestWeight;
    std::vector<BookEntry> entries;
    for (const auto& [key, sums] : moves) {
        std::uint64_t highest = highest_weight;
        for (const auto& [move, sum] : sums) {
            highest = std::max(highest, sum);
        }
        const std::size_t first = entries.size();
        for (const auto& [move, sum] : sums) {
            const std::uint64_t scaled = sum * highest_weight / highest;
            const auto weight = static_cast<std::uint16_t>(std::max<std::uint64_t>(scaled, 1));
            entries.push_back({key, move, weight, 0, 0});
        }
        std::stable_sort(
            entries.begin() + static_cast<std::ptrdiff_t>(first), entries.end(),
            [](const BookEntry& a, const BookEntry& b) { return a.weight > b.weight; });
    }
    return entries;
}

}  // namespace zar::tools
