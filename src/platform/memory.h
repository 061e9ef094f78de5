// Memory for the large tables. There is no way to play on without it, so failure is fatal.
#pragma once

#include <cstddef>

namespace zar {

// Uninitialised memory for `bytes` bytes, aligned for any type and, from a cache line's size on, to
// a cache line; to be released with memory_free. Failure ends the engine with "X-Error 7EU1MA1".
[[nodiscard]] void* checked_malloc(std::size_t bytes);

// Null is allowed.
void memory_free(void* block);

// Makes every failed allocation of the C++ library end the same way. Called once at start-up.
void memory_install_handler();

}  // namespace zar
