#include "frontend/uci.h"

#include <cstdlib>

#include "board/fen.h"
#include "board/make.h"
#include "board/movegen.h"
#include "book/book.h"
#include "eval/eval.h"
#include "frontend/console.h"
#include "frontend/difficulty.h"
#include "frontend/option.h"
#include "frontend/report.h"
#include "frontend/startup.h"
#include "frontend/strict.h"
#include "platform/text.h"
#include "search/budget.h"
#include "search/hash.h"
#include "search/workers.h"

namespace zar {

UciState uci_state{};

namespace {

// More history than this is cut before a move is played: only the moves since the last capture or
// pawn move count, and a search needs room for its own.
constexpr int kLongHistory = 3000;
constexpr int kKeptHistory = 200;

bool is_busy() { return uci_state.searching || uci_state.bestmove_pending; }

void release_bestmove() {
    uci_state.bestmove_pending = false;
    report_bestmove();
}

int wanted_threads() { return option_get_bounded("Threads"); }

void reopen_book() {
    book_close(opening_book);
    if (option_get_bool("Own Book")) {
        book_open(opening_book, option_get_string("Book File"));
    }
}

void apply_weights() {
    eval_apply_weights();
    board_sum_psq(uci_state.board);
}

void command_isready() {
    if (!is_busy()) {
        engine_init();
    }
    input_look();
    send_line("readyok");
}

void command_ponderhit() {
    if (uci_state.searching) {
        uci_state.wait_for_stop = false;
        uci_state.go_ponder = false;
        search_shared.limits.limit_infinite = false;
    } else if (uci_state.bestmove_pending) {
        release_bestmove();
    }
}

void command_stop() {
    if (uci_state.searching) {
        for (int thread = 0; thread < search_shared.thread_count; ++thread) {
            search_thread(thread).stop.store(true, std::memory_order_relaxed);
        }
        uci_state.wait_for_stop = false;
    } else if (uci_state.bestmove_pending) {
        release_bestmove();
    }
}

// What follows the first word of a line, and the blank behind that.
std::string_view arguments_of(std::string_view line) {
    return line.substr(std::min(line.find(' '), line.size() - 1) + 1);
}

// Is this the command? A word that takes arguments may stand alone in strict mode only.
bool is_command(std::string_view line, std::string_view word) {
    if (!line.starts_with(word)) {
        return false;
    }
    return line.size() == word.size() ? uci_state.strict : line[word.size()] == ' ';
}

// Plays moves up to the first text that is no legal move.
void play_moves(std::string_view text) {
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        if (text.size() < 4) {
            return;
        }
        const bool has_suffix = text.size() > 4 && text[4] != ' ';
        const std::string_view move_text = text.substr(0, has_suffix ? 5 : 4);
        text.remove_prefix(move_text.size());
        const Move move = uci_move(uci_state.board, move_text);
        if (move == kMoveNone) {
            return;
        }
        uci_play(uci_state.board, move);
    }
}

// The two markers may stand anywhere in the line.
void command_position(std::string_view line) {
    if (is_busy()) {
        return;
    }
    engine_init();
    if (uci_state.strict) {
        strict_position(uci_state.board, arguments_of(line));
        return;
    }
    constexpr std::string_view fen_marker = "fen ";
    constexpr std::string_view moves_marker = "moves ";
    const std::size_t fen = line.find(fen_marker);
    const std::size_t moves = line.find(moves_marker);
    if (fen == std::string_view::npos) {
        board_from_fen(uci_state.board, kStartFen);
    } else {
        const std::size_t begin = fen + fen_marker.size();
        std::size_t end = line.size();
        if (moves != std::string_view::npos && moves >= begin) {
            end = std::max(begin, moves - 1);  // without the blank before the marker
        }
        board_from_fen(uci_state.board, line.substr(begin, end - begin));
    }
    if (moves != std::string_view::npos) {
        play_moves(line.substr(moves + moves_marker.size()));
    }
}

void print_settings() {
    send_line("info string - - - ");
    send_line(
        "info string %d CPUs - Hash Size %d - Level %d - Ponder Limit %d (1=true) - MultiPV %d - "
        "Use Book %d (1=true) - Book is %s - Engine Ready",
        option_get_int("Threads"), option_get_int("Hash"), option_get_int("Difficulty Level"),
        static_cast<int>(uci_state.ponder_limit), option_get_int("MultiPV"),
        static_cast<int>(option_get_bool("Own Book")), option_get_string("Book File"));
}

void resize_hash() {
    constexpr int kLeastMegabytes = 16;
    const int megabytes = option_get_int("Hash");
    if (uci_state.engine_initialised && megabytes >= kLeastMegabytes) {
        hash_free(hash_table);
        hash_alloc(hash_table, megabytes);
    }
}

void change_threads() {
    if (!uci_state.engine_initialised || wanted_threads() == search_shared.thread_count) {
        return;
    }
    threads_end();
    search_shared.thread_count = wanted_threads();
    eval_tables_allocate(search_shared.thread_count);
    search_reset();
    threads_create();
}

// What follows a well-formed "setoption", whether or not the name is known.
void react_to_option(std::string_view name) {
    if (string_equal_nocase(name, "ZARXLoadStructureTest") ||
        string_equal_nocase(name, "ZARXLoadStructure")) {
        announce_ready();
    }
    if (string_equal_nocase(name, "Hash")) {
        resize_hash();
    }
    if (string_equal_nocase(name, "Difficulty Level")) {
        uci_state.ponder_limit = option_get_int("Difficulty Level") != kFullLevel;
    }
    if (string_equal_nocase(name, "Threads")) {
        change_threads();
    }
    if (option_get_bool("Extra Info")) {
        print_settings();
    }
}

// Names may contain blanks, so the markers are looked for and no tokens are made.
void command_setoption(std::string_view line) {
    if (is_busy()) {
        return;
    }
    if (uci_state.strict) {
        std::string_view name;
        if (strict_setoption(arguments_of(line), name)) {
            react_to_option(name);
            reopen_book();
            apply_weights();
        }
        return;
    }
    constexpr std::string_view name_marker = "name ";
    constexpr std::string_view value_marker = "value ";
    const std::size_t name_at = line.find(name_marker);
    const std::size_t value_at = line.find(value_marker);
    if (name_at != std::string_view::npos && value_at != std::string_view::npos &&
        name_at < value_at) {
        const std::size_t begin = name_at + name_marker.size();
        const std::size_t end = std::max(begin, value_at - 1);  // without the blank before "value"
        const std::string_view name = line.substr(begin, end - begin);
        option_set(name, line.substr(value_at + value_marker.size()));
        react_to_option(name);
    }
    reopen_book();
    apply_weights();
}

void command_uci() {
    send_line("id name ZAR-X3 64Bit");
    send_line("id author the ZAR-X3 authors");
    option_print_all();
    input_look();
    send_line("uciok");
}

void command_ucinewgame() {
    if (!is_busy() && uci_state.engine_initialised) {
        hash_clear(hash_table);
    }
}

}  // namespace

