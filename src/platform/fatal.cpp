#include "platform/fatal.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace zar {

namespace {

// Set before anything is started, never while other threads run.
FailureHandler handler = nullptr;

constexpr int kTextSize = 4096;

}  // namespace

void failure_set_handler(FailureHandler new_handler) { handler = new_handler; }

void fatal_error(const char* format, ...) {
    char text[kTextSize];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (handler != nullptr) {
        handler(Failure::fatal, text);
    }
    std::fputs(text, stderr);
    std::exit(EXIT_FAILURE);
}

void warn_line(const char* text) {
    if (handler != nullptr) {
        handler(Failure::warning, text);
        return;
    }
    std::fprintf(stdout, "%s\n", text);
}

}  // namespace zar
