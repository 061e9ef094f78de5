#include "search/stopwatch.h"

#include <algorithm>

#include "platform/clock.h"

namespace zar {

void stopwatch_reset(Stopwatch& watch) { watch = Stopwatch{}; }

void stopwatch_start(Stopwatch& watch, double begin) {
    watch.running = true;
    watch.start = begin;
}

void stopwatch_stop(Stopwatch& watch) {
    if (!watch.running) {
        return;
    }
    watch.accumulated += clock_wall_seconds() - watch.start;
    watch.running = false;
    watch.start = 0;
}

double stopwatch_elapsed(const Stopwatch& watch) {
    const double since = watch.running ? clock_wall_seconds() - watch.start : 0;
    return std::max(0.0, watch.accumulated + since);
}

}  // namespace zar
