#include "platform/random.h"

#include <cstddef>
#include <vector>

#include "gtest/gtest.h"

namespace zar {
namespace {

constexpr int kDraws = 2000;

std::vector<int> draw(unsigned seed, int n) {
    random_seed(seed);
    std::vector<int> numbers(kDraws);
    for (int& number : numbers) {
        number = random_below(n);
    }
    return numbers;
}

TEST(Random, NumbersStayBelowTheLimitAndReachAllOfIt) {
    for (const int n : {1, 2, 3, 7, 30}) {
        std::vector<int> times(static_cast<std::size_t>(n), 0);
        for (const int number : draw(1, n)) {
            ASSERT_GE(number, 0) << n;
            ASSERT_LT(number, n) << n;
            ++times[static_cast<std::size_t>(number)];
        }
        for (const int count : times) {
            // The expected count is kDraws / n; half of it is far outside any honest chance.
            EXPECT_GT(count, kDraws / n / 2) << n;
        }
    }
}

TEST(Random, BelowZeroOrOneThereIsOnlyZero) {
    EXPECT_EQ(draw(5, 0), std::vector<int>(kDraws, 0));
    EXPECT_EQ(draw(5, 1), std::vector<int>(kDraws, 0));
}

TEST(Random, TheSameSeedGivesTheSameNumbers) {
    EXPECT_EQ(draw(42, 1000), draw(42, 1000));
    EXPECT_NE(draw(42, 1000), draw(43, 1000));
}

TEST(Random, EveryLimitScalesTheSameFifteenBits) {
    const std::vector<int> drawn = draw(9, 32768);
    for (const int n : {2, 10, 1000, 65535, 65536}) {
        const std::vector<int> numbers = draw(9, n);
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            ASSERT_EQ(numbers[i], static_cast<int>(static_cast<long long>(n) * drawn[i] / 32768))
                << n;
        }
    }
}

}  // namespace
}  // namespace zar
