// Input from a console, a pipe or a file by the system's calls. Lines end in "\r\n" on this system:
// the pair is handed out as "\n", as the C library's text streams do it. The byte 26 is text here,
// unless a console takes it for the end.

#include "platform/input.h"

#include <windows.h>

#include <array>

namespace zar {

namespace {

// What has been read and waits to be handed out. Main thread only.
struct Raw {
    std::array<char, 4096> bytes;
    std::size_t first;  // index of the first byte, and behind the last one
    std::size_t last;
};

constinit Raw raw{};

// Is it a console? The first call also makes the mouse and the window no input events, and forgets
// what happened before.
bool is_console(HANDLE input) {
    static const bool result = [input] {
        DWORD mode = 0;
        if (!GetConsoleMode(input, &mode)) {
            return false;
        }
        SetConsoleMode(input, mode & ~DWORD{ENABLE_WINDOW_INPUT | ENABLE_MOUSE_INPUT});
        FlushConsoleInputBuffer(input);
        return true;
    }();
    return result;
}

// True when a line is being typed, a pipe holds bytes or is broken, or there is a file.
bool is_readable(HANDLE input) {
    if (is_console(input)) {
        DWORD events = 0;
        GetNumberOfConsoleInputEvents(input, &events);
        return events > 1;  // one alone may be the release of the Enter key
    }
    DWORD available = 0;
    return !PeekNamedPipe(input, nullptr, 0, nullptr, &available, nullptr) || available > 0;
}

// Adds to the bytes, which are at most one; waits until there are some.
InputState refill(HANDLE input) {
    const std::size_t kept = raw.last - raw.first;
    if (kept > 0) {
        raw.bytes[0] = raw.bytes[raw.first];
    }
    raw.first = 0;
    raw.last = kept;
    DWORD size = 0;
    const bool is_read = ReadFile(input, raw.bytes.data() + kept,
                                  static_cast<DWORD>(raw.bytes.size() - kept), &size, nullptr);
    raw.last += size;
    if (is_read) {
        return size > 0 ? InputState::bytes : InputState::end;
    }
    const DWORD error = GetLastError();
    return error == ERROR_BROKEN_PIPE || error == ERROR_HANDLE_EOF ? InputState::end
                                                                   : InputState::error;
}

// Moves bytes into the buffer; their number. A "\r" stays back as the last one, since a "\n" may
// follow, unless the input is over.
std::size_t hand_out(std::span<char> buffer, bool is_over) {
    std::size_t size = 0;
    while (size < buffer.size() && raw.first < raw.last) {
        const char byte = raw.bytes[raw.first];
        const bool is_last = raw.first + 1 == raw.last;
        if (byte == '\r' && is_last && !is_over) {
            break;
        }
        ++raw.first;
        if (byte != '\r' || is_last || raw.bytes[raw.first] != '\n') {
            buffer[size] = byte;
            ++size;
        }
    }
    return size;
}

}  // namespace

InputResult input_read(std::span<char> buffer, bool wait) {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    InputState state = InputState::bytes;
    while (true) {
        const std::size_t size = hand_out(buffer, state != InputState::bytes);
        if (size > 0) {
            return {InputState::bytes, size};
        }
        if (state != InputState::bytes) {
            return {state, 0};
        }
        if (!wait && !is_readable(input)) {
            return {InputState::nothing, 0};
        }
        state = refill(input);
    }
}

}  // namespace zar
