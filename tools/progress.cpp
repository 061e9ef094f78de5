#include "progress.h"

#include <cstdio>

#include "platform/clock.h"
#include "platform/terminal.h"

namespace zar::tools {

namespace {

constexpr double kInterval = 0.2;  // seconds

double shown_at = 0;
bool is_shown = false;

}  // namespace

void progress_show(const std::string& text, bool at_once) {
    static const bool is_terminal = output_is_terminal();
    const double now = clock_wall_seconds();
    if (!is_terminal || (!at_once && now - shown_at < kInterval)) {
        return;
    }
    progress_clear();
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
    shown_at = now;
    is_shown = true;
}

void progress_clear() {
    if (is_shown) {
        std::fputs("\r\x1b[K", stdout);
        is_shown = false;
    }
}

std::string progress_bar(std::size_t done, std::size_t all) {
    constexpr std::size_t width = 40;
    const std::size_t full = all == 0 ? 0 : done * width / all;
    std::string text = "[";
    text.append(full, '#').append(width - full, '.').append("] ");
    text.append(std::to_string(done)).append("/").append(std::to_string(all));
    return text;
}

}  // namespace zar::tools
