// The plain way to have every page of a fresh block, where a system has no call for that.
#pragma once

#include <cstddef>

namespace zar {

// Writes a zero to each page of a zeroed block.
inline void memory_touch(char* start, std::size_t bytes) {
    constexpr std::size_t kSmallestPage = 4096;
    for (std::size_t offset = 0; offset < bytes; offset += kSmallestPage) {
        *static_cast<volatile char*>(start + offset) = 0;
    }
}

}  // namespace zar