void engine_exit() {
    // What runs at the exit must not meet a worker.
    threads_shutdown();
    std::exit(EXIT_SUCCESS);
}

void engine_init() {
    if (uci_state.engine_initialised) {
        return;
    }
    uci_state.engine_initialised = true;
    search_shared.thread_count = wanted_threads();
    reopen_book();
    hash_alloc(hash_table, option_get_int("Hash"));
    eval_tables_allocate(search_shared.thread_count);
    apply_weights();
    threads_create();
}

Move uci_move(Board& board, std::string_view text) {
    constexpr std::size_t kLongestMove = 5;
    const Move move = text.size() > kLongestMove ? kMoveNone : move_from_string(text, board);
    if (uci_state.strict && text.size() == kLongestMove && !move_is_promotion(move)) {
        return kMoveNone;
    }
    MoveList legal;
    gen_legal_moves(legal, board);
    return list_contains(legal, move) ? move : kMoveNone;
}

void uci_play(Board& board, Move move) {
    if (board.sp > kLongHistory) {
        board_trim_history(board, kKeptHistory);
    }
    UndoInfo undo;
    move_do(board, move, undo);
}

bool poll_input() {
    const std::atomic<bool>& stop = search_thread(0).stop;
    while (!stop.load(std::memory_order_relaxed)) {
        if (!input_available()) {
            return false;
        }
        uci_command();
    }
    return true;
}

void uci_execute(std::string_view line, double received) {
    if (is_command(line, "debug")) {
        return;
    }
    if (is_command(line, "go")) {
        uci_go(arguments_of(line), received);
    } else if (line == "isready") {
        command_isready();
    } else if (line == "ponderhit") {
        command_ponderhit();
    } else if (is_command(line, "position")) {
        command_position(line);
    } else if (line == "quit") {
        engine_exit();
    } else if (is_command(line, "setoption")) {
        command_setoption(line);
    } else if (line == "stop") {
        command_stop();
    } else if (line == "uci") {
        command_uci();
    } else if (line == "ucinewgame") {
        command_ucinewgame();
    }
}

void uci_command() {
    char line[kInputLineSize];
    if (!read_line(line, kInputLineSize)) {
        engine_exit();
    }
    if (uci_state.strict) {
        strict_tidy(line);
    }
    uci_execute(line, input_idle_time());
}

void uci_loop() {
    uci_state.engine_initialised = false;
    uci_state.searching = false;
    uci_state.wait_for_stop = false;
    uci_state.bestmove_pending = false;
    search_shared.hooks = {.report_pv = report_pv,
                           .report_currmove = report_currmove,
                           .report_hashfull = report_hashfull,
                           .poll_input = poll_input};
    search_reset();
    board_from_fen(uci_state.board, kStartFen);
    while (true) {
        uci_command();
    }
}

}  // namespace zar
