#include "frontend/option.h"

#include <limits>
#include <string>

#include "gtest/gtest.h"
#include "support/fatal_support.h"

namespace zar {
namespace {

using test::fatal_text_of;

class OptionTable : public ::testing::Test {
  protected:
    void SetUp() override { option_defaults(); }
    void TearDown() override { option_defaults(); }
};

struct Row {
    const char* name;
    bool visible;
    const char* type;
    const char* value;
    const char* extra;
};

constexpr Row kRows[] = {
    {"Threads", true, "spin", "1", "min 1 max 4"},
    {"Hash", true, "spin", "256", "min 16 max 1024"},
    {"Difficulty Level", true, "spin", "10", "min 0 max 10"},
    {"MultiPV", true, "spin", "1", "min 1 max 4"},
    {"Book File", true, "string", "ZAR.ebk", ""},
    {"Own Book", true, "check", "true", ""},
    {"Ponder", true, "check", "true", ""},
    {"Search Info", true, "check", "true", ""},
    {"Extra Info", true, "check", "false", ""},
    {"TLCV fix", true, "check", "true", ""},
    {"ZARXST", false, "spin", "0", "min 0 max 3600"},
    {"ZARXSD", false, "spin", "0", "min 0 max 20"},
    {"ZARXLoadStructureTest", false, "string", "c:/tolmerin/", ""},
    {"ZARXLoadStructure", false, "spin", "16", "min 16 max 1024"},
    {"Null Move Pruning", false, "combo", "Yes", "var Yes var Fail High var No"},
    {"Null Move Reduction", false, "spin", "3", "min 1 max 4"},
    {"Verify Search", false, "combo", "Yes", "var Yes var EndGame var No"},
    {"Verify Reduction", false, "spin", "5", "min 1 max 6"},
    {"History Pruning", false, "check", "true", ""},
    {"History Threshold", false, "spin", "70", "min 0 max 100"},
    {"Futility Pruning", false, "check", "true", ""},
    {"Futility Margin", false, "spin", "100", "min 0 max 500"},
    {"Futility Extension", false, "spin", "200", "min 0 max 900"},
    {"Delta Pruning", false, "spin", "1", "min 0 max 2"},
    {"Delta Margin", false, "spin", "50", "min 0 max 500"},
    {"ZARXReduceOne", false, "spin", "1", "min 0 max 2"},
    {"ZARXStructureSafety", false, "spin", "80", "min 0 max 400"},
    {"ZARXEVALMOB", false, "spin", "100", "min 0 max 400"},
    {"ZARXEVALMOBEND", false, "spin", "100", "min 0 max 400"},
    {"King Safety", false, "spin", "200", "min 0 max 400"},
    {"Pawn Structure", false, "spin", "130", "min 0 max 400"},
    {"Passed Pawns", false, "spin", "105", "min 0 max 400"},
    {"ZARXEvalADVOPEN", false, "check", "true", ""},
    {"ZARXEvalADVMID", false, "spin", "200", "min 0 max 900"},
    {"ZARXEvalADVEND", false, "spin", "125", "min 0 max 900"},
    {"ZARXBonusEndgame", false, "spin", "20", "min 0 max 100"},
    {"ZARXKingPEB", false, "spin", "30", "min 0 max 100"},
    {"ZARXRookPEP", false, "spin", "10", "min 0 max 100"},
};

TEST_F(OptionTable, HasTheseRowsInThisOrder) {
    const std::span<const Option> table = option_table();
    ASSERT_EQ(table.size(), std::size(kRows));
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_STREQ(table[i].name, kRows[i].name) << i;
        EXPECT_EQ(table[i].visible, kRows[i].visible) << kRows[i].name;
        EXPECT_STREQ(table[i].type, kRows[i].type) << kRows[i].name;
        EXPECT_STREQ(table[i].default_value, kRows[i].value) << kRows[i].name;
        EXPECT_STREQ(table[i].extra, kRows[i].extra) << kRows[i].name;
        EXPECT_EQ(table[i].value, kRows[i].value) << kRows[i].name;
        EXPECT_STREQ(option_get_string(kRows[i].name), kRows[i].value);
    }
}

TEST_F(OptionTable, NamesDifferEvenWithoutCase) {
    for (const Row& row : kRows) {
        ASSERT_TRUE(option_set(row.name, std::string("mark ") + row.name));
    }
    for (const Row& row : kRows) {
        EXPECT_EQ(option_get_string(row.name), std::string("mark ") + row.name);
    }
}

TEST_F(OptionTable, DefaultsComeBack) {
    for (const Row& row : kRows) {
        option_set(row.name, "something else");
    }
    option_defaults();
    for (const Row& row : kRows) {
        EXPECT_STREQ(option_get_string(row.name), row.value);
    }
}

TEST_F(OptionTable, NamesMatchWithoutCase) {
    EXPECT_TRUE(option_set("hash", "64"));
    EXPECT_EQ(option_get_int("HASH"), 64);
    EXPECT_TRUE(option_set("difficulty LEVEL", "3"));
    EXPECT_EQ(option_get_int("Difficulty Level"), 3);
}

TEST_F(OptionTable, AnUnknownNameChangesNothing) {
    for (const char* const name : {"Foo", "", "Hash ", " Hash", "Has", "Hashh"}) {
        EXPECT_FALSE(option_set(name, "1")) << name;
    }
    for (const Row& row : kRows) {
        EXPECT_STREQ(option_get_string(row.name), row.value);
    }
}

TEST_F(OptionTable, ValuesAreStoredUnchecked) {
    for (const char* const value : {"8", "abc", "", "  spaced  ", "-1"}) {
        EXPECT_TRUE(option_set("Hash", value));
        EXPECT_STREQ(option_get_string("Hash"), value);
    }
}

TEST_F(OptionTable, BooleansAreTrueYesAndOneOnly) {
    for (const char* const value : {"true", "TRUE", "True", "yes", "YES", "1"}) {
        option_set("Own Book", value);
        EXPECT_TRUE(option_get_bool("Own Book")) << value;
    }
    for (const char* const value :
         {"false", "no", "0", "off", "on", "2", "", " true", "true ", "y", "10", "01"}) {
        option_set("Own Book", value);
        EXPECT_FALSE(option_get_bool("Own Book")) << value;
    }
}

TEST_F(OptionTable, NumbersAreTheLeadingDigits) {
    struct Number {
        const char* text;
        int value;
    };
    for (const Number& number : {Number{"abc", 0}, Number{"", 0}, Number{"  12", 12},
                                 Number{"12abc", 12}, Number{"-7", -7}, Number{"+7", 7},
                                 Number{"1 2", 1}, Number{"0x10", 0}, Number{"3.9", 3}}) {
        option_set("Threads", number.text);
        EXPECT_EQ(option_get_int("Threads"), number.value) << number.text;
    }
}

TEST_F(OptionTable, HugeNumbersStayAtTheEndOfTheRange) {
    option_set("Hash", "99999999999999999999");
    EXPECT_EQ(option_get_int("Hash"), std::numeric_limits<int>::max());
    option_set("Hash", "-99999999999999999999");
    EXPECT_EQ(option_get_int("Hash"), std::numeric_limits<int>::min());
}

TEST_F(OptionTable, BoundedNumbersKeepToTheirRow) {
    for (const Row& row : kRows) {
        if (std::string(row.type) != "spin") {
            continue;
        }
        const std::string extra = row.extra;
        const int least = std::stoi(extra.substr(4));
        const int most = std::stoi(extra.substr(extra.find("max ") + 4));
        EXPECT_EQ(option_get_bounded(row.name), std::stoi(row.value)) << row.name;
        option_set(row.name, std::to_string(least - 1));
        EXPECT_EQ(option_get_bounded(row.name), least) << row.name;
        option_set(row.name, std::to_string(most + 1));
        EXPECT_EQ(option_get_bounded(row.name), most) << row.name;
        option_set(row.name, std::to_string(most));
        EXPECT_EQ(option_get_bounded(row.name), most) << row.name;
        option_set(row.name, "99999999999999999999");
        EXPECT_EQ(option_get_bounded(row.name), most) << row.name;
    }
}

TEST_F(OptionTable, AGetterWithAnUnknownNameIsFatal) {
    EXPECT_EQ(fatal_text_of([] { static_cast<void>(option_get_bool("Foo")); }),
              "X-Error 5EOT1UO1 \"Foo\"\n");
    EXPECT_EQ(fatal_text_of([] { static_cast<void>(option_get_int("")); }),
              "X-Error 5EOT1UO1 \"\"\n");
    EXPECT_EQ(fatal_text_of([] { static_cast<void>(option_get_bounded("Hash Size")); }),
              "X-Error 5EOT1UO1 \"Hash Size\"\n");
    EXPECT_EQ(fatal_text_of([] { static_cast<void>(option_get_string("%s")); }),
              "X-Error 5EOT1UO1 \"%s\"\n");
}

TEST_F(OptionTable, TheTenVisibleRowsArePrintedWithTheirCurrentValues) {
    option_set("Hash", "64");
    option_set("Book File", "my book.bin");
    ::testing::internal::CaptureStdout();
    option_print_all();
    std::fflush(stdout);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "option name Threads type spin default 1 min 1 max 4\n"
              "option name Hash type spin default 64 min 16 max 1024\n"
              "option name Difficulty Level type spin default 10 min 0 max 10\n"
              "option name MultiPV type spin default 1 min 1 max 4\n"
              "option name Book File type string default my book.bin\n"
              "option name Own Book type check default true\n"
              "option name Ponder type check default true\n"
              "option name Search Info type check default true\n"
              "option name Extra Info type check default false\n"
              "option name TLCV fix type check default true\n");
}

}  // namespace
}  // namespace zar
