// Raw bytes from standard input, with and without waiting for them.
#pragma once

#include <cstddef>
#include <span>

namespace zar {

enum class InputState {
    bytes,    // `size` bytes have been read
    nothing,  // there is nothing to read now
    end,      // end of input
    error,    // reading failed for another reason
};

struct InputResult {
    InputState state;
    std::size_t size;  // 1.. with InputState::bytes, else 0
};

// Reads what is there, at most buffer.size() (> 0) bytes. Without `wait` it never blocks; with it,
// it never returns InputState::nothing. A closed or broken input counts as readable: the read then
// meets the end or the error.
[[nodiscard]] InputResult input_read(std::span<char> buffer, bool wait);

}  // namespace zar
