#include "platform/fatal.h"

#include <cstdio>
#include <string>

#include "gtest/gtest.h"
#include "support/fatal_support.h"

namespace zar {
namespace {

using test::fatal_text_of;
using test::take_warnings;
using ::testing::ExitedWithCode;
using TextMatcher = ::testing::Matcher<const std::string&>;

TEST(FatalDeathTest, TheTextGoesToStandardErrorAsItIs) {
    EXPECT_EXIT(fatal_error("X-Error 7EU1MA2\n"), ExitedWithCode(1),
                TextMatcher("X-Error 7EU1MA2\n"));
    EXPECT_EXIT(fatal_error("X-Error 1EE1WTPTC//"), ExitedWithCode(1),
                TextMatcher("X-Error 1EE1WTPTC//"));
}

TEST(FatalDeathTest, NothingIsWrittenToStandardOutput) {
    EXPECT_EXIT(
        {
            ::testing::internal::CaptureStdout();
            failure_set_handler([](Failure, const char*) {
                const std::string written = ::testing::internal::GetCapturedStdout();
                std::fprintf(stderr, "[%s]", written.c_str());
            });
            fatal_error("X");
        },
        ExitedWithCode(1), TextMatcher("[]X"));
}

TEST(FatalDeathTest, AHandlerThatReturnsDoesNotStopTheEnd) {
    EXPECT_EXIT(
        {
            failure_set_handler(
                [](Failure, const char* text) { std::fprintf(stderr, "<%s>", text); });
            fatal_error("X-Error %s\n", "Y");
        },
        ExitedWithCode(1), TextMatcher("<X-Error Y\n>X-Error Y\n"));
}

TEST(Fatal, TheTextIsFormatted) {
    EXPECT_EQ(fatal_text_of([] { fatal_error("X-Error %s%d\n", "3EBK", 7); }), "X-Error 3EBK7\n");
    EXPECT_EQ(fatal_text_of([] { fatal_error("%%n"); }), "%n");
}

TEST(Fatal, LongTextsAreCut) {
    static std::string text;
    const auto action = [] { fatal_error("%s", text.c_str()); };
    text.assign(4095, 'x');
    EXPECT_EQ(fatal_text_of(action), text);
    text.assign(5000, 'x');
    EXPECT_EQ(fatal_text_of(action), std::string(4095, 'x'));
}

TEST(Fatal, AHandlerMayJumpAway) {
    EXPECT_EQ(fatal_text_of([] { fatal_error("first\n"); }), "first\n");
    EXPECT_EQ(fatal_text_of([] {}), "");
    EXPECT_EQ(fatal_text_of([] { fatal_error("second\n"); }), "second\n");
}

TEST(Fatal, WarningsGoToStandardOutputWithANewline) {
    ::testing::internal::CaptureStdout();
    warn_line("X-Error 2EB1IP4");
    warn_line("100%s");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "X-Error 2EB1IP4\n100%s\n");
}

TEST(Fatal, AHandlerTakesWarningsAndTheyAreNotFatal) {
    ::testing::internal::CaptureStdout();
    const std::string fatal = fatal_text_of([] {
        warn_line("one");
        warn_line("two");
    });
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(fatal, "");
    EXPECT_EQ(take_warnings(), "one\ntwo\n");
    EXPECT_EQ(take_warnings(), "");
}

}  // namespace
}  // namespace zar
