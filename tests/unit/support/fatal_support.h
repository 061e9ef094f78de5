// Catches what fatal_error and warn_line would print, so that a test can look at it.
#pragma once

#include <string>

namespace zar::test {

// The text of the fatal error that `action` ends with, byte for byte; empty when it returns. The
// jump out of `action` skips destructors: it may hold nothing that needs one.
[[nodiscard]] std::string fatal_text_of(void (*action)());

// The same for an action that looks at one argument.
[[nodiscard]] std::string fatal_text_of(void (*action)(const char*), const char* argument);

// Warnings since the last call, one a line.
[[nodiscard]] std::string take_warnings();

}  // namespace zar::test
