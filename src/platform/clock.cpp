#include "platform/clock.h"

#include <chrono>
#include <ctime>

namespace zar {

double clock_wall_seconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

double clock_cpu_seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

unsigned clock_seed() { return static_cast<unsigned>(std::time(nullptr)); }

}  // namespace zar
