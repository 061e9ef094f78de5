#include "interrupt.h"

#include <csignal>

namespace zar::tools {

namespace {

volatile std::sig_atomic_t is_noted = 0;

extern "C" void note_interrupt(int) {
    is_noted = 1;
    std::signal(SIGINT, SIG_DFL);
}

}  // namespace

void interrupt_watch() { std::signal(SIGINT, note_interrupt); }

void interrupt_forget() { std::signal(SIGINT, SIG_DFL); }

bool interrupted() { return is_noted != 0; }

}  // namespace zar::tools
