// The only abnormal exit of the engine, and the one kind of warning it prints.
#pragma once

namespace zar {

enum class Failure { fatal, warning };

// Receives the complete text. On a fatal failure it must not return (it may jump to a place that
// can go on); if it does return, the process ends as if no handler were set.
using FailureHandler = void (*)(Failure failure, const char* text);

// Replaces what fatal_error and warn_line do; null restores it. Tools and tests set one that does
// not end them; the engine sets one in strict mode only, for warnings.
void failure_set_handler(FailureHandler handler);

// Writes the formatted text to standard error as it is (codes carry their own newline or none) and
// ends the process with exit status 1. Texts are cut at 4,095 bytes.
[[noreturn, gnu::format(printf, 1, 2)]] void fatal_error(const char* format, ...);

// Writes the text and a newline to standard output and goes on.
void warn_line(const char* text);

}  // namespace zar
