#include "support/console_support.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <sstream>

namespace zar::test {

namespace {

// The end of the pipe that type_line writes to.
int input = -1;

}  // namespace

void capture_lines() {
    std::fflush(stdout);
    ::testing::internal::CaptureStdout();
}

std::vector<std::string> captured_lines() {
    std::fflush(stdout);
    std::istringstream text(::testing::internal::GetCapturedStdout());
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

void open_input() {
    if (input >= 0) {
        return;
    }
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    ASSERT_EQ(dup2(ends[0], STDIN_FILENO), STDIN_FILENO);
    close(ends[0]);
    input = ends[1];
}

void type_line(std::string_view line) {
    open_input();
    const std::string text = std::string(line) + "\n";
    ASSERT_EQ(write(input, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

}  // namespace zar::test
