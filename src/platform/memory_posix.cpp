// Pages by mmap, with advice for huge ones where the system takes it.

#include "platform/memory.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstring>

#include "platform/memory_touch.h"

namespace zar {

namespace {

// A huge page of x86-64 and of most arm64 systems. Blocks begin at a multiple of it, since the
// system uses huge pages only for whole ones.
constexpr std::size_t kHugePage = std::size_t{2} << 20;

// Bytes from the address to the next multiple of a huge page.
std::size_t gap_before(const void* address) {
    const auto place = static_cast<std::size_t>(reinterpret_cast<std::uintptr_t>(address));
    return (kHugePage - place % kHugePage) % kHugePage;
}

// The sizes given back to the system, a multiple of any small page's.
constexpr std::size_t kLargestSmallPage = std::size_t{64} << 10;

std::size_t whole_pages(std::size_t bytes) {
    return (bytes + kLargestSmallPage - 1) / kLargestSmallPage * kLargestSmallPage;
}

void unmap(char* start, std::size_t bytes) {
    if (bytes > 0) {
        munmap(start, bytes);
    }
}

// Has the system find and clear all pages of a fresh block now.
void make_resident(char* start, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
    if (madvise(start, bytes, MADV_POPULATE_WRITE) == 0) {
        return;
    }
#endif
    memory_touch(start, bytes);
}

}  // namespace

void* checked_malloc(std::size_t bytes) {
    const std::size_t room = whole_pages(bytes) + kHugePage;
    void* const block =
        mmap(nullptr, room, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) {
        out_of_memory();
    }
    const std::size_t gap = gap_before(block);
    char* const start = static_cast<char*>(block) + gap;
    const std::size_t used = whole_pages(bytes);
    unmap(static_cast<char*>(block), gap);
    unmap(start + used, room - gap - used);
#ifdef MADV_HUGEPAGE
    madvise(start, bytes, MADV_HUGEPAGE);
#endif
    make_resident(start, bytes);
    return start;
}

void memory_clear(void* block, std::size_t bytes) {
#ifdef __linux__
    // Linux gives private pages back as zeroes, sooner than they are written here.
    if (madvise(block, bytes, MADV_DONTNEED) == 0) {
        make_resident(static_cast<char*>(block), bytes);
        return;
    }
#endif
    if (bytes > 0) {
        std::memset(block, 0, bytes);
    }
}

void memory_free(void* block, std::size_t bytes) {
    if (block != nullptr) {
        munmap(block, whole_pages(bytes));
    }
}

}  // namespace zar
