#include "book_lines.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <optional>
#include <sstream>

#include "board/fen.h"
#include "board/make.h"
#include "board/movegen.h"
#include "book_file.h"
#include "move_names.h"
#include "text_line.h"

namespace zar::tools {

namespace {

constexpr int kHighestWeight = 65535;

// A number from 1 to 65535 with blanks around it, and nothing else.
std::optional<int> weight_of(const std::string& text) {
    std::istringstream words(text);
    std::string word;
    std::string rest;
    words >> word >> rest;
    int weight = 0;
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, weight);
    if (error != std::errc{} || stop != end || !rest.empty() || weight < 1 ||
        weight > kHighestWeight) {
        return std::nullopt;
    }
    return weight;
}

// The legal move that is written exactly so.
std::optional<Move> legal_move_of(Board& board, const std::string& text) {
    MoveList legal;
    gen_legal_moves(legal, board);
    for (const Move move : span_of(legal)) {
        if (name_of(move) == text) {
            return move;
        }
    }
    return std::nullopt;
}

// Plays the moves from the start position and adds each; the first that is not legal is returned.
std::optional<std::string> play(const std::string& line, int weight, BookMoves& moves) {
    static Board board;
    board_from_fen(board, kStartFen);
    std::istringstream words(line);
    for (std::string word; words >> word;) {
        const std::optional<Move> move = legal_move_of(board, word);
        if (!move) {
            return word;
        }
        moves[board.key][book_code_of(*move)] += static_cast<std::uint64_t>(weight);
        // Lines may be longer than the history that the board has room for.
        board_trim_history(board, 0);
        UndoInfo undo;
        move_do(board, *move, undo);
    }
    return std::nullopt;
}

// What is wrong with a line, if anything is.
std::optional<std::string> add_line(std::string line, BookMoves& moves) {
    line.erase(std::min(line.find('#'), line.size()));
    int weight = 1;
    if (const std::size_t colon = line.find(':'); colon != std::string::npos) {
        const std::optional<int> found = weight_of(line.substr(0, colon));
        if (!found) {
            return "the weight is no number from 1 to 65535, the line is dropped";
        }
        weight = *found;
        line.erase(0, colon + 1);
    }
    if (const std::optional<std::string> illegal = play(line, weight, moves)) {
        return *illegal + " is no legal move here, the rest of the line is dropped";
    }
    return std::nullopt;
}

}  // namespace

int book_lines_read(std::istream& text, const std::string& name, BookMoves& moves) {
    int faults = 0;
    int number = 0;
    for (std::string line; next_line(text, line, number);) {
        if (const std::optional<std::string> fault = add_line(line, moves)) {
            std::cerr << name << ":" << number << ": " << *fault << "\n";
            ++faults;
        }
    }
    return faults;
}

std::vector<BookEntry> book_lines_entries(const BookMoves& moves) {
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
