#include "support/fatal_support.h"

#include <csetjmp>
#include <utility>

#include "platform/fatal.h"

namespace zar::test {

namespace {

std::jmp_buf return_point;
bool armed = false;
std::string fatal_text;
std::string warnings;

void on_failure(Failure failure, const char* text) {
    if (failure == Failure::warning) {
        warnings += text;
        warnings += '\n';
        return;
    }
    if (armed) {
        fatal_text = text;
        std::longjmp(return_point, 1);
    }
}

// The frame that the jump returns to holds nothing that needs a destructor.
void run_until_fatal(void (*action)(const char*), const char* argument) {
    failure_set_handler(on_failure);
    armed = true;
    if (setjmp(return_point) == 0) {
        action(argument);
    }
    armed = false;
    failure_set_handler(nullptr);
}

void (*plain_action)() = nullptr;

}  // namespace

std::string fatal_text_of(void (*action)(const char*), const char* argument) {
    fatal_text.clear();
    run_until_fatal(action, argument);
    return fatal_text;
}

std::string fatal_text_of(void (*action)()) {
    plain_action = action;
    return fatal_text_of([](const char*) { plain_action(); }, "");
}

std::string take_warnings() { return std::exchange(warnings, {}); }

}  // namespace zar::test
