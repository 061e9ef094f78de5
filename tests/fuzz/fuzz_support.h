// What the fuzzers share: a fatal error is a legal outcome, anything else that goes wrong is not.
#pragma once

#include <csetjmp>
#include <cstddef>
#include <string_view>

#include "board/board.h"

namespace zar::fuzz {

// Prepares the engine as its start-up does, but with small tables, without a book, and with fatal
// errors caught. To be called once.
void start_engine();

// Ends the fuzzer with this message, and so reports a finding, when a claim does not hold.
void require(bool claim, const char* message);

// Where a fatal error jumps to; set by `survives`.
extern std::jmp_buf failure_return;

// Runs a piece of the engine; false when it met a fatal error. The jump skips destructors: `action`
// may hold nothing that needs one.
template <typename Action>
[[nodiscard]] bool survives(Action action) {
    if (setjmp(failure_return) != 0) {
        return false;
    }
    action();
    return true;
}

[[nodiscard]] std::string_view text_of(const unsigned char* data, std::size_t size);

// Takes a line off the front. It ends at a newline or at the end of the text, and at a zero byte it
// is cut, as by the console.
[[nodiscard]] std::string_view take_line(std::string_view& text);

// Claims that the board agrees with itself and with its FEN text, and that every legal move can be
// made and taken back.
void check_position(Board& board);

}  // namespace zar::fuzz
