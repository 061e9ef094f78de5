#include "platform/text.h"

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "gtest/gtest.h"

namespace zar {
namespace {

TEST(Text, EqualityIgnoresTheCaseOfLettersOnly) {
    EXPECT_TRUE(string_equal_nocase("", ""));
    EXPECT_TRUE(string_equal_nocase("Own Book", "oWN bOOK"));
    EXPECT_TRUE(string_equal_nocase("AZaz09", "azAZ09"));
    EXPECT_FALSE(string_equal_nocase("hash", "hasp"));
    // These differ by the bit that tells upper from lower case, but are no letters.
    EXPECT_FALSE(string_equal_nocase("@", "`"));
    EXPECT_FALSE(string_equal_nocase("[", "{"));
    EXPECT_FALSE(string_equal_nocase(" ", std::string_view("\0", 1)));
}

TEST(Text, StringsOfDifferentLengthAreNotEqual) {
    EXPECT_FALSE(string_equal_nocase("hash", "has"));
    EXPECT_FALSE(string_equal_nocase("has", "hash"));
    EXPECT_FALSE(string_equal_nocase("", "h"));
    EXPECT_FALSE(string_equal_nocase("hash", std::string_view("hash\0", 5)));
}

TEST(Text, TokensAreSeparatedByRunsOfBlanks) {
    std::string_view rest = "  go  depth 5 ";
    EXPECT_EQ(token_next(rest), "go");
    EXPECT_EQ(rest, "  depth 5 ");
    EXPECT_EQ(token_next(rest), "depth");
    EXPECT_EQ(token_next(rest), "5");
    EXPECT_EQ(token_next(rest), "");
    EXPECT_EQ(token_next(rest), "");
    EXPECT_TRUE(rest.empty());
}

TEST(Text, NothingButBlanksSeparatesTokens) {
    std::string_view rest = "a\tb\r";
    EXPECT_EQ(token_next(rest), "a\tb\r");
    EXPECT_TRUE(rest.empty());
    rest = "";
    EXPECT_EQ(token_next(rest), "");
}

TEST(Text, NumbersAreReadLikeAtoi) {
    const std::vector<std::pair<std::string, int>> rows = {
        {"0", 0},     {"12", 12},        {"-12", -12},  {"+7", 7},     {"007", 7}, {"  12", 12},
        {"\t12", 12}, {"\n\v\f\r 8", 8}, {"12abc", 12}, {"12 34", 12}, {"3.9", 3}, {"", 0},
        {"   ", 0},   {"abc", 0},        {"-", 0},      {"+", 0},      {"+-7", 0}, {"-+7", 0},
        {"--7", 0},   {"- 7", 0},        {"0x10", 0},   {"x5", 0},
    };
    for (const auto& [text, number] : rows) {
        EXPECT_EQ(text_to_int(text), number) << '"' << text << '"';
    }
}

TEST(Text, NumbersBeyondTheRangeStayAtItsEnds) {
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    EXPECT_EQ(text_to_int("2147483646"), kMost - 1);
    EXPECT_EQ(text_to_int("2147483647"), kMost);
    EXPECT_EQ(text_to_int("2147483648"), kMost);
    EXPECT_EQ(text_to_int("+99999999999999999999999999"), kMost);
    EXPECT_EQ(text_to_int("-2147483647"), kLeast + 1);
    EXPECT_EQ(text_to_int("-2147483648"), kLeast);
    EXPECT_EQ(text_to_int("-2147483649"), kLeast);
    EXPECT_EQ(text_to_int(" -99999999999999999999999999x"), kLeast);
}

TEST(Text, NumbersEndWhereTheViewEnds) {
    EXPECT_EQ(text_to_int(std::string_view("12345", 3)), 123);
}

}  // namespace
}  // namespace zar
