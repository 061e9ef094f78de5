#include "platform/memory.h"

#include <cstdlib>
#include <new>

#include "platform/fatal.h"

namespace zar {

namespace {

constexpr std::align_val_t kCacheLine{64};

}  // namespace

void out_of_memory() { fatal_error("X-Error 7EU1MA1\n"); }

void* checked_malloc(std::size_t bytes) {
    void* block = ::operator new(bytes, kCacheLine, std::nothrow);
    if (block == nullptr) {
        out_of_memory();
    }
    return block;
}

void memory_free(void* block) { ::operator delete(block, kCacheLine); }

void memory_install_handler() { std::set_new_handler(out_of_memory); }

}  // namespace zar
