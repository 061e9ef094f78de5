#include "search/parameters.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "frontend/difficulty.h"
#include "frontend/option.h"
#include "search/history.h"

namespace zar {

SearchParameters search_parameters{};
Reductions reductions{};

namespace {

// A technique that can be off, on, or on under a condition. Texts are compared exactly; an unknown
// one counts as the condition.
struct Switch {
    bool enabled;
    bool conditional;
};

Switch read_switch(const char* name, bool allowed) {
    const std::string_view text = option_get_string(name);
    if (!allowed || text == "No") {
        return {false, false};
    }
    return {true, text != "Yes"};
}

}  // namespace

void search_parameters_setup() {
    SearchParameters& parameters = search_parameters;
    parameters.level = difficulty_level();
    const bool selective = difficulty_allows_selective_search(parameters.level);
    const Switch null_move = read_switch("Null Move Pruning", selective);
    parameters.null_enabled = null_move.enabled;
    parameters.null_fail_high = null_move.conditional;
    parameters.null_reduction = option_get_bounded("Null Move Reduction");
    const Switch verify = read_switch("Verify Search", selective);
    parameters.verify_enabled = verify.enabled;
    parameters.verify_endgame_only = verify.conditional;
    parameters.verify_reduction = option_get_bounded("Verify Reduction");
    parameters.history_reduction_enabled = selective && option_get_bool("History Pruning");
    if (selective) {
        const int percent = option_get_bounded("History Threshold");
        parameters.history_threshold = (percent * kHistoryRatioOne + 50) / 100;
    }
    parameters.futility_enabled = selective && option_get_bool("Futility Pruning");
    parameters.futility_margin = option_get_bounded("Futility Margin");
    parameters.futility_extension = option_get_bounded("Futility Extension");
    parameters.delta_pruning = selective && option_get_bool("Delta Pruning");
    parameters.delta_margin = option_get_bounded("Delta Margin");
    parameters.reduce_one = option_get_bounded("ZARXReduceOne");
}

void reductions_init() {
    std::array<double, kReductionSize> logarithm{};
    for (std::size_t i = 1; i < kReductionSize; ++i) {
        logarithm[i] = std::log(static_cast<double>(i));
    }
    const auto whole_plies = [](double plies) {
        return static_cast<std::int8_t>(plies < 1 ? 0 : std::floor(plies));
    };
    for (std::size_t depth = 1; depth < kReductionSize; ++depth) {
        for (std::size_t moves = 1; moves < kReductionSize; ++moves) {
            const double x = logarithm[depth] * logarithm[moves];
            reductions.pv[depth][moves] = whole_plies(x / 3);
            reductions.nonpv[depth][moves] = whole_plies(x * 0.4444444444444444 + 0.33);
        }
    }
}

int reduction_of(bool pv_node, int depth, int moves_searched) {
    const auto row = static_cast<std::size_t>(std::min(depth, kReductionSize - 1));
    const auto column = static_cast<std::size_t>(std::min(moves_searched, kReductionSize - 1));
    return pv_node ? reductions.pv[row][column] : reductions.nonpv[row][column];
}

}  // namespace zar
