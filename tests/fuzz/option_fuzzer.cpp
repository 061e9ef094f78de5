// Any names and values as options, one "name=value" a line; then a short search with them.

#include <algorithm>
#include <cstdio>
#include <string>

#include "frontend/option.h"
#include "fuzz_session.h"
#include "fuzz_support.h"

namespace {

constexpr int kMostOptions = 8;  // each clears tables

// The empty lines are pauses: without them the search would be stopped at once.
constexpr std::string_view kSearch =
    "position fen 2r3k1/1p3p2/p3n1p1/4p3/4P3/1P1B2P1/P4P2/2R3K1 w - - 0 1\n"
    "go depth 4\n"
    "\n\n\n\n\n\n"
    "uci\n";

void check_bounds(const zar::Option& option) {
    int least = 0;
    int most = 0;
    zar::fuzz::require(std::sscanf(option.extra, "min %d max %d", &least, &most) == 2,
                       "a spin option without bounds");
    zar::fuzz::require(zar::option_get_bounded(option.name) ==
                           std::clamp(zar::option_get_int(option.name), least, most),
                       "a number beyond its bounds");
}

// Whatever is stored can be read again, as text and as a number.
void check_option(std::string_view name, std::string_view value) {
    if (!zar::option_set(name, value)) {
        return;
    }
    zar::fuzz::require(zar::option_get_string(name) == value, "an option has another value");
    static_cast<void>(zar::option_get_bool(name));
    for (const zar::Option& option : zar::option_table()) {
        if (option.type == std::string_view("spin")) {
            check_bounds(option);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zar::fuzz::start_sessions();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::string session;
    std::string_view text = zar::fuzz::text_of(data, size);
    for (int count = 0; count < kMostOptions && !text.empty(); ++count) {
        const std::string_view line = zar::fuzz::take_line(text);
        const std::size_t mark = std::min(line.find('='), line.size());
        const std::string_view name = line.substr(0, mark);
        const std::string_view value = line.substr(std::min(mark + 1, line.size()));
        check_option(name, value);
        session.append("setoption name ").append(name).append(" value ").append(value).append("\n");
    }
    zar::fuzz::run_session(session.append(kSearch));
    return 0;
}
