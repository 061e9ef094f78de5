// The processor time of the process; std::clock of this system counts wall time.

#include "platform/clock.h"

#include <windows.h>

#include <cstdint>

namespace zar {

namespace {

// Times come in units of 100 nanoseconds.
constexpr double kSecondsPerUnit = 1e-7;

double seconds_of(const FILETIME& time) {
    const std::uint64_t units = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    return static_cast<double>(units) * kSecondsPerUnit;
}

}  // namespace

double clock_cpu_seconds() {
    FILETIME created;
    FILETIME ended;
    FILETIME in_kernel;
    FILETIME in_user;
    if (!GetProcessTimes(GetCurrentProcess(), &created, &ended, &in_kernel, &in_user)) {
        return 0;
    }
    return seconds_of(in_kernel) + seconds_of(in_user);
}

}  // namespace zar
