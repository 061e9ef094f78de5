#include "frontend/console.h"

#include <array>
#include <string>

#include "gtest/gtest.h"
#include "platform/clock.h"
#include "support/console_support.h"

namespace zar {
namespace {

std::string next_line() {
    static std::array<char, kInputLineSize> line;
    return read_line(line.data(), kInputLineSize) ? line.data() : "the end of input";
}

// The four tests compare times that were taken one after the other, not how long anything took.
TEST(InputIdleTime, IsNotMovedByALineThatIsReadWithAnother) {
    test::type_line("first");
    test::type_line("second");
    EXPECT_EQ(next_line(), "first");
    const double behind_first = clock_wall_seconds();
    EXPECT_EQ(next_line(), "second");
    EXPECT_LE(input_idle_time(), behind_first);
}

TEST(InputIdleTime, IsNotMovedByALineThatCameDuringTheOneBefore) {
    test::type_line("first");
    EXPECT_EQ(next_line(), "first");
    const double behind_first = clock_wall_seconds();
    test::type_line("second");
    EXPECT_EQ(next_line(), "second");
    EXPECT_LE(input_idle_time(), behind_first);
}

TEST(InputIdleTime, IsMovedByALookThatFindsNoLine) {
    test::type_line("first");
    EXPECT_EQ(next_line(), "first");
    const double before_look = clock_wall_seconds();
    input_look();
    EXPECT_GE(input_idle_time(), before_look);
    const double behind_look = clock_wall_seconds();
    test::type_line("second");
    EXPECT_EQ(next_line(), "second");
    EXPECT_LE(input_idle_time(), behind_look);
}

TEST(InputIdleTime, IsNotMovedByALookThatFindsALine) {
    test::type_line("first");
    EXPECT_EQ(next_line(), "first");
    const double behind_first = clock_wall_seconds();
    test::type_line("second");
    input_look();
    EXPECT_LE(input_idle_time(), behind_first);
    EXPECT_EQ(next_line(), "second");
}

}  // namespace
}  // namespace zar
