#include "eval/weights.h"

#include <array>
#include <cstddef>

#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using EvalWeights = test::EvalTest;

TEST_F(EvalWeights, PawnsAtFullStrength) {
    const PawnWeights& pawns = eval_weights.pawns;
    EXPECT_EQ(pawns.doubled, (ScorePair{10, 20}));
    EXPECT_EQ(pawns.isolated_open, (ScorePair{20, 20}));
    EXPECT_EQ(pawns.isolated_closed, (ScorePair{10, 20}));
    EXPECT_EQ(pawns.backward_open, (ScorePair{16, 10}));
    EXPECT_EQ(pawns.backward_closed, (ScorePair{8, 10}));
    EXPECT_EQ(pawns.candidate_min, (ScorePair{5, 10}));
    EXPECT_EQ(pawns.candidate_max, (ScorePair{55, 110}));
    EXPECT_EQ(pawns.scale, 333);
}

TEST_F(EvalWeights, MaterialAtFullStrength) {
    const MaterialWeights& material = eval_weights.material;
    EXPECT_EQ(material.pawn, (ScorePair{100, 100}));
    EXPECT_EQ(material.knight, (ScorePair{300, 300}));
    EXPECT_EQ(material.bishop, (ScorePair{325, 330}));
    EXPECT_EQ(material.rook, (ScorePair{500, 525}));
    EXPECT_EQ(material.queen, (ScorePair{900, 1000}));
    EXPECT_EQ(material.bishop_pair, (ScorePair{10, 20}));
    EXPECT_EQ(material.imbalance, 30);
    EXPECT_EQ(material.pawn_ending_extra, 20);
    EXPECT_EQ(material.rook_ending_damping, 5);
    EXPECT_EQ(material.scale, 205);
}

TEST_F(EvalWeights, PiecesAtFullStrength) {
    EXPECT_EQ(eval_weights.patterns.trapped_bishop, 75);
    EXPECT_EQ(eval_weights.patterns.blocked_bishop, 25);
    EXPECT_EQ(eval_weights.patterns.trapped_rook, 25);
    const PasserWeights& passers = eval_weights.passers;
    EXPECT_EQ(passers.min, (ScorePair{10, 20}));
    EXPECT_EQ(passers.max, (ScorePair{70, 140}));
    EXPECT_EQ(passers.unstoppable, 900);
    EXPECT_EQ(passers.free_stop, 80);
    EXPECT_EQ(passers.enemy_king_step, 20);
    EXPECT_EQ(passers.own_king_step, 5);
    EXPECT_EQ(passers.scale, 269);
    EXPECT_EQ(eval_weights.king.scale, 512);
    const MobilityWeights& mobility = eval_weights.mobility;
    EXPECT_EQ(mobility.unit, 1);
    EXPECT_EQ(unpack(mobility.rook_open), (ScorePair{2, 2}));
    EXPECT_EQ(unpack(mobility.rook_half_open), (ScorePair{1, 1}));
    EXPECT_EQ(unpack(mobility.rook_near_king), (ScorePair{1, 0}));
    EXPECT_EQ(unpack(mobility.rook_on_king_file), (ScorePair{2, 0}));
    EXPECT_EQ(unpack(mobility.rook_seventh), (ScorePair{2, 4}));
    EXPECT_EQ(unpack(mobility.queen_seventh), (ScorePair{1, 2}));
    EXPECT_EQ(mobility.scale, 256);
}

