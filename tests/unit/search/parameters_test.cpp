#include "search/parameters.h"

#include <cmath>
#include <string>

#include "gtest/gtest.h"
#include "support/search_support.h"

namespace zar {
namespace {

using Parameters = test::SearchTest;

TEST_F(Parameters, Defaults) {
    const SearchParameters& p = search_parameters;
    EXPECT_TRUE(p.null_enabled);
    EXPECT_FALSE(p.null_fail_high);
    EXPECT_EQ(p.null_reduction, 3);
    EXPECT_TRUE(p.verify_enabled);
    EXPECT_FALSE(p.verify_endgame_only);
    EXPECT_EQ(p.verify_reduction, 5);
    EXPECT_TRUE(p.history_reduction_enabled);
    EXPECT_EQ(p.history_threshold, (70 * 16384 + 50) / 100);
    EXPECT_TRUE(p.futility_enabled);
    EXPECT_EQ(p.futility_margin, 100);
    EXPECT_EQ(p.futility_extension, 200);
    EXPECT_TRUE(p.delta_pruning);
    EXPECT_EQ(p.delta_margin, 50);
    EXPECT_EQ(p.reduce_one, 1);
}

struct SwitchRow {
    const char* text;
    bool enabled;
    bool conditional;
};

TEST_F(Parameters, NullMoveTextsAreComparedExactly) {
    for (const SwitchRow& row :
         {SwitchRow{"Yes", true, false}, SwitchRow{"Fail High", true, true},
          SwitchRow{"No", false, false}, SwitchRow{"yes", true, true}, SwitchRow{"no", true, true},
          SwitchRow{"", true, true}, SwitchRow{"No ", true, true}}) {
        set("Null Move Pruning", row.text);
        EXPECT_EQ(search_parameters.null_enabled, row.enabled) << row.text;
        EXPECT_EQ(search_parameters.null_fail_high, row.conditional) << row.text;
    }
}

TEST_F(Parameters, VerificationTextsAreComparedExactly) {
    for (const SwitchRow& row : {SwitchRow{"Yes", true, false}, SwitchRow{"EndGame", true, true},
                                 SwitchRow{"No", false, false}, SwitchRow{"endgame", true, true},
                                 SwitchRow{"NO", true, true}, SwitchRow{"false", true, true}}) {
        set("Verify Search", row.text);
        EXPECT_EQ(search_parameters.verify_enabled, row.enabled) << row.text;
        EXPECT_EQ(search_parameters.verify_endgame_only, row.conditional) << row.text;
    }
}

TEST_F(Parameters, ChecksAreReadAsBooleans) {
    for (const char* const text : {"false", "no", "0", "2", "on", ""}) {
        set("History Pruning", text);
        set("Futility Pruning", text);
        set("Delta Pruning", text);
        EXPECT_FALSE(search_parameters.history_reduction_enabled) << text;
        EXPECT_FALSE(search_parameters.futility_enabled) << text;
        EXPECT_FALSE(search_parameters.delta_pruning) << text;
    }
    for (const char* const text : {"true", "TRUE", "Yes", "1"}) {
        set("History Pruning", text);
        set("Futility Pruning", text);
        set("Delta Pruning", text);
        EXPECT_TRUE(search_parameters.history_reduction_enabled) << text;
        EXPECT_TRUE(search_parameters.futility_enabled) << text;
        EXPECT_TRUE(search_parameters.delta_pruning) << text;
    }
}

TEST_F(Parameters, NumbersAreHeldToTheirRowsBounds) {
    struct Row {
        const char* name;
        int SearchParameters::*field;
        int least;
        int most;
    };
    for (const Row& row : {Row{"Null Move Reduction", &SearchParameters::null_reduction, 1, 4},
                           Row{"Verify Reduction", &SearchParameters::verify_reduction, 1, 6},
                           Row{"Futility Margin", &SearchParameters::futility_margin, 0, 500},
                           Row{"Futility Extension", &SearchParameters::futility_extension, 0, 900},
                           Row{"Delta Margin", &SearchParameters::delta_margin, 0, 500},
                           Row{"ZARXReduceOne", &SearchParameters::reduce_one, 0, 2}}) {
        for (int value = row.least; value <= row.most; ++value) {
            option_set(row.name, std::to_string(value));
            search_parameters_setup();
            ASSERT_EQ(search_parameters.*row.field, value) << row.name;
        }
        set(row.name, std::to_string(row.most + 1));
        EXPECT_EQ(search_parameters.*row.field, row.most) << row.name;
        set(row.name, "-99999999999999999999");
        EXPECT_EQ(search_parameters.*row.field, row.least) << row.name;
    }
}

TEST_F(Parameters, TheThresholdIsAShareOfTheFullRatio) {
    struct Row {
        const char* percent;
        int threshold;
    };
    for (const Row& row : {Row{"0", 0}, Row{"1", 164}, Row{"60", 9830}, Row{"70", 11469},
                           Row{"100", 16384}, Row{"101", 16384}, Row{"-5", 0}}) {
        set("History Threshold", row.percent);
        EXPECT_EQ(search_parameters.history_threshold, row.threshold) << row.percent;
    }
}

TEST_F(Parameters, LevelNineFollowsTheOptions) {
    set("Difficulty Level", "9");
    EXPECT_TRUE(search_parameters.null_enabled);
    EXPECT_TRUE(search_parameters.verify_enabled);
    EXPECT_TRUE(search_parameters.history_reduction_enabled);
    EXPECT_TRUE(search_parameters.futility_enabled);
    EXPECT_TRUE(search_parameters.delta_pruning);
    set("Null Move Pruning", "No");
    EXPECT_FALSE(search_parameters.null_enabled);
}

TEST_F(Parameters, LevelEightAndBelowSwitchTheSelectiveTechniquesOff) {
    for (const char* const text : {"Yes", "Fail High", "whatever"}) {
        set("Null Move Pruning", text);
        set("Verify Search", text);
        for (int level = -1; level <= 8; ++level) {
            set("Difficulty Level", std::to_string(level));
            EXPECT_FALSE(search_parameters.null_enabled) << level;
            EXPECT_FALSE(search_parameters.verify_enabled) << level;
            EXPECT_FALSE(search_parameters.history_reduction_enabled) << level;
            EXPECT_FALSE(search_parameters.futility_enabled) << level;
            EXPECT_FALSE(search_parameters.delta_pruning) << level;
        }
        set("Difficulty Level", "10");
    }
}

TEST_F(Parameters, ReductionsAreReadAtEveryLevel) {
    set("Difficulty Level", "2");
    set("Null Move Reduction", "2");
    set("Verify Reduction", "4");
    set("ZARXReduceOne", "2");
    EXPECT_EQ(search_parameters.null_reduction, 2);
    EXPECT_EQ(search_parameters.verify_reduction, 4);
    EXPECT_EQ(search_parameters.reduce_one, 2);
}

TEST_F(Parameters, TheThresholdKeepsItsLastValueAtLowLevels) {
    search_parameters = {};
    option_set("Difficulty Level", "8");
    search_parameters_setup();
    EXPECT_EQ(search_parameters.history_threshold, 9830);  // never set before
    option_set("Difficulty Level", "9");
    option_set("History Threshold", "20");
    search_parameters_setup();
    EXPECT_EQ(search_parameters.history_threshold, 3277);
    option_set("Difficulty Level", "5");
    option_set("History Threshold", "90");
    search_parameters_setup();
    EXPECT_EQ(search_parameters.history_threshold, 3277);
    option_set("Difficulty Level", "10");
    search_parameters_setup();
    EXPECT_EQ(search_parameters.history_threshold, 14746);
}

TEST_F(Parameters, ReductionsGrowWithTheLogarithms) {
    for (int depth = 1; depth < 64; ++depth) {
        for (int moves = 1; moves < 64; ++moves) {
            const double x = std::log(double{depth * 1.0}) * std::log(double{moves * 1.0});
            const double pv = x / 3;
            const double nonpv = x * 0.4444444444444444 + 0.33;
            ASSERT_EQ(reduction_of(true, depth, moves), pv < 1 ? 0 : static_cast<int>(pv))
                << depth << " " << moves;
            ASSERT_EQ(reduction_of(false, depth, moves), nonpv < 1 ? 0 : static_cast<int>(nonpv))
                << depth << " " << moves;
        }
    }
}

TEST_F(Parameters, SomeReductionsByHand) {
    // ln 3 ln 3 = 1.207, ln 10 ln 10 = 5.302, ln 20 ln 40 = 11.05, ln 63 ln 63 = 17.17.
    EXPECT_EQ(reduction_of(true, 3, 3), 0);
    EXPECT_EQ(reduction_of(false, 3, 3), 0);
    EXPECT_EQ(reduction_of(false, 3, 4), 1);  // 1.523 * 4 / 9 + 0.33 = 1.007
    EXPECT_EQ(reduction_of(true, 10, 10), 1);
    EXPECT_EQ(reduction_of(false, 10, 10), 2);
    EXPECT_EQ(reduction_of(true, 20, 40), 3);
    EXPECT_EQ(reduction_of(false, 20, 40), 5);
    EXPECT_EQ(reduction_of(true, 63, 63), 5);
    EXPECT_EQ(reduction_of(false, 63, 63), 7);
}

TEST_F(Parameters, ReductionIndicesAreHeldToTheTable) {
    EXPECT_EQ(reduction_of(true, 99, 200), reduction_of(true, 63, 63));
    EXPECT_EQ(reduction_of(false, 5, 255), reduction_of(false, 5, 63));
    EXPECT_EQ(reduction_of(false, 64, 5), reduction_of(false, 63, 5));
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(reduction_of(true, 0, i), 0);
        EXPECT_EQ(reduction_of(true, i, 0), 0);
        EXPECT_EQ(reduction_of(false, 0, i), 0);
        EXPECT_EQ(reduction_of(false, i, 0), 0);
    }
}

}  // namespace
}  // namespace zar
