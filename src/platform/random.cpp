#include "platform/random.h"

#include <bit>
#include <cmath>
#include <cstdlib>

namespace zar {

namespace {

// The standard promises no more than 15 bits; where a library gives more, the high ones are the
// better ones.
constexpr int kRandomBits = 15;
constexpr int kSpareBits = std::bit_width(static_cast<unsigned>(RAND_MAX)) - kRandomBits;

}  // namespace

void random_seed(unsigned seed) { std::srand(seed); }

int random_below(int n) {
    const int drawn = std::rand() >> kSpareBits;
    constexpr double kRange = 1 << kRandomBits;
    return static_cast<int>(std::floor(static_cast<double>(n) * drawn / kRange));
}

}  // namespace zar
