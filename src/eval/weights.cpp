#include "eval/weights.h"

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
    mobility.rook_open = {level_times(0.2, level), level_times(0.2, level)};
    mobility.rook_half_open = {level_times(0.1, level), level_times(0.1, level)};
    mobility.rook_near_king = level_times(0.1, level);
    mobility.rook_on_king_file = level_times(0.2, level);
    mobility.rook_seventh = {level_times(0.2, level), level_times(0.4, level)};
    mobility.queen_seventh = {level_times(0.1, level), level_times(0.2, level)};
    mobility.scale = positional_scale(kMobilityScale, level);

    LazyExits& lazy = eval_weights.lazy;
    lazy.enabled = option_get_bool("ZARXEvalADVOPEN");
    lazy.first_margin = option_get_bounded("ZARXEvalADVMID");
    lazy.second_margin = option_get_bounded("ZARXEvalADVEND");
}

}  // namespace zar
