#include "frontend/console.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "platform/clock.h"
#include "platform/fatal.h"
#include "platform/input.h"

namespace zar {

namespace {

// Bytes that have arrived and wait for read_line. Main thread only.
struct Pending {
    std::array<char, kInputLineSize> bytes;
    std::size_t size;
    std::size_t searched;  // this many bytes at the front are known to hold no newline
    InputState state;      // bytes or nothing as long as more may come
    double idle_time;
    bool is_read;  // by read_line: input_look must not take it from somebody else
};

constinit Pending pending{{}, 0, 0, InputState::nothing, 0, false};

constexpr std::size_t kLongestLine = kInputLineSize - 1;

bool input_is_over() {
    return pending.state == InputState::end || pending.state == InputState::error;
}

// Index behind the first newline, or 0 while there is none.
std::size_t line_end() {
    const auto first = pending.bytes.begin();
    const auto last = first + static_cast<std::ptrdiff_t>(pending.size);
    const auto newline =
        std::find(first + static_cast<std::ptrdiff_t>(pending.searched), last, '\n');
    pending.searched = static_cast<std::size_t>(newline - first);
    return newline == last ? 0 : pending.searched + 1;
}

bool is_complete(std::size_t longest) {
    return line_end() != 0 || pending.size >= longest || input_is_over();
}

// False when nothing could be added without waiting.
bool collect(bool wait) {
    const InputResult result = input_read(std::span(pending.bytes).subspan(pending.size), wait);
    pending.state = result.state;
    pending.size += result.size;
    return result.state == InputState::bytes;
}

void drop(std::size_t count) {
    pending.size -= count;
    pending.searched = 0;
    std::memmove(pending.bytes.data(), pending.bytes.data() + count, pending.size);
}

}  // namespace

void console_init() {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    pending.idle_time = clock_wall_seconds();
}

void send_line(const char* format, ...) {
    char line[kOutputLineSize + 1];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(line, kOutputLineSize, format, arguments);
    va_end(arguments);
    const auto kept = static_cast<std::size_t>(std::clamp(length, 0, kOutputLineSize - 1));
    line[kept] = '\n';
    std::fwrite(line, 1, kept + 1, stdout);
}

void send_error(const char* format, ...) {
    char text[kOutputLineSize];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    send_line("info string ERROR: %s", text);
}

void send_text(const char* text) { std::fwrite(text, 1, std::strlen(text), stdout); }

bool read_line(char* buffer, int size) {
    pending.is_read = true;
    const std::size_t longest = std::min(static_cast<std::size_t>(size) - 1, kLongestLine);
    while (!is_complete(longest)) {
        if (!collect(false) && !input_is_over()) {
            collect(true);
            pending.idle_time = clock_wall_seconds();
        }
    }
    const std::size_t end = line_end();
    if (end == 0 && pending.state == InputState::error) {
        fatal_error("X-Error 7EU1MA2\n");
    }
    const std::size_t length = std::min(end != 0 ? end : pending.size, longest);
    if (length == 0) {
        return false;
    }
    const bool has_newline = end == length;
    const std::size_t text_length = has_newline ? length - 1 : length;
    std::memcpy(buffer, pending.bytes.data(), text_length);
    buffer[text_length] = '\0';
    drop(length);
    return true;
}

bool input_available() {
    while (!is_complete(kLongestLine)) {
        if (!collect(false)) {
            pending.idle_time = clock_wall_seconds();
            return input_is_over();
        }
    }
    return true;
}

void input_look() {
    if (pending.is_read) {
        static_cast<void>(input_available());
    }
}

double input_idle_time() { return pending.idle_time; }

}  // namespace zar