TEST_F(EvalWeights, ProductsOfTheLevelAreTruncated) {
    set_level(9);
    EXPECT_EQ(eval_weights.pawns.doubled, (ScorePair{9, 18}));
    EXPECT_EQ(eval_weights.pawns.isolated_open, (ScorePair{18, 18}));
    EXPECT_EQ(eval_weights.pawns.isolated_closed, (ScorePair{9, 18}));
    EXPECT_EQ(eval_weights.pawns.backward_open, (ScorePair{14, 9}));
    EXPECT_EQ(eval_weights.pawns.backward_closed, (ScorePair{7, 9}));
    EXPECT_EQ(eval_weights.pawns.candidate_min, (ScorePair{4, 9}));
    EXPECT_EQ(eval_weights.pawns.candidate_max, (ScorePair{49, 99}));
    EXPECT_EQ(eval_weights.material.bishop, (ScorePair{292, 297}));
    EXPECT_EQ(eval_weights.material.rook, (ScorePair{450, 472}));
    EXPECT_EQ(eval_weights.material.queen, (ScorePair{810, 900}));
    EXPECT_EQ(eval_weights.material.imbalance, 27);
    EXPECT_EQ(eval_weights.material.rook_ending_damping, 4);
    EXPECT_EQ(eval_weights.patterns.trapped_bishop, 67);
    EXPECT_EQ(eval_weights.patterns.blocked_bishop, 22);
    EXPECT_EQ(eval_weights.patterns.trapped_rook, 22);
    EXPECT_EQ(eval_weights.passers.min, (ScorePair{9, 18}));
    EXPECT_EQ(eval_weights.passers.max, (ScorePair{63, 126}));
    EXPECT_EQ(eval_weights.passers.unstoppable, 810);
    EXPECT_EQ(eval_weights.passers.free_stop, 72);
    EXPECT_EQ(eval_weights.passers.enemy_king_step, 18);
    EXPECT_EQ(eval_weights.passers.own_king_step, 4);
    EXPECT_EQ(eval_weights.mobility.unit, 0);
    EXPECT_EQ(unpack(eval_weights.mobility.rook_open), (ScorePair{1, 1}));
    EXPECT_EQ(unpack(eval_weights.mobility.rook_half_open), (ScorePair{0, 0}));
    EXPECT_EQ(unpack(eval_weights.mobility.rook_near_king), (ScorePair{0, 0}));
    EXPECT_EQ(unpack(eval_weights.mobility.rook_on_king_file), (ScorePair{1, 0}));
    EXPECT_EQ(unpack(eval_weights.mobility.rook_seventh), (ScorePair{1, 3}));
    EXPECT_EQ(unpack(eval_weights.mobility.queen_seventh), (ScorePair{0, 1}));
}

// Of a table whose entries are the same in both phases.
template <std::size_t kSize>
std::array<int, kSize> values_of(const std::array<PackedPair, kSize>& table) {
    std::array<int, kSize> values{};
    for (std::size_t i = 0; i < kSize; ++i) {
        const ScorePair pair = unpack(table[i]);
        EXPECT_EQ(pair.opening, pair.endgame) << i;
        values[i] = pair.opening;
    }
    return values;
}

TEST_F(EvalWeights, MobilityTablesAreByReachedSquares) {
    const MobilityWeights& mobility = eval_weights.mobility;
    EXPECT_EQ(values_of(mobility.knight), (std::array<int, 9>{-16, -12, -8, -4, 0, 4, 8, 12, 16}));
    EXPECT_EQ(values_of(mobility.shut_in_bishop),
              (std::array<int, 14>{-20, -15, -10, -5, 0, 5, 10, 15, 20, 0, 0, 0, 0, 0}));
    EXPECT_EQ(values_of(mobility.bishop),
              (std::array<int, 14>{-15, -10, -5, 0, 5, 10, 15, 20, 0, 0, 0, 0, 0, 0}));
    // Half of the open file's bonus is taken off.
    for (int reached = 0; reached <= 14; ++reached) {
        EXPECT_EQ(unpack(mobility.rook[static_cast<std::size_t>(reached)]),
                  (ScorePair{2 * reached - 14 - 1, 4 * reached - 28 - 1}))
            << reached;
    }
}

