#include "options.h"

namespace zar::tools {

void add_effort(CLI::App& command, Effort& effort) {
    constexpr double least_seconds = 0.001;
    constexpr double most_seconds = 1e6;
    auto* time = command.add_option("--time", effort.seconds, "seconds to search a position")
                     ->transform(number_between(least_seconds, most_seconds))
                     ->capture_default_str();
    command.add_option("--depth", effort.depth, "plies to search a position, instead of a time")
        ->transform(number_between(1, kDeepest))
        ->excludes(time);
}

}  // namespace zar::tools
