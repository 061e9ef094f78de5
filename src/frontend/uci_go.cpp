// The "go" command: from its parameters to limits and a time budget, through the search, to the
// answer.

#include <algorithm>
#include <array>
#include <limits>

#include "frontend/option.h"
#include "frontend/report.h"
#include "frontend/uci.h"
#include "platform/fatal.h"
#include "platform/text.h"
#include "search/budget.h"
#include "search/driver.h"

namespace zar {

namespace {

constexpr int kAbsent = -1;
constexpr double kNoTime = -1;

// What the line says. Times in seconds.
struct GoParameters {
    std::array<double, kColorCount> clock = {kNoTime, kNoTime};
    std::array<double, kColorCount> increment = {kNoTime, kNoTime};
    double move_time = kNoTime;
    int depth = kAbsent;
    int mate = kAbsent;
    int moves_to_go = kAbsent;
};

enum class Keyword {
    binc,
    btime,
    depth,
    infinite,
    mate,
    movestogo,
    movetime,
    nodes,
    ponder,
    searchmoves,
    winc,
    wtime,
};

struct KeywordRow {
    std::string_view text;
    Keyword keyword;
    const char* missing_value;  // fatal text, null for keywords without a value
};

constexpr std::array<KeywordRow, 12> keywords = {{
    {"binc", Keyword::binc, "X-Error 1EE1BIPTC//"},
    {"btime", Keyword::btime, "X-Error 1EE1BtPTC//"},
    {"depth", Keyword::depth, "X-Error 1EE1DEPTC//"},
    {"infinite", Keyword::infinite, nullptr},
    {"mate", Keyword::mate, "X-Error 1ES1MAPTC//"},
    {"movestogo", Keyword::movestogo, "X-Error 1ES1MTGPTC//"},
    {"movetime", Keyword::movetime, "X-Error 1ES1MTPTC//"},
    {"nodes", Keyword::nodes, "X-Error 1ES1NOPTC"},
    {"ponder", Keyword::ponder, nullptr},
    {"searchmoves", Keyword::searchmoves, nullptr},
    {"winc", Keyword::winc, "X-Error 1EE1WIPTC//"},
    {"wtime", Keyword::wtime, "X-Error 1EE1WTPTC//"},
}};

double seconds(std::string_view milliseconds) { return text_to_int(milliseconds) * 0.001; }

void apply_keyword(GoParameters& go, Keyword keyword, std::string_view value) {
    switch (keyword) {
        case Keyword::binc:
            go.increment[kBlack] = seconds(value);
            break;
        case Keyword::btime:
            go.clock[kBlack] = seconds(value);
            break;
        case Keyword::depth:
            go.depth = text_to_int(value);
            break;
        case Keyword::infinite:
            uci_state.go_infinite = true;
            break;
        case Keyword::mate:
            go.mate = text_to_int(value);
            break;
        case Keyword::movestogo:
            go.moves_to_go = text_to_int(value);
            break;
        case Keyword::movetime:
            go.move_time = seconds(value);
            break;
        case Keyword::ponder:
            uci_state.go_ponder = true;
            break;
        case Keyword::winc:
            go.increment[kWhite] = seconds(value);
            break;
        case Keyword::wtime:
            go.clock[kWhite] = seconds(value);
            break;
        case Keyword::nodes:
        case Keyword::searchmoves:
            break;  // not supported
    }
}

// Tokens that are no keyword are passed over, the moves behind "searchmoves" among them.
GoParameters read_parameters(std::string_view arguments) {
    GoParameters go;
    for (std::string_view token = token_next(arguments); !token.empty();
         token = token_next(arguments)) {
        const auto row = std::find_if(keywords.begin(), keywords.end(),
                                      [&](const KeywordRow& known) { return known.text == token; });
        if (row == keywords.end()) {
            continue;
        }
        std::string_view value;
        if (row->missing_value != nullptr) {
            value = token_next(arguments);
            if (value.empty()) {
                fatal_error("%s", row->missing_value);
            }
        }
        apply_keyword(go, row->keyword, value);
    }
    return go;
}

// A mate in n moves is found within 2n - 1 plies.
int mate_depth(int moves) {
    constexpr int kMostMoves = std::numeric_limits<int>::max() / 2;
    return 2 * std::min(moves, kMostMoves) - 1;
}

void set_depth_limit(SearchLimits& limits, const GoParameters& go) {
    const int fixed_depth = option_get_int("ZARXSD");
    limits.limit_depth_set = true;
    if (fixed_depth > 0) {
        limits.limit_depth = fixed_depth;
    } else if (go.depth >= 0) {
        limits.limit_depth = go.depth;
    } else if (go.mate >= 0) {
        limits.limit_depth = mate_depth(go.mate);
    } else {
        limits.limit_depth_set = false;
    }
}

// The share of the clock for this move. A twentieth of it and a second more are kept in reserve.
void set_clock_budget(SearchLimits& limits, const GoParameters& go, Color turn) {
    constexpr int kMostMovesToGo = 30;
    const auto side = static_cast<std::size_t>(turn);
    const bool known = go.moves_to_go >= 1 && go.moves_to_go <= kMostMovesToGo;
    const int moves = known ? go.moves_to_go : kMostMovesToGo;
    const double usable = std::max(go.clock[side] * 0.95 - 1.0, 0.0);
    const double total = (moves - 1) * std::max(go.increment[side], 0.0) + usable;
    const double per_move = total / moves;
    // Who ponders gains time on the opponent's clock.
    const double factor = option_get_bool("Ponder") ? 1.25 : 1.0;
    limits.time_target = std::min(factor * per_move, usable);
    limits.time_limit = std::min(std::max(0.5 * total, limits.time_target), usable);
}

void set_time_limits(SearchLimits& limits, const GoParameters& go, Color turn) {
    const int fixed_seconds = option_get_int("ZARXST");
    const double move_time = fixed_seconds > 0 ? fixed_seconds : go.move_time;
    if (move_time >= 0) {
        limits.limit_time_set = true;
        limits.time_limit = move_time;
        limits.time_target = 5 * move_time;
    } else if (go.clock[static_cast<std::size_t>(turn)] >= 0) {
        limits.limit_time_set = true;
        set_clock_budget(limits, go, turn);
    }
}

}  // namespace

void uci_go(std::string_view arguments, double received) {
    if (uci_state.searching || uci_state.bestmove_pending) {
        return;
    }
    engine_init();
    uci_state.go_infinite = false;
    uci_state.go_ponder = false;
    const GoParameters go = read_parameters(arguments);
    search_reset();
    SearchLimits& limits = search_shared.limits;
    limits.start_time = received;
    set_depth_limit(limits, go);
    set_time_limits(limits, go, uci_state.board.turn);
    limits.limit_infinite = uci_state.go_infinite || uci_state.go_ponder;
    uci_state.wait_for_stop = limits.limit_infinite;
    uci_state.searching = true;
    search_run(uci_state.board);
    uci_state.searching = false;
    uci_state.bestmove_pending = uci_state.wait_for_stop;
    if (!uci_state.bestmove_pending) {
        report_bestmove();
    }
}

}  // namespace zar
