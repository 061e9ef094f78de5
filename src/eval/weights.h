// Every weight of the evaluation that something reads. All of them follow from the difficulty
// level: most are products of the level with a fixed factor, truncated toward zero, so that level
// 10 is full strength and level 0 is blind; the group scales (pawn structure, passed pawns, king
// safety, mobility) are switched off altogether below level 7. Only the lazy exits have options of
// their own.
#pragma once

#include <array>

#include "eval/score.h"

namespace zar {

struct PawnWeights {
    // Penalties.
    ScorePair doubled;  // for each pawn with an own pawn behind it
    ScorePair isolated_open;
    ScorePair isolated_closed;
    ScorePair backward_open;
    ScorePair backward_closed;
    // Bonus of a candidate passed pawn, from the least to the most advanced.
    ScorePair candidate_min;
    ScorePair candidate_max;
    int scale;  // of the whole group, over 256
};

struct MaterialWeights {
    ScorePair pawn;
    ScorePair knight;
    ScorePair bishop;
    ScorePair rook;
    ScorePair queen;
    ScorePair bishop_pair;
    int imbalance;            // pieces against pawns, both phases
    int pawn_ending_extra;    // per extra pawn in a pawn ending, endgame, up to two
    int rook_ending_damping;  // taken from the side with more pawns, endgame
    int scale;                // of all material, over 256
};

struct PatternWeights {
    int trapped_bishop;
    int blocked_bishop;
    int trapped_rook;
};

struct PasserWeights {
    // Bonus from the least to the most advanced pawn.
    ScorePair min;
    ScorePair max;
    // Endgame only, for the most advanced pawn.
    int unstoppable;
    int free_stop;        // the square in front is empty and safe to step on
    int enemy_king_step;  // per step from the stop square to the enemy king
    int own_king_step;    // penalty per step to the own king
    int scale;            // of the whole group, over 256
};

struct KingWeights {
    int scale;  // of the shelter penalty, over 256
};

struct MobilityWeights {
    int unit;  // per reachable empty square
    // By the number of those squares, what they are worth. Knights and bishops gain the same in
    // both phases; a rook's table includes what its file costs it, see weights.cpp.
    std::array<PackedPair, 9> knight;
    std::array<PackedPair, 14> bishop;
    std::array<PackedPair, 14> shut_in_bishop;
    std::array<PackedPair, 15> rook;
    PackedPair rook_open;  // both gained on files without own pawns
    PackedPair rook_half_open;
    PackedPair rook_near_king;     // within one file of the enemy king, opening
    PackedPair rook_on_king_file;  // in all, opening
    PackedPair rook_seventh;
    PackedPair queen_seventh;
    int scale;  // of the whole group, over 256
};

struct LazyExits {
    bool enabled;
    // Centipawns that the terms left out may be worth, 0..900.
    int first_margin;
    int second_margin;
};

struct Weights {
    PawnWeights pawns;
    MaterialWeights material;
    PatternWeights patterns;
    PasserWeights passers;
    KingWeights king;
    MobilityWeights mobility;
    LazyExits lazy;
};

// All zero until applied. Written by the command thread while no search runs, read by all.
extern Weights eval_weights;

// The lowest level at which the group scales are not 0.
constexpr int kFirstPositionalLevel = 7;

// Each fills its part for a level (-1000..1000) and must be followed by clearing the tables that
// hold scores weighted before: call eval_apply_weights, which does it all.
void weights_apply_pawns(int level);
void weights_apply_material(int level);

// Patterns, passers, king and mobility; reads the options of the lazy exits too.
void weights_apply_pieces(int level);

}  // namespace zar
