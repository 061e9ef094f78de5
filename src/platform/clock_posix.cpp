#include "platform/clock.h"

#include <ctime>

namespace zar {

double clock_cpu_seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

}  // namespace zar
