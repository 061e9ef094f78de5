// epd: runs a suite of test positions and counts those solved.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "epd.h"
#include "in_process.h"
#include "message.h"
#include "options.h"
#include "position.h"
#include "progress.h"
#include "san.h"
#include "search/types.h"
#include "text_line.h"

namespace zar::tools {

namespace {

constexpr double kDefaultSeconds = 1;

struct Arguments {
    std::string file;
    Effort effort = {.depth = 0, .seconds = kDefaultSeconds};
};

std::vector<EpdPosition> read_suite(const std::string& path) {
    std::ifstream text(path);
    std::vector<EpdPosition> positions;
    const std::string fault = epd_read(text, positions);
    if (!text.is_open() || text.bad()) {
        fail(path + ": cannot be read", kBadInput);
    }
    if (!fault.empty()) {
        fail(path + ":" + fault, kBadInput);
    }
    return positions;
}

std::string moves_text(const char* opcode, const std::vector<Move>& moves, Board& board) {
    if (moves.empty()) {
        return "";
    }
    std::string text = " ";
    text += opcode;
    for (const Move move : moves) {
        text += ' ';
        text += san_of(move, board);
    }
    return text;
}

// The engine's move; any legal move is better than none, and there always is one.
Move solve(const EpdPosition& position, Board& board, const Effort& effort) {
    if (const std::string fault = position_fault(board, position.fen); !fault.empty()) {
        fail("FEN " + in_quotes(position.fen) + ": " + fault, kBadInput);
    }
    in_process_search(board, effort);
    return search_thread(0).result[0].best_move;
}

void print_position(const EpdPosition& position, Move move, Board& board) {
    const char* verdict = epd_is_solution(position, move) ? "solved" : "failed";
    std::printf("%4d  %s  %-7s depth %2d %s%s%s%s\n", position.line, verdict,
                san_of(move, board).c_str(), search_thread(0).result[0].depth,
                moves_text("bm", position.best, board).c_str(),
                moves_text("am", position.avoid, board).c_str(), position.id.empty() ? "" : "  ",
                position.id.c_str());
}

void run(const Arguments& arguments) {
    static Board board;
    const std::vector<EpdPosition> positions = read_suite(arguments.file);
    in_process_start(1);
    std::size_t solved = 0;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const EpdPosition& position = positions[i];
        progress_show(progress_bar(i, positions.size()), true);
        const Move move = solve(position, board, arguments.effort);
        solved += epd_is_solution(position, move) ? 1 : 0;
        progress_clear();
        print_position(position, move, board);
        std::fflush(stdout);
    }
    constexpr double kPercent = 100;
    std::printf("\n%zu of %zu solved (%.1f %%)\n", solved, positions.size(),
                kPercent * static_cast<double>(solved) / static_cast<double>(positions.size()));
}

}  // namespace

void add_epd(CLI::App& app) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand(
        "epd",
        "Search the positions of a test suite: solved when the move is one of \"bm\" and none of "
        "\"am\". The number before each is its line in the file");
    command->add_option("FILE", arguments->file, "one EPD a line; '#' begins a comment line")
        ->required();
    add_effort(*command, arguments->effort);
    command->callback([arguments] { run(*arguments); });
}

}  // namespace zar::tools
