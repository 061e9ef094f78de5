// epd: runs a suite of test positions and counts those solved.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "epd.h"
#include "in_process.h"
#include "interrupt.h"
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
constexpr int kNothingSolved = 1;
constexpr int kInterrupted = 130;  // what shells give a program that Ctrl-C has ended

struct Arguments {
    std::string file;
    Effort effort = {.depth = 0, .seconds = kDefaultSeconds};
    Settings settings;
};

// Ends the program when the text cannot be used.
std::vector<EpdPosition> read_positions(std::istream& text, const std::string& name) {
    std::vector<EpdPosition> positions;
    const std::string fault = epd_read(text, positions);
    if (&text == &std::cin) {
        fail_if_input_is_broken(kBadInput);
    }
    if (text.bad()) {
        fail(name + ": cannot be read", kBadInput);
    }
    if (!fault.empty()) {
        const bool has_line = fault[0] >= '0' && fault[0] <= '9';
        fail(name + (has_line ? ":" : ": ") + fault, kBadInput);
    }
    return positions;
}

std::vector<EpdPosition> read_suite(const std::string& path) {
    if (path == "-") {
        return read_positions(std::cin, kStandardInput);
    }
    std::ifstream text(path);
    if (!text.is_open()) {
        fail(path + ": cannot be read", kBadInput);
    }
    return read_positions(text, path);
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
    std::printf("%4d  %s  %-7s depth %2d %8.2f s %11" PRIu64 " nodes %s%s%s%s\n", position.line,
                verdict, san_of(move, board).c_str(), search_thread(0).result[0].depth,
                search_thread(0).elapsed, in_process_nodes(),
                moves_text("bm", position.best, board).c_str(),
                moves_text("am", position.avoid, board).c_str(), position.id.empty() ? "" : "  ",
                printable(position.id).c_str());
}

// What the searches of a suite came to.
struct Summary {
    std::size_t searched = 0;
    std::size_t solved = 0;
    double seconds = 0;
    std::uint64_t nodes = 0;
};

void print_summary(const Summary& summary, std::size_t all) {
    constexpr double percent = 100;
    const double share = summary.searched == 0 ? 0.0
                                               : percent * static_cast<double>(summary.solved) /
                                                     static_cast<double>(summary.searched);
    std::printf("\n%" PRIu64 " nodes in %.2f s\n%zu of %zu solved (%.1f %%)", summary.nodes,
                summary.seconds, summary.solved, summary.searched, share);
    if (summary.searched < all) {
        std::printf(", %zu not searched", all - summary.searched);
    }
    std::printf("\n");
    std::fflush(stdout);
}

Summary search_suite(const std::vector<EpdPosition>& positions, const Effort& effort) {
    static Board board;
    Summary summary;
    for (const EpdPosition& position : positions) {
        progress_show(progress_bar(summary.searched, positions.size()), true);
        const Move move = solve(position, board, effort);
        progress_clear();
        if (interrupted()) {
            break;  // an answer that was not given its time is none
        }
        ++summary.searched;
        summary.solved += epd_is_solution(position, move) ? 1 : 0;
        summary.seconds += search_thread(0).elapsed;
        summary.nodes += in_process_nodes();
        print_position(position, move, board);
        std::fflush(stdout);
    }
    return summary;
}

void run(const Arguments& arguments) {
    const std::vector<EpdPosition> positions = read_suite(arguments.file);
    in_process_start(arguments.settings);
    search_shared.hooks.poll_input = interrupted;
    interrupt_watch();
    const Summary summary = search_suite(positions, arguments.effort);
    in_process_end();
    print_summary(summary, positions.size());
    if (interrupted()) {
        throw CLI::RuntimeError(kInterrupted);
    }
    if (summary.solved == 0) {
        throw CLI::RuntimeError(kNothingSolved);
    }
}

}  // namespace

void add_epd(CLI::App& app) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand(
        "epd",
        "Search the positions of a test suite: solved when the move is one of \"bm\" and none of "
        "\"am\". The number before each is its line in the file. Ctrl-C ends it with the summary "
        "so "
        "far; exit status 1 when nothing is solved");
    command
        ->add_option("FILE", arguments->file,
                     "one EPD a line; '#' begins a comment line; - is standard input")
        ->required();
    add_effort(*command, arguments->effort);
    add_settings(*command, arguments->settings);
    command->callback([arguments] { run(*arguments); });
}

}  // namespace zar::tools
