// The engine's console from inside a test: commands by way of standard input, answers from standard
// output.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"

namespace zar::test {

// Standard output from here to captured_lines(). May not be nested.
void capture_lines();

// The lines written since capture_lines(), without their newlines.
[[nodiscard]] std::vector<std::string> captured_lines();

// Executes the action and returns the lines that it writes.
template <typename Action>
[[nodiscard]] std::vector<std::string> lines_of(Action action) {
    capture_lines();
    action();
    return captured_lines();
}

// Makes standard input a pipe that this process keeps open: there is nothing to read, and it never
// ends, which would end the engine. Harmless when it has been done.
void open_input();

// Puts a line and a newline where the engine reads its commands.
void type_line(std::string_view line);

}  // namespace zar::test
