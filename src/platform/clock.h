// The two clocks that the engine reads.
#pragma once

namespace zar {

// Seconds of a clock that only moves forward; its zero is arbitrary.
[[nodiscard]] double clock_wall_seconds();

// Calendar time in whole seconds, as a seed for random numbers.
[[nodiscard]] unsigned clock_seed();

}  // namespace zar
