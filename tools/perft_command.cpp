// perft: counts the leaves of the legal move tree.

#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "board/make.h"
#include "board/movegen.h"
#include "board/perft.h"
#include "commands.h"
#include "move_names.h"
#include "options.h"
#include "positions.h"

namespace zar::tools {

namespace {

constexpr int kMostDepth = 30;

struct Arguments {
    int depth = 0;
    std::vector<std::string> words;
    bool divide = false;
};

// Prints the count behind every move of the position.
void print_divided(Board& board, int depth) {
    MoveList moves;
    gen_legal_moves(moves, board);
    for (const Move move : span_of(moves)) {
        UndoInfo undo;
        move_do(board, move, undo);
        std::cout << name_of(move) << ": " << perft(board, depth - 1) << "\n";
        move_undo(board, move, undo);
    }
}

void run(const Arguments& arguments) {
    static Board board;
    PositionInput input = positions_of(arguments.words);
    while (positions_next(input, board)) {
        if (arguments.divide && arguments.depth > 0) {
            print_divided(board, arguments.depth);
        }
        std::cout << perft(board, arguments.depth) << std::endl;
    }
    positions_end(input);
}

}  // namespace

void add_perft(CLI::App& app) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        app.add_subcommand("perft",
                           "Count the move sequences of DEPTH plies; the last line is the "
                           "total alone");
    command->add_option("DEPTH", arguments->depth, "plies")
        ->required()
        ->transform(number_between(0, kMostDepth));
    command->add_option("FEN", arguments->words, kPositionHelp);
    command->add_flag("--divide", arguments->divide, "also print the count behind every move");
    command->callback([arguments] { run(*arguments); });
}

}  // namespace zar::tools
