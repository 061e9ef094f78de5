// The "go" command: from its parameters to limits and a time budget, through the search, to the
// answer.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>

#include "frontend/console.h"
#include "frontend/option.h"
#include "frontend/report.h"
#include "frontend/report_strict.h"
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
    std::int64_t nodes = kAbsent;
    MoveList only_moves{};
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

// As text_to_int, of a greater range.
std::int64_t count_of(std::string_view text) {
    std::int64_t count = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), count);
    const bool too_many = result.ec == std::errc::result_out_of_range;
    return too_many ? std::numeric_limits<std::int64_t>::max() : count;
}

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
            go.nodes = count_of(value);
            break;
        case Keyword::searchmoves:
            break;  // the moves are no keywords
    }
}

// Is there a value behind the keyword? None at all is fatal; strict mode wants a number, and tells.
bool has_value(const KeywordRow& row, std::string_view value) {
    if (!uci_state.strict) {
        if (value.empty()) {
            fatal_error("%s", row.missing_value);
        }
        return true;
    }
    if (!text_is_number(value)) {
        send_error("go: no number behind %s", row.text.data());
        return false;
    }
    return true;
}

// A move behind "searchmoves". False, with the error told, when it is not legal.
bool add_root_move(GoParameters& go, std::string_view text) {
    const Move move = uci_move(uci_state.board, text);
    if (move == kMoveNone) {
        send_error("go: %.*s is not a legal move", static_cast<int>(text.size()), text.data());
        return false;
    }
    if (!list_contains(go.only_moves, move)) {
        list_add(go.only_moves, move);
    }
    return true;
}

// Tokens that are no keyword are passed over, except for the moves behind "searchmoves" in strict
// mode. False when the line cannot be used.
bool read_parameters(GoParameters& go, std::string_view arguments) {
    bool takes_moves = false;
    for (std::string_view token = token_next(arguments); !token.empty();
         token = token_next(arguments)) {
        const auto row = std::find_if(keywords.begin(), keywords.end(),
                                      [&](const KeywordRow& known) { return known.text == token; });
        if (row == keywords.end()) {
            if (takes_moves && !add_root_move(go, token)) {
                return false;
            }
            continue;
        }
        takes_moves = uci_state.strict && row->keyword == Keyword::searchmoves;
        std::string_view value;
        if (row->missing_value != nullptr) {
            value = token_next(arguments);
            if (!has_value(*row, value)) {
                return false;
            }
        }
        apply_keyword(go, row->keyword, value);
    }
    return true;
}

// What only strict mode takes notice of. The moves are searched in the order of generation.
void set_strict_limits(SearchLimits& limits, const GoParameters& go) {
    limits.limit_nodes_set = go.nodes >= 0;
    limits.limit_nodes = static_cast<std::uint64_t>(std::max<std::int64_t>(go.nodes, 0));
    MoveList legal;
    gen_legal_moves(legal, uci_state.board);
    for (int i = 0; i < legal.size; ++i) {
        const Move move = legal.move[static_cast<std::size_t>(i)];
        if (list_contains(go.only_moves, move)) {
            list_add(limits.only_moves, move);
        }
    }
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
    GoParameters go;
    if (!read_parameters(go, arguments)) {
        return;
    }
    search_reset();
    SearchLimits& limits = search_shared.limits;
    limits.start_time = received;
    set_depth_limit(limits, go);
    set_time_limits(limits, go, uci_state.board.turn);
    if (uci_state.strict) {
        set_strict_limits(limits, go);
        report_strict_reset();
    }
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
