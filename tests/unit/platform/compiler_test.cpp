#include "platform/compiler.h"

#include <array>
#include <cstdint>
#include <thread>

#include "gtest/gtest.h"

namespace zar {
namespace {

TEST(Compiler, BitCastKeepsTheBytes) {
    constexpr std::array<std::uint8_t, 4> kBytes = {1, 1, 1, 1};
    static_assert(zar::bit_cast<std::uint32_t>(kBytes) == 0x01010101);
    EXPECT_EQ(zar::bit_cast<std::uint64_t>(1.0), 0x3FF0000000000000U);
}

TEST(Compiler, PrefetchingTakesAnyAddress) {
    const int value = 5;
    prefetch(&value);
    prefetch(nullptr);
    EXPECT_EQ(value, 5);
}

// The two words of the writer differ in every byte, so a torn one would show.
TEST(Compiler, SharedWordsAreReadWhole) {
    constexpr std::uint64_t kOne = 0x1111111111111111;
    constexpr std::uint64_t kTwo = 0x2222222222222222;
    std::uint64_t word = kOne;
    std::thread writer([&] {
        for (int i = 0; i < 100'000; ++i) {
            relaxed_store(word, i % 2 == 0 ? kTwo : kOne);
        }
    });
    for (int i = 0; i < 100'000; ++i) {
        const std::uint64_t seen = relaxed_load(word);
        ASSERT_TRUE(seen == kOne || seen == kTwo) << seen;
    }
    writer.join();
    EXPECT_EQ(relaxed_load(word), kOne);
}

}  // namespace
}  // namespace zar
