// book: makes opening books from text, shows what they hold and finds what is wrong with them.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "book_faults.h"
#include "book_file.h"
#include "book_lines.h"
#include "book_pgn.h"
#include "commands.h"
#include "message.h"
#include "options.h"
#include "position_text.h"
#include "positions.h"
#include "text_line.h"

namespace zar::tools {

namespace {

constexpr int kFailed = 1;
constexpr int kMostPlies = 1000000;

struct Arguments {
    std::string lines;
    std::string file;
    int plies = kMostPlies;
    std::vector<std::string> words;
};

BookFile read_book(const std::string& path) {
    BookFile file;
    if (!book_file_read(path, file)) {
        fail(path + ": cannot be read", kFailed);
    }
    return file;
}

// Takes the text for games or for plain lines by the first line that is not blank.
void read_lines(std::istream& stream, BookText& text) {
    static PgnGame game;
    bool is_known = false;
    bool is_pgn = false;
    pgn_start(game);
    for (std::string line; next_line(stream, line, text.number);) {
        if (!is_known && !single_blanks(line).empty()) {
            is_known = true;
            is_pgn = pgn_begins(line, text.name);
        }
        if (is_pgn) {
            pgn_add_line(game, text, line);
        } else {
            book_add_line(text, line);
        }
    }
    pgn_end(game, text);
}

void make(const Arguments& arguments) {
    BookText text{.name = arguments.lines, .most_plies = arguments.plies, .moves = {}};
    std::ifstream stream;
    if (arguments.lines == "-") {
        text.name = kStandardInput;
        read_lines(std::cin, text);
        fail_if_input_is_broken(kFailed);
    } else {
        stream.open(arguments.lines);
        read_lines(stream, text);
        if (!stream.is_open() || stream.bad()) {
            fail(arguments.lines + ": cannot be read", kFailed);
        }
    }
    if (!book_file_write(arguments.file, book_entries(text.moves))) {
        fail(arguments.file + ": cannot be written", kFailed);
    }
    if (text.faults > 0) {
        throw CLI::RuntimeError(kFailed);
    }
}

void show_position(const BookFile& file, const Board& board) {
    std::vector<BookEntry> found;
    int sum = 0;
    for (const BookEntry& entry : file.entries) {
        if (entry.key == board.key) {
            found.push_back(entry);
            sum += entry.weight;
        }
    }
    if (found.empty()) {
        fail("no move for this position", kFailed);
    }
    for (const BookEntry& entry : found) {
        const double per_cent = sum == 0 ? 0.0 : 100.0 * entry.weight / sum;
        std::printf("%-5s %5d %6.2f%%\n", book_code_name(entry.move).c_str(), entry.weight,
                    per_cent);
    }
}

void show(const Arguments& arguments) {
    static Board board;
    const BookFile file = read_book(arguments.file);
    PositionInput input = positions_of(arguments.words);
    while (positions_next(input, board)) {
        std::printf("%s", input.count > 1 ? "\n" : "");
        show_position(file, board);
    }
    positions_end(input);
}

void check(const Arguments& arguments) {
    const BookFile file = read_book(arguments.file);
    const std::vector<std::string> faults = book_faults(file);
    for (const std::string& fault : faults) {
        std::cout << fault << "\n";
    }
    std::set<std::uint64_t> keys;
    for (const BookEntry& entry : file.entries) {
        keys.insert(entry.key);
    }
    std::cout << file.entries.size() << " entries, " << keys.size() << " positions, "
              << faults.size() << " faults\n";
    if (!faults.empty()) {
        throw CLI::RuntimeError(kFailed);
    }
}

}  // namespace

void add_book(CLI::App& app) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand("book", "Make, show and check opening books");
    command->require_subcommand(1);

    CLI::App* maker = command->add_subcommand(
        "make",
        "Make a book from lines of moves, in coordinates or standard notation, or from games in "
        "PGN; exit status 1 when a line is at fault");
    maker
        ->add_option("LINES", arguments->lines,
                     "text: \"3: e2e4 e7e5\", # for comments; or PGN; - is standard input")
        ->required();
    maker->add_option("OUT", arguments->file, "book to write")->required();
    maker->add_option("--plies", arguments->plies, "how much to take of each line (default: all)")
        ->transform(number_between(1, kMostPlies));
    maker->callback([arguments] { make(*arguments); });

    CLI::App* shower = command->add_subcommand(
        "show",
        "List the book's moves of a position with weights and per cent; exit status 1 when it has "
        "none");
    shower->add_option("FILE", arguments->file, "book")->required();
    shower->add_option("FEN", arguments->words, kPositionHelp);
    shower->callback([arguments] { show(*arguments); });

    CLI::App* checker = command->add_subcommand(
        "check",
        "Report entries out of order, moves that stand twice or are not legal where the book's "
        "moves lead; exit status 1 when there are any");
    checker->add_option("FILE", arguments->file, "book")->required();
    checker->callback([arguments] { check(*arguments); });
}

}  // namespace zar::tools
