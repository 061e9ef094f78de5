#include "frontend/difficulty.h"

#include <algorithm>

#include "frontend/option.h"

namespace zar {

int difficulty_level() {
    constexpr int kSafeLevel = 1000;
    return std::clamp(option_get_int("Difficulty Level"), -kSafeLevel, kSafeLevel);
}

}  // namespace zar
