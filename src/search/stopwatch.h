// Measures the wall and processor time that a search takes.
#pragma once

namespace zar {

// All times in seconds.
struct Stopwatch {
    double start_wall;
    double start_cpu;
    double accumulated_wall;
    double accumulated_cpu;
    bool running;
};

// All times 0, not running.
void stopwatch_reset(Stopwatch& watch);
// `begin` is on the wall clock, not in the future: now, or earlier for a watch that should have run
// already.
void stopwatch_start(Stopwatch& watch, double begin);
// Adds the time since the start to the accumulated time.
void stopwatch_stop(Stopwatch& watch);

// Accumulated time, and the time since the start while running. Never below 0.
[[nodiscard]] double stopwatch_elapsed(const Stopwatch& watch);
[[nodiscard]] double stopwatch_cpu(const Stopwatch& watch);

// Processor time over wall time, at most 1; 0 when either is 0.
[[nodiscard]] double stopwatch_load(const Stopwatch& watch);

}  // namespace zar
