// Measures the time that a search takes.
#pragma once

namespace zar {

// All times in seconds of the wall clock.
struct Stopwatch {
    double start;
    double accumulated;
    bool running;
};

// No time, not running.
void stopwatch_reset(Stopwatch& watch);

// `begin` is not in the future: now, or earlier for a watch that should have run already.
void stopwatch_start(Stopwatch& watch, double begin);

// Adds the time since the start to the accumulated time.
void stopwatch_stop(Stopwatch& watch);

// Accumulated time, and the time since the start while running. Never below 0.
[[nodiscard]] double stopwatch_elapsed(const Stopwatch& watch);

}  // namespace zar
