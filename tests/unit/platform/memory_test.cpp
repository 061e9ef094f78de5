#include "platform/memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <new>
#include <string>

#include "gtest/gtest.h"
#include "platform/memory_touch.h"

// An allocator under test must be able to fail, which the sanitizers do not allow by themselves.
// The names are theirs.
#ifdef __clang__
#pragma clang diagnostic ignored "-Wreserved-identifier"
#endif
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() { return "allocator_may_return_null=1"; }

namespace zar {
namespace {

using ::testing::ExitedWithCode;
using TextMatcher = ::testing::Matcher<const std::string&>;

TEST(Memory, BlocksAreZeroAlignedToACacheLineAndWritable) {
    for (const std::size_t bytes :
         std::initializer_list<std::size_t>{1, 63, 4096, 4097, 1U << 20, (16U << 20) + 48}) {
        auto* const block = static_cast<unsigned char*>(checked_malloc(bytes));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % kCacheLine, 0U) << bytes;
        EXPECT_TRUE(std::all_of(block, block + bytes, [](int byte) { return byte == 0; })) << bytes;
        std::memset(block, 0xA5, bytes);
        EXPECT_EQ(block[bytes - 1], 0xA5) << bytes;
        memory_free(block, bytes);
    }
}

TEST(Memory, ClearingMakesABlockZeroAgain) {
    for (const std::size_t bytes : std::initializer_list<std::size_t>{64, 5000, (3U << 20) + 16}) {
        auto* const block = static_cast<unsigned char*>(checked_malloc(bytes));
        std::memset(block, 0xA5, bytes);
        memory_clear(block, bytes);
        EXPECT_TRUE(std::all_of(block, block + bytes, [](int byte) { return byte == 0; })) << bytes;
        memory_free(block, bytes);
    }
    memory_clear(nullptr, 0);
}

TEST(Memory, ReleasingNothingIsAllowed) {
    memory_free(nullptr, 0);
    SUCCEED();
}

// Lengths around a small page, a huge page, and what is between.
TEST(MemoryPages, AreZeroedOneByOneToo) {
    for (const std::size_t bytes : {std::size_t{1}, std::size_t{4096}, std::size_t{65'537},
                                    (std::size_t{2} << 20) - 1, (std::size_t{2} << 20) + 48}) {
        auto* const block = static_cast<char*>(checked_malloc(bytes));
        memory_touch(block, bytes);
        EXPECT_TRUE(std::all_of(block, block + bytes, [](char byte) { return byte == 0; }))
            << bytes;
        memory_free(block, bytes);
    }
}

TEST(MemoryDeathTest, FailureEndsTheEngine) {
    constexpr std::size_t kTooMuch = std::numeric_limits<std::size_t>::max() / 4;
    // A sanitizer's allocator writes a warning of its own before.
    EXPECT_EXIT(memory_free(checked_malloc(kTooMuch), kTooMuch), ExitedWithCode(1),
                "X-Error 7EU1MA1\n$");
}

TEST(MemoryDeathTest, FailureOfTheLibrarysAllocationEndsTheEngineToo) {
    EXPECT_EXIT(
        {
            memory_install_handler();
            if (const std::new_handler installed = std::get_new_handler()) {
                installed();
            }
        },
        ExitedWithCode(1), TextMatcher("X-Error 7EU1MA1\n"));
}

}  // namespace
}  // namespace zar
