// Lines in and out of the engine. Only the main thread reads.
#pragma once

namespace zar {

constexpr int kInputLineSize = 65536;  // bytes, the terminating zero included
constexpr int kOutputLineSize = 4096;

// Makes standard output unbuffered, so that every line reaches the GUI at once.
void console_init();

// Writes a formatted line and a newline to standard output at once. A longer line than 4,095 bytes
// is cut.
[[gnu::format(printf, 1, 2)]] void send_line(const char* format, ...);

// Writes "info string ERROR: " and the formatted text as a line: what strict mode answers to input
// that it cannot use.
[[gnu::format(printf, 1, 2)]] void send_error(const char* format, ...);

// Writes a text as it is.
void send_text(const char* text);

// Waits for a line and copies it, ended by a zero instead of its newline; a "\r" is kept. At most
// size - 1 (1..kInputLineSize - 1) characters are read, the rest of a longer line is the next one.
// False at the end of input. A read error is fatal: "X-Error 7EU1MA2".
[[nodiscard]] bool read_line(char* buffer, int size);

// Collects what has arrived, without waiting, and tells whether read_line would return at once: a
// whole line or a full buffer is there, or the input has ended or failed.
[[nodiscard]] bool input_available();

// When the input was last seen without a whole line waiting, in seconds of the wall clock: what has
// been read since may have come as early as that. console_init counts as such a moment.
[[nodiscard]] double input_idle_time();

// Looks whether a line is waiting. To be called before an answer that others wait for, so that what
// they send upon it is not taken to have come before.
void input_look();

}  // namespace zar