TEST_F(EvalWeights, MobilityTablesStayWithinTheirEnds) {
    const MobilityWeights& mobility = eval_weights.mobility;
    set_level(20);
    EXPECT_EQ(values_of(mobility.knight), (std::array<int, 9>{-16, -8, 0, 8, 16, 16, 16, 16, 16}));
    EXPECT_EQ(unpack(mobility.bishop[3]), (ScorePair{15, 15}));
    EXPECT_EQ(unpack(mobility.bishop[13]), (ScorePair{0, 0}));
    EXPECT_EQ(unpack(mobility.rook[7]), (ScorePair{14 - 2, 28 - 2}));
    EXPECT_EQ(unpack(mobility.rook[8]), (ScorePair{0 - 2, 0 - 2}));
    set_level(-20);
    EXPECT_EQ(unpack(mobility.knight[8]), (ScorePair{-16, -16}));
    EXPECT_EQ(unpack(mobility.bishop[0]), (ScorePair{-15, -15}));
    EXPECT_EQ(unpack(mobility.bishop[13]), (ScorePair{-20, -20}));
    EXPECT_EQ(unpack(mobility.rook[14]), (ScorePair{-14 + 2, -28 + 2}));
}

TEST_F(EvalWeights, GroupScalesAreSwitchedOffBelowLevelSeven) {
    set_level(7);
    EXPECT_EQ(eval_weights.pawns.scale, 333);
    EXPECT_EQ(eval_weights.passers.scale, 269);
    EXPECT_EQ(eval_weights.king.scale, 512);
    EXPECT_EQ(eval_weights.mobility.scale, 256);
    set_level(6);
    EXPECT_EQ(eval_weights.pawns.scale, 0);
    EXPECT_EQ(eval_weights.passers.scale, 0);
    EXPECT_EQ(eval_weights.king.scale, 0);
    EXPECT_EQ(eval_weights.mobility.scale, 0);
}

TEST_F(EvalWeights, MaterialScaleDropsBelowLevelFive) {
    set_level(5);
    EXPECT_EQ(eval_weights.material.scale, 205);
    set_level(4);
    EXPECT_EQ(eval_weights.material.scale, 130);
    EXPECT_EQ(eval_weights.material.queen, (ScorePair{360, 400}));
}

TEST_F(EvalWeights, LevelZeroKnowsNoValues) {
    set_level(0);
    const MaterialWeights& material = eval_weights.material;
    for (const ScorePair value : {material.pawn, material.knight, material.bishop, material.rook,
                                  material.queen, material.bishop_pair}) {
        EXPECT_EQ(value, (ScorePair{0, 0}));
    }
    EXPECT_EQ(eval_weights.patterns.trapped_bishop, 0);
    EXPECT_EQ(eval_weights.passers.unstoppable, 0);
}

TEST_F(EvalWeights, LevelsBeyondTheRangeAreUsedAsTheyAre) {
    set_level(20);
    EXPECT_EQ(eval_weights.material.bishop, (ScorePair{650, 660}));
    EXPECT_EQ(eval_weights.mobility.unit, 2);
    set_level(-1);
    EXPECT_EQ(eval_weights.material.bishop, (ScorePair{-32, -33}));
    EXPECT_EQ(eval_weights.material.rook_ending_damping, 0);
    EXPECT_EQ(eval_weights.pawns.scale, 0);
    EXPECT_EQ(eval_weights.material.scale, 130);
}

TEST_F(EvalWeights, LazyExitsFollowTheirOptions) {
    EXPECT_TRUE(eval_weights.lazy.enabled);
    EXPECT_EQ(eval_weights.lazy.first_margin, 200);
    EXPECT_EQ(eval_weights.lazy.second_margin, 125);
    option_set("ZARXEvalADVOPEN", "false");
    option_set("ZARXEvalADVMID", "250");
    option_set("ZARXEvalADVEND", "0");
    eval_apply_weights();
    EXPECT_FALSE(eval_weights.lazy.enabled);
    EXPECT_EQ(eval_weights.lazy.first_margin, 250);
    EXPECT_EQ(eval_weights.lazy.second_margin, 0);
}

TEST_F(EvalWeights, LazyMarginsStayWithinTheirRange) {
    option_set("ZARXEvalADVMID", "5000");
    option_set("ZARXEvalADVEND", "-5");
    eval_apply_weights();
    EXPECT_EQ(eval_weights.lazy.first_margin, 900);
    EXPECT_EQ(eval_weights.lazy.second_margin, 0);
}

}  // namespace
}  // namespace zar
