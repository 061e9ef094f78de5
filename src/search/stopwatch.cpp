#include "search/stopwatch.h"

#include <algorithm>

#include "platform/clock.h"

namespace zar {

void stopwatch_reset(Stopwatch& watch) { watch = Stopwatch{}; }

void stopwatch_start(Stopwatch& watch, double begin) {
    watch.running = true;
    watch.start_wall = begin;
    watch.start_cpu = clock_cpu_seconds();
}

void stopwatch_stop(Stopwatch& watch) {
    if (!watch.running) {
        return;
    }
    watch.accumulated_wall += clock_wall_seconds() - watch.start_wall;
    watch.accumulated_cpu += clock_cpu_seconds() - watch.start_cpu;
    watch.running = false;
    watch.start_wall = 0;
    watch.start_cpu = 0;
}

double stopwatch_elapsed(const Stopwatch& watch) {
    const double since = watch.running ? clock_wall_seconds() - watch.start_wall : 0;
    return std::max(0.0, watch.accumulated_wall + since);
}

double stopwatch_cpu(const Stopwatch& watch) {
    const double since = watch.running ? clock_cpu_seconds() - watch.start_cpu : 0;
    return std::max(0.0, watch.accumulated_cpu + since);
}

double stopwatch_load(const Stopwatch& watch) {
    const double wall = stopwatch_elapsed(watch);
    const double cpu = stopwatch_cpu(watch);
    return wall <= 0 || cpu <= 0 ? 0 : std::min(1.0, cpu / wall);
}

}  // namespace zar
