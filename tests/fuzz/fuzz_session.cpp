#include "fuzz_session.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "board/make.h"
#include "board/movegen.h"
#include "frontend/console.h"
#include "frontend/option.h"
#include "frontend/report.h"
#include "frontend/strict.h"
#include "frontend/uci.h"
#include "fuzz_support.h"
#include "platform/random.h"
#include "platform/text.h"
#include "search/types.h"

namespace zar::fuzz {

namespace {

constexpr int kNodesBetweenLines = 256;
constexpr int kMostPolls = 100;  // in one session; a search that has to stop still finishes depth 1

std::string_view session;
int polls;

// What the engine has printed since the last look.
struct Output {
    char* text;
    std::size_t size;
};

Output output{};

std::string_view take_output() {
    std::fflush(stdout);
    const std::string_view text(output.text, output.size);
    std::rewind(stdout);
    return text;
}

bool contains_nocase(std::string_view text, std::string_view word) {
    return std::search(text.begin(), text.end(), word.begin(), word.end(), [](char a, char b) {
               return string_equal_nocase({&a, 1}, {&b, 1});
           }) != text.end();
}

// False for a "setoption" that asks for much memory, many threads, or a file in another folder.
bool is_affordable(std::string_view line) {
    constexpr std::string_view value_marker = "value ";
    constexpr int kMostMegabytes = 31;  // 16 after rounding
    constexpr int kMostThreads = 2;
    const std::size_t value_at = line.find(value_marker);
    if (!line.starts_with("setoption ") || value_at == std::string_view::npos) {
        return true;
    }
    const std::string_view value = line.substr(value_at + value_marker.size());
    return !(contains_nocase(line, "hash") && text_to_int(value) > kMostMegabytes) &&
           !(contains_nocase(line, "threads") && text_to_int(value) > kMostThreads) &&
           !(contains_nocase(line, "book file") && value.find('/') != std::string_view::npos);
}

// The line as the console hands it to the interpreter; valid until the next call.
std::string_view received(std::string_view line) {
    static char tidy[kInputLineSize];
    if (!uci_state.strict) {
        return line;
    }
    const std::size_t size = std::min(line.size(), sizeof tidy - 1);
    tidy[line.copy(tidy, size)] = '\0';
    strict_tidy(tidy);
    return tidy;
}

bool is_go(std::string_view line) {
    return line.starts_with("go ") || (uci_state.strict && line == "go");
}

void execute_next_line() {
    const std::string_view line = received(take_line(session));
    if (line == "quit") {
        session = {};
    } else if (is_affordable(line)) {
        uci_execute(line);
    }
}

// Stands in for poll_input.
bool poll_session() {
    SearchThread& self = search_thread(0);
    self.poll_countdown = kNodesBetweenLines;
    if (++polls > kMostPolls) {
        session = {};
    }
    if (session.empty()) {
        uci_execute("stop");
    } else if (self.nodes > 1) {
        execute_next_line();
    }
    return self.stop.load();
}

// Plays the moves of a text, each of which has to be legal.
void check_line(std::string_view moves, const char* message) {
    static Board board;
    board_copy(board, uci_state.board);
    for (std::string_view text = token_next(moves); !text.empty(); text = token_next(moves)) {
        const Move move = move_from_string(text, board);
        MoveList legal;
        gen_legal_moves(legal, board);
        require(list_contains(legal, move), message);
        UndoInfo undo;
        move_do(board, move, undo);
    }
}

// "bestmove MOVE", "bestmove MOVE ponder MOVE" or "bestmove (none)".
void check_answer(std::string_view line) {
    static_cast<void>(token_next(line));
    std::string moves(token_next(line));
    if (moves == "(none)") {
        MoveList legal;
        gen_legal_moves(legal, uci_state.board);
        require(legal.size == 0, "no bestmove where there is a legal move");
        return;
    }
    if (token_next(line) == "ponder") {
        moves.append(line);
    }
    check_line(moves, "an illegal bestmove or move to ponder on");
}

// Number of answers among the lines, all of which are checked.
int check_output(std::string_view lines) {
    constexpr std::string_view variation_marker = " pv ";
    int answers = 0;
    while (!lines.empty()) {
        const std::string_view line = take_line(lines);
        if (line.starts_with("bestmove ")) {
            ++answers;
            check_answer(line);
        }
        const std::size_t variation = line.find(variation_marker);
        if (line.starts_with("info ") && !line.starts_with("info string ") &&
            variation != std::string_view::npos) {
            check_line(line.substr(variation + variation_marker.size()), "an illegal variation");
        }
    }
    return answers;
}

// Executes the next line, and those that arrive during its search.
void execute_and_check() {
    std::string_view rest = session;
    const std::string_view line = take_line(rest);
    const bool was_pending = uci_state.bestmove_pending;
    const bool goes = is_go(received(line));
    execute_next_line();
    const std::string_view lines = take_output();
    const bool refused = lines.find("info string ERROR: go: ") != std::string_view::npos;
    const int owed = was_pending || (goes && !refused) ? 1 : 0;
    const int answers = check_output(lines);
    // The one search that ends without an answer.
    const bool silent = !uci_state.strict && uci_state.go_infinite && uci_state.go_ponder;
    require(answers + (uci_state.bestmove_pending ? 1 : 0) == owed || (silent && answers == 0),
            "a search is not answered once");
    require(!was_pending || answers == 0 || line == "stop" || line == "ponderhit",
            "an answer that was to wait");
}

void restore_state() {
    option_defaults();
    option_set("Hash", "16");
    option_set("Own Book", "false");
    random_seed(1);
    uci_state.searching = false;
    uci_state.bestmove_pending = false;
    uci_state.ponder_limit = false;
    uci_execute("position startpos");
    // Ends the other threads, closes the book, computes the weights, and clears the tables.
    uci_execute("setoption name Threads value 1");
    uci_execute("ucinewgame");
    static_cast<void>(take_output());
}

}  // namespace

void start_sessions() {
    start_engine();
    stdout = open_memstream(&output.text, &output.size);
    require(stdout != nullptr, "no memory for the output");
    search_shared.hooks = {.report_pv = report_pv,
                           .report_currmove = report_currmove,
                           .report_hashfull = report_hashfull,
                           .poll_input = poll_session};
    engine_init();
}

void run_session(std::string_view text) {
    // A session whose first line is the switch is one of strict mode.
    constexpr std::string_view strict_switch = "--strict\n";
    uci_state.strict = false;
    restore_state();
    uci_state.strict = text.starts_with(strict_switch);
    session = text.substr(uci_state.strict ? strict_switch.size() : 0);
    polls = 0;
    const bool survived = survives([] {
        while (!session.empty()) {
            execute_and_check();
        }
        session = "stop";
        execute_and_check();
        require(!uci_state.bestmove_pending, "a search is not stopped");
    });
    require(!uci_state.searching, "a fatal error during a search");
    require(!survived || board_consistent(uci_state.board), "the board is inconsistent");
}

}  // namespace zar::fuzz
