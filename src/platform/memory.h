// Memory for the large tables. There is no way to play on without it, so failure is fatal.
#pragma once

#include <cstddef>

namespace zar {

constexpr std::size_t kCacheLine = 64;  // bytes

// Zeroed memory in pages of its own, huge ones where the system has them, beginning at a cache
// line. All pages are there when this returns, so that no search waits for the system to find and
// clear them. To be released with memory_free and the same number of bytes. Failure ends the engine
// with "X-Error 7EU1MA1".
[[nodiscard]] void* checked_malloc(std::size_t bytes);

// Makes a block of checked_malloc zero again, with all pages there as before. Null is allowed for
// no bytes.
void memory_clear(void* block, std::size_t bytes);

// Null is allowed.
void memory_free(void* block, std::size_t bytes);

// Ends the engine because memory has run out.
[[noreturn]] void out_of_memory();

// Makes every failed allocation of the C++ library end the same way. Called once at start-up.
void memory_install_handler();

}  // namespace zar
