#include "frontend/report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "frontend/console.h"
#include "frontend/option.h"
#include "frontend/report_strict.h"
#include "frontend/uci.h"
#include "search/budget.h"
#include "search/driver.h"
#include "search/hash.h"

namespace zar {

namespace {

// One line of the table of variations.
struct PvRow {
    int mate;  // moves, 0 when the score is no mate score
    int depth;
    Score score;
    double time;  // milliseconds since the search started, when the line was stored
    std::array<char, kPvTextSize> pv;
};

// Variations of the current search, best first. Main thread only.
struct PvTable {
    std::array<PvRow, kMaxMultiPv> rows;
    int last_line;  // the line that was stored last ...
    int last_row;   // ... and where
};

PvTable pv_table{};

using MoveText = std::array<char, kMoveTextSize>;

MoveText move_text(Move move) {
    MoveText text{};
    move_to_string(move, text.data(), kMoveTextSize);
    return text;
}

// Moves rows first..last by one place, toward the end or the front.
void shift_rows_down(int first, int last) {
    const auto rows = pv_table.rows.begin();
    std::move_backward(rows + first, rows + last, rows + last + 1);
}

void shift_rows_up(int first, int last) {
    const auto rows = pv_table.rows.begin();
    std::move(rows + first, rows + last + 1, rows + first - 1);
}

// Line 0 always takes row 0. A later line goes ahead of the first row with a lower score; when it
// reports again, it first gives up the row that it has.
void store_row(const PvRow& row, int line) {
    if (line > 0 && pv_table.last_line == line) {
        shift_rows_up(pv_table.last_row + 1, line);
    }
    int place = 0;
    while (place < line && pv_table.rows[static_cast<std::size_t>(place)].score >= row.score) {
        ++place;
    }
    shift_rows_down(place, line);
    pv_table.rows[static_cast<std::size_t>(place)] = row;
    pv_table.last_line = line;
    pv_table.last_row = place;
}

void print_row(const PvRow& row, int number, Bound bound, std::uint64_t nodes) {
    const auto node_count = static_cast<long long>(nodes);
    const int value = row.mate != 0 ? row.mate : row.score;
    if (option_get_bool("Search Info")) {
        send_line("info multipv %d depth %d score %s %d%s time %.0f nodes %lld pv %s", number,
                  row.depth, row.mate != 0 ? "mate" : "cp", value, bound_word(bound), row.time,
                  node_count, row.pv.data());
    }
    if (option_get_bool("TLCV fix")) {
        send_line("%d %d %.0f %lld %s", row.depth, value, row.time, node_count, row.pv.data());
    }
}

void print_table(Bound bound, std::uint64_t nodes) {
    if (bound == kBoundNone) {
        return;
    }
    for (int i = 0; i <= search_shared.last_pv_index; ++i) {
        print_row(pv_table.rows[static_cast<std::size_t>(i)], i + 1, bound, nodes);
    }
}

// What report_bestmove prints.
struct Answer {
    int thread;
    const RootResult* result;
    MoveText best;
    MoveText ponder;  // empty when there is none
    long long total_nodes;
    double elapsed;  // seconds
};

// The deepest result counts, then the highest score, then the lowest thread.
int choose_thread() {
    int chosen = 0;
    for (int thread = 1; thread < search_shared.thread_count; ++thread) {
        const RootResult& candidate = search_result(thread);
        const RootResult& best = search_result(chosen);
        if (candidate.depth > best.depth ||
            (candidate.depth == best.depth && candidate.score > best.score)) {
            chosen = thread;
        }
    }
    return chosen;
}

Answer make_answer() {
    std::uint64_t nodes = 0;
    for (int thread = 0; thread < search_shared.thread_count; ++thread) {
        nodes += search_thread(thread).nodes;
    }
    const int thread = choose_thread();
    const RootResult& result = search_result(thread);
    const bool has_ponder =
        result.pv[0] == result.best_move && move_is_ok(result.pv[0]) && move_is_ok(result.pv[1]);
    return {thread,
            &result,
            move_text(result.best_move),
            has_ponder ? move_text(result.pv[1]) : MoveText{},
            static_cast<long long>(nodes),
            search_thread(0).elapsed};
}

// One line each for "Search Info" and "TLCV fix". `blank` and `ponder` follow the best move.
void print_result(const Answer& answer, const char* blank, const char* ponder) {
    // The viewer that reads the bare lines wants a node count that is never small.
    constexpr long long kExtraNodes = 50000;
    const RootResult& result = *answer.result;
    if (uci_state.strict) {
        return;  // to a program this would be the newest of all lines
    }
    if (option_get_bool("Search Info")) {
        send_line("info depth %d score cp %d pv %s%s%s", result.depth, result.score,
                  answer.best.data(), blank, ponder);
    }
    if (option_get_bool("TLCV fix")) {
        send_line("%d %d %.0f %lld %s%s%s", result.depth, result.score, answer.elapsed,
                  answer.total_nodes + kExtraNodes, answer.best.data(), blank, ponder);
    }
}

void print_extra(const Answer& answer) {
    if (!option_get_bool("Extra Info")) {
        return;
    }
    const bool has_ponder = answer.ponder[0] != '\0';
    send_line("info string - - -");
    send_line("%s (Ponder, Analize Mode or Infinite Mode is Limited at level < 10)",
              uci_state.strict ? "info string" : "Info String");
    send_line(
        "info string %s%s%s%s [Thread# %d/%d, Depth %d, Value %d, Current Level is %d, Ponder "
        "Limit %d (1=true), Current Hash Size is %d, MultiPV set to %d]",
        answer.best.data(), has_ponder ? " (" : "", answer.ponder.data(), has_ponder ? ")" : "",
        answer.thread + 1, option_get_int("Threads"), answer.result->depth, answer.result->score,
        option_get_int("Difficulty Level"), static_cast<int>(uci_state.ponder_limit),
        option_get_int("Hash"), option_get_int("MultiPV"));
}

void print_book_move(const Answer& answer) {
    if (option_get_bool("Extra Info")) {
        send_line("info string - - -");
        send_line("info string BookMove %s (Current Book File is %s)", answer.best.data(),
                  option_get_string("Book File"));
    }
}

}  // namespace

int score_to_mate(Score score) {
    if (score < -kMateBound) {
        return -((score + kMateScore) / 2);
    }
    return score > kMateBound ? (kMateScore + 1 - score) / 2 : 0;
}

const char* bound_word(Bound bound) {
    switch (bound) {
        case kBoundLower:
            return " lowerbound";
        case kBoundUpper:
            return " upperbound";
        default:
            return "";
    }
}

bool pv_to_text(const Line& pv, char* buffer, int size) {
    if (size < kPvTextSize) {
        return false;
    }
    std::size_t length = 0;
    for (const Move move : pv) {
        if (move == kMoveNone) {
            break;
        }
        const MoveText text = move_text(move);
        const std::size_t move_length = std::strlen(text.data());
        const std::size_t blank = length == 0 ? 0 : 1;
        if (length + blank + move_length >= static_cast<std::size_t>(size)) {
            break;
        }
        if (blank != 0) {
            buffer[length++] = ' ';
        }
        std::memcpy(buffer + length, text.data(), move_length);
        length += move_length;
    }
    buffer[length] = '\0';
    return true;
}

void report_pv(int thread) {
    elapsed_update(thread);
    if (thread != 0) {
        return;
    }
    const SearchThread& self = search_thread(thread);
    if (uci_state.strict) {
        report_strict_pv(self);
        return;
    }
    const RootResult& result = self.result[static_cast<std::size_t>(self.pv_index)];
    PvRow row{.mate = score_to_mate(result.score),
              .depth = result.depth,
              .score = result.score,
              .time = self.elapsed * 1000,
              .pv = {}};
    pv_to_text(result.pv, row.pv.data(), kPvTextSize);
    store_row(row, self.pv_index);
    // The first iteration is printed only when all of its lines are known.
    if (result.depth >= 2 || self.pv_index == search_shared.last_pv_index) {
        print_table(result.bound, nodes_of_all_threads(self));
    }
}

void report_currmove(int thread) {
    elapsed_update(thread);
    const SearchThread& self = search_thread(thread);
    constexpr double kQuietSeconds = 1.0;
    if (self.elapsed >= kQuietSeconds) {
        send_line("info currmove %s currmovenumber %d", move_text(self.root_move).data(),
                  self.root_index + 1);
    }
}

void report_hashfull() { send_line("info hashfull %.0f", hash_full(hash_table)); }

void report_bestmove() {
    input_look();
    if (!uci_state.strict) {
        report_hashfull();
        if (uci_state.go_ponder && uci_state.go_infinite) {
            return;
        }
    }
    const Answer answer = make_answer();
    if (answer.result->best_move == kMoveNone) {
        send_line("bestmove (none)");
        return;
    }
    print_result(answer, " ", answer.ponder.data());
    if (answer.ponder[0] != '\0') {
        print_extra(answer);
        send_line("bestmove %s ponder %s", answer.best.data(), answer.ponder.data());
        return;
    }
    if (answer.result->depth == 0) {
        print_book_move(answer);
    } else {
        print_result(answer, "", "");
        print_extra(answer);
    }
    send_line("bestmove %s", answer.best.data());
}

}  // namespace zar
