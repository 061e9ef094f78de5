// Pages by VirtualAlloc. Huge ones would need a right that players do not have.

#include "platform/memory.h"

#include <windows.h>

namespace zar {

void* checked_malloc(std::size_t bytes) {
    void* const block = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (block == nullptr) {
        out_of_memory();
    }
    return block;
}

void memory_clear(void* block, std::size_t bytes) {
    // Pages that have been given back come again as zeroes, at the same addresses.
    if (!VirtualFree(block, bytes, MEM_DECOMMIT) ||
        VirtualAlloc(block, bytes, MEM_COMMIT, PAGE_READWRITE) == nullptr) {
        out_of_memory();
    }
}

// Left to the first use of each page.
void memory_prepare(void*, std::size_t) {}

void memory_free(void* block, std::size_t) {
    if (block != nullptr) {
        VirtualFree(block, 0, MEM_RELEASE);
    }
}

}  // namespace zar
