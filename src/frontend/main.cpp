// The engine's entry: without arguments it speaks UCI.

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "frontend/bench.h"
#include "frontend/startup.h"
#include "frontend/uci.h"

namespace {

constexpr int kUsageError = 2;
constexpr int kMostDepth = 49;  // the search goes no deeper

constexpr const char* kHelp =
    "ZAR-X3, a chess engine that speaks the Universal Chess Interface.\n"
    "\n"
    "usage: zar-x3                start the engine; a GUI talks to it on standard input\n"
    "       zar-x3 --strict       the same, for programs that take UCI at its word\n"
    "       zar-x3 bench [DEPTH]  search a fixed set of positions and print the node count\n"
    "       zar-x3 --version      print the version\n"
    "       zar-x3 --help         print this text\n";

int usage_error(const char* argument) {
    std::fprintf(stderr, "zar-x3: cannot use argument '%s' (see zar-x3 --help)\n", argument);
    return kUsageError;
}

// False for anything but a whole number from 1 to kMostDepth.
bool parse_depth(std::string_view text, int& depth) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), depth);
    return error == std::errc{} && end == text.data() + text.size() && depth >= 1 &&
           depth <= kMostDepth;
}

int run_bench(int count, char** arguments) {
    int depth = zar::kBenchDepth;
    if (count > 3) {
        return usage_error(arguments[3]);
    }
    if (count > 2 && !parse_depth(arguments[2], depth)) {
        std::fprintf(stderr, "zar-x3: bench takes a depth from 1 to %d, not '%s'\n", kMostDepth,
                     arguments[2]);
        return kUsageError;
    }
    zar::startup_tables();
    zar::bench_run(depth);
    return EXIT_SUCCESS;
}

}  // namespace

int main(int count, char** arguments) {
    const bool strict = count > 1 && std::string_view(arguments[1]) == "--strict";
    if (strict) {
        --count;
        ++arguments;
    }
    if (count < 2) {
        zar::startup_engine(strict);
        zar::uci_loop();
    }
    const std::string_view argument = arguments[1];
    if (argument == "bench") {
        return run_bench(count, arguments);
    }
    if (count > 2 || (argument != "--help" && argument != "--version")) {
        return usage_error(count > 2 ? arguments[2] : arguments[1]);
    }
    std::fputs(argument == "--help" ? kHelp : "ZAR-X3 " ZAR_VERSION "\n", stdout);
    return EXIT_SUCCESS;
}
