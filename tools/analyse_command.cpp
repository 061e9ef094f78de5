// analyse: searches a position and prints what each iteration found.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "board/attack.h"
#include "board/movegen.h"
#include "commands.h"
#include "fen_text.h"
#include "in_process.h"
#include "interrupt.h"
#include "options.h"
#include "positions.h"
#include "progress.h"
#include "san.h"
#include "search/types.h"

namespace zar::tools {

namespace {

constexpr double kDefaultSeconds = 5;

struct Arguments {
    Effort effort = {.depth = 0, .seconds = kDefaultSeconds};
    Settings settings;
    std::vector<std::string> words;
};

// One best line of an iteration as it was reported last.
struct Row {
    int depth = 0;
    Score score = 0;
    Bound bound = kBoundNone;
    std::uint64_t nodes = 0;
    double seconds = 0;
    std::string moves;
};

// The iteration that is being searched: the rows that it has reported so far.
struct Iteration {
    int depth = 0;
    std::size_t count = 0;
    std::array<Row, kMaxMultiPv> rows;
};

Iteration iteration;
Board root;
bool has_numbers = false;  // are the lines of an iteration numbered?
int depth_limit = 0;       // the last iteration, 0 when there is none
bool is_mate_proven = false;

const char* bound_mark(Bound bound) {
    // A bound of the side to move's score is the other one from White's view when Black moves.
    const bool flipped = root.turn == kBlack;
    switch (bound) {
        case kBoundLower:
            return flipped ? "<=" : ">=";
        case kBoundUpper:
            return flipped ? ">=" : "<=";
        default:
            return "";
    }
}

void print_head() {
    std::printf("%5s%s %9s %12s %10s %8s  %s\n", "depth", has_numbers ? "  no" : "", "score",
                "nodes", "nps", "time", "line");
}

void print_row(const Row& row, std::size_t number) {
    std::string score = bound_mark(row.bound);
    score += score_text(row.score, root.turn);
    std::string speed = "-";
    if (row.seconds > 0) {
        constexpr double rounding = 0.5;
        const double nps = static_cast<double>(row.nodes) / row.seconds + rounding;
        speed = std::to_string(static_cast<std::uint64_t>(nps));
    }
    char number_text[8] = "";
    if (has_numbers) {
        std::snprintf(number_text, sizeof number_text, " %3zu", number);
    }
    std::printf("%5d%s %9s %12" PRIu64 " %10s %8.2f  %s\n", row.depth, number_text, score.c_str(),
                row.nodes, speed.c_str(), row.seconds, row.moves.c_str());
}

// Prints the iteration, best line first, and forgets it.
void print_iteration() {
    progress_clear();
    const auto end = iteration.rows.begin() + static_cast<std::ptrdiff_t>(iteration.count);
    std::stable_sort(iteration.rows.begin(), end,
                     [](const Row& a, const Row& b) { return a.score > b.score; });
    for (std::size_t i = 0; i < iteration.count; ++i) {
        print_row(iteration.rows[i], i + 1);
    }
    std::fflush(stdout);
    iteration.count = 0;
}

// A mate that is not further away than the search has looked in all directions.
bool is_proven(const Row& row) {
    return score_is_mate(row.score) && row.bound == kBoundExact &&
           kMateScore - std::abs(row.score) <= row.depth;
}

// Would more iterations bring nothing? Asked when the last line has a new best move too, but the
// search ends only where that line does, which asks again.
bool is_settled() {
    is_mate_proven = std::all_of(
        iteration.rows.begin(),
        iteration.rows.begin() + static_cast<std::ptrdiff_t>(iteration.count), is_proven);
    return is_mate_proven || (depth_limit > 0 && iteration.depth >= depth_limit);
}

// A line has a new best move or is finished.
void note_line(int thread) {
    if (thread != 0) {
        return;
    }
    SearchThread& self = search_thread(thread);
    const auto index = static_cast<std::size_t>(self.pv_index);
    const RootResult& result = self.result[index];
    iteration.depth = self.iteration_depth;
    iteration.count = std::max(iteration.count, index + 1);
    iteration.rows[index] = {result.depth,
                             result.score,
                             result.bound,
                             self.nodes * static_cast<std::uint64_t>(search_shared.thread_count),
                             stopwatch_elapsed(self.stopwatch),
                             san_line(result.pv.data(), kMaxPly, root)};
    const bool is_last_line = self.pv_index == search_shared.last_pv_index;
    self.stop.store(is_last_line && is_settled(), std::memory_order_relaxed);
}

// A root move is about to be searched: the first of an iteration closes the one before.
void note_root_move(int thread) {
    if (iteration.count > 0 && search_thread(thread).iteration_depth != iteration.depth) {
        print_iteration();
    }
}

// Called every few thousand nodes; true ends the search.
bool show_progress() {
    const SearchThread& self = search_thread(0);
    if (self.root_move != kMoveNone) {
        char text[120];
        std::snprintf(text, sizeof text, "depth %d, %s (%d of %d), %" PRIu64 " nodes, %.1f s",
                      self.iteration_depth, san_of(self.root_move, root).c_str(),
                      self.root_index + 1, self.root.size, self.nodes, self.elapsed);
        progress_show(text, false);
    }
    return interrupted();
}

// Why the search ended before its time, if it did, and the move that the engine would play: the
// best of the last iteration, broken off or not, in which it found any.
void print_best(bool is_cut_short) {
    const Move move = search_thread(0).result[0].best_move;
    std::printf("\n");
    if (search_shared.root_moves.size == 1) {
        std::printf("the only legal move\n");
    } else if (is_mate_proven && !is_cut_short) {
        std::printf("the mate is proven\n");
    }
    std::printf("best move %s\n", san_of(move, root).c_str());
}

// The position, where the command line does not say it, and what the search finds there.
void analyse(const Arguments& arguments, int number) {
    if (arguments.words.empty() || arguments.words[0] == "-") {
        std::printf("%sposition %s\n", number > 1 ? "\n" : "", fen_of(root).c_str());
    }
    if (board_is_mate(root) || board_is_stalemate(root)) {
        std::printf("%s, no move to search\n", board_is_mate(root) ? "checkmate" : "stalemate");
        return;
    }
    print_head();
    is_mate_proven = false;
    in_process_search(root, arguments.effort);
    print_iteration();
    const double elapsed = search_thread(0).elapsed;
    print_best(interrupted() || (depth_limit == 0 && elapsed >= arguments.effort.seconds));
}

void run(const Arguments& arguments) {
    has_numbers = arguments.settings.lines > 1;
    depth_limit = arguments.effort.depth;
    in_process_start(arguments.settings);
    search_shared.hooks.report_pv = note_line;
    search_shared.hooks.report_currmove = note_root_move;
    search_shared.hooks.poll_input = show_progress;
    PositionInput input = positions_of(arguments.words);
    while (!interrupted() && positions_next(input, root)) {
        // Only a search can be ended early; whoever waits for a line ends the program.
        interrupt_watch();
        analyse(arguments, input.count);
        std::fflush(stdout);
        interrupt_forget();
    }
    in_process_end();
    positions_end(input);
}

}  // namespace

void add_analyse(CLI::App& app) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand(
        "analyse",
        "Search a position and print a line for each iteration; scores are White's view, time is "
        "in seconds. Ctrl-C ends the search with what it has");
    command->alias("analyze");
    add_effort(*command, arguments->effort);
    add_settings(*command, arguments->settings);
    command->add_option("--multipv", arguments->settings.lines, "best lines to show")
        ->transform(number_between(1, kMaxMultiPv))
        ->capture_default_str();
    command->add_option("FEN", arguments->words, kPositionHelp);
    command->callback([arguments] { run(*arguments); });
}

}  // namespace zar::tools
