#include "platform/input.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace zar {

namespace {

// True when a read would not block; waits for that on demand.
bool is_readable(bool wait) {
    pollfd descriptor{STDIN_FILENO, POLLIN, 0};
    constexpr int kNoWait = 0;
    constexpr int kForever = -1;
    return poll(&descriptor, 1, wait ? kForever : kNoWait) > 0;
}

}  // namespace

InputResult input_read(std::span<char> buffer, bool wait) {
    while (true) {
        if (!is_readable(wait)) {
            if (wait) {
                continue;  // a signal came in between
            }
            return {InputState::nothing, 0};
        }
        const ssize_t size = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (size > 0) {
            return {InputState::bytes, static_cast<std::size_t>(size)};
        }
        if (size == 0) {
            return {InputState::end, 0};
        }
        if (errno != EINTR && errno != EAGAIN) {
            return {InputState::error, 0};
        }
    }
}

}  // namespace zar
