#include "eval/weights.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "frontend/option.h"

namespace zar {

Weights eval_weights{};

namespace {

constexpr int kPawnScale = 333;
constexpr int kPasserScale = 269;
constexpr int kKingScale = 512;
constexpr int kMobilityScale = 256;

constexpr int kMaterialScale = 205;
constexpr int kLowMaterialScale = 130;
constexpr int kFirstFullMaterialLevel = 5;

// The level times a factor that is no whole number, truncated toward zero.
int level_times(double factor, int level) { return static_cast<int>(factor * level); }

// By units of mobility; counts beyond a table take the nearest entry.
constexpr std::array<int, 9> kKnightMobility = {-16, -12, -8, -4, 0, 4, 8, 12, 16};

// A bishop that reaches more than eight squares gets no bonus: such boards are open to both sides.
constexpr std::array<int, 16> kBishopMobility = {-20, -15, -10, -5, 0, 5, 10, 15,
                                                 20,  0,   0,   0,  0, 0, 0,  0};

consteval std::array<ScorePair, 16> make_rook_mobility() {
    std::array<ScorePair, 16> table{};
    for (int count = 0; count < 15; ++count) {
        table[static_cast<std::size_t>(count)] = {2 * count - 14, 4 * count - 28};
    }
    return table;
}
constexpr std::array<ScorePair, 16> kRookMobility = make_rook_mobility();

template <std::size_t kSize, typename Entry>
Entry entry_at(const std::array<Entry, kSize>& table, int index) {
    return table[static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(kSize) - 1))];
}

// `price` is what every rook pays.
void fill_mobility(MobilityWeights& mobility, ScorePair price) {
    const auto fill = [unit = mobility.unit](auto& table, auto entry) {
        for (std::size_t reached = 0; reached < table.size(); ++reached) {
            table[reached] = pack(entry(static_cast<int>(reached) * unit));
        }
    };
    const auto both = [](int value) { return ScorePair{value, value}; };
    fill(mobility.knight, [both](int units) { return both(entry_at(kKnightMobility, units)); });
    // A bishop counts one square more unless two pawns shut it in.
    fill(mobility.bishop, [both](int units) { return both(entry_at(kBishopMobility, units + 1)); });
    fill(mobility.shut_in_bishop,
         [both](int units) { return both(entry_at(kBishopMobility, units)); });
    fill(mobility.rook, [price](int units) { return entry_at(kRookMobility, units) - price; });
}

int positional_scale(int scale, int level) { return level < kFirstPositionalLevel ? 0 : scale; }

}  // namespace

void weights_apply_pawns(int level) {
    PawnWeights& pawns = eval_weights.pawns;
    pawns.doubled = {level, 2 * level};
    pawns.isolated_open = {2 * level, 2 * level};
    pawns.isolated_closed = {level, 2 * level};
    pawns.backward_open = {level_times(1.6, level), level};
    pawns.backward_closed = {level_times(0.8, level), level};
    pawns.candidate_min = {level_times(0.5, level), level};
    pawns.candidate_max = {level_times(5.5, level), 11 * level};
    pawns.scale = positional_scale(kPawnScale, level);
}

void weights_apply_material(int level) {
    MaterialWeights& material = eval_weights.material;
    material.pawn = {10 * level, 10 * level};
    material.knight = {30 * level, 30 * level};
    material.bishop = {level_times(32.5, level), 33 * level};
    material.rook = {50 * level, level_times(52.5, level)};
    material.queen = {90 * level, 100 * level};
    material.bishop_pair = {level, 2 * level};
    material.imbalance = 3 * level;
    material.pawn_ending_extra = 2 * level;
    material.rook_ending_damping = level_times(0.5, level);
    material.scale = level < kFirstFullMaterialLevel ? kLowMaterialScale : kMaterialScale;
}

void weights_apply_pieces(int level) {
    PatternWeights& patterns = eval_weights.patterns;
    patterns.trapped_bishop = level_times(7.5, level);
    patterns.blocked_bishop = level_times(2.5, level);
    patterns.trapped_rook = level_times(2.5, level);

    PasserWeights& passers = eval_weights.passers;
    passers.min = {level, 2 * level};
    passers.max = {7 * level, 14 * level};
    passers.unstoppable = 90 * level;
    passers.free_stop = 8 * level;
    passers.enemy_king_step = 2 * level;
    passers.own_king_step = level_times(0.5, level);
    passers.scale = positional_scale(kPasserScale, level);

    eval_weights.king.scale = positional_scale(kKingScale, level);

    MobilityWeights& mobility = eval_weights.mobility;
    mobility.unit = level_times(0.1, level);
    const ScorePair rook_open = {level_times(0.2, level), level_times(0.2, level)};
    mobility.rook_open = pack(rook_open);
    mobility.rook_half_open = pack({level_times(0.1, level), level_times(0.1, level)});
    mobility.rook_near_king = pack({level_times(0.1, level), 0});
    mobility.rook_on_king_file = pack({level_times(0.2, level), 0});
    mobility.rook_seventh = pack({level_times(0.2, level), level_times(0.4, level)});
    mobility.queen_seventh = pack({level_times(0.1, level), level_times(0.2, level)});
    // Every rook pays half of the open file's bonus, so that only a file without own pawns gains.
    fill_mobility(mobility, {rook_open.opening / 2, rook_open.endgame / 2});
    mobility.scale = positional_scale(kMobilityScale, level);

    LazyExits& lazy = eval_weights.lazy;
    lazy.enabled = option_get_bool("ZARXEvalADVOPEN");
    lazy.first_margin = option_get_bounded("ZARXEvalADVMID");
    lazy.second_margin = option_get_bounded("ZARXEvalADVEND");
}

}  // namespace zar
