#include "platform/clock.h"

#include <chrono>
#include <ctime>

namespace zar {

double clock_wall_seconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

unsigned clock_seed() { return static_cast<unsigned>(std::time(nullptr)); }

}  // namespace zar
