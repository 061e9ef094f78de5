#include "options.h"

#include "frontend/difficulty.h"
#include "search/types.h"

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

void add_settings(CLI::App& command, Settings& settings) {
    constexpr int least_megabytes = 16;
    constexpr int most_megabytes = 1024;
    command.add_option("--threads", settings.threads, "threads that search")
        ->transform(number_between(1, kMaxThreads))
        ->capture_default_str();
    command.add_option("--hash", settings.hash, "megabytes for search results, a power of two")
        ->transform(number_between(least_megabytes, most_megabytes))
        ->capture_default_str();
    command
        .add_option("--level", settings.level,
                    "Difficulty Level; all below 10 end the search at a depth")
        ->transform(number_between(0, kFullLevel))
        ->capture_default_str();
}

}  // namespace zar::tools
