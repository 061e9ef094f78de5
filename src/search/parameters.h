// The search's options as numbers, read once before every search, and the table of reductions.
#pragma once

#include <array>
#include <cstdint>

namespace zar {

struct SearchParameters {
    int level;  // difficulty_level()
    bool null_enabled;
    bool null_fail_high;  // try a null move only where the evaluation is above beta
    int null_reduction;
    bool verify_enabled;
    bool verify_endgame_only;
    int verify_reduction;
    bool history_reduction_enabled;
    int history_threshold = 9830;  // of kHistoryRatioOne; keeps its last value at low levels
    bool futility_enabled;
    int futility_margin;     // centipawns at depth 1
    int futility_extension;  // centipawns at greater depths
    bool delta_pruning;
    int delta_margin;  // centipawns
    int reduce_one;
};

// Written by the command thread while no search runs.
extern SearchParameters search_parameters;

// Reads the options; below full pruning strength the selective techniques are off whatever the
// options say.
void search_parameters_setup();

constexpr int kReductionSize = 64;
using ReductionTable = std::array<std::array<std::int8_t, kReductionSize>, kReductionSize>;

// Plies by which a late move is searched less deep. Index: depth, moves searched before it.
struct Reductions {
    ReductionTable pv;
    ReductionTable nonpv;
};

extern Reductions reductions;

// Fills the reduction tables. Called once at start-up.
void reductions_init();

// Both indices are held to the table's end.
[[nodiscard]] int reduction_of(bool pv_node, int depth, int moves_searched);

}  // namespace zar
