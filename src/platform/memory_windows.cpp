// Pages by VirtualAlloc. Huge ones would need a right that players do not have.

#include "platform/memory.h"

#include <windows.h>

#include <cstring>

#include "platform/memory_touch.h"

namespace zar {

void* checked_malloc(std::size_t bytes) {
    void* const block = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (block == nullptr) {
        out_of_memory();
    }
    memory_touch(static_cast<char*>(block), bytes);
    return block;
}

void memory_clear(void* block, std::size_t bytes) {
    if (bytes > 0) {
        std::memset(block, 0, bytes);
    }
}

void memory_free(void* block, std::size_t) {
    if (block != nullptr) {
        VirtualFree(block, 0, MEM_RELEASE);
    }
}

}  // namespace zar
