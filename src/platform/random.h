// Random numbers where chance, not secrecy, is wanted.
#pragma once

namespace zar {

// Seeds the standard library's generator.
void random_seed(unsigned seed);

// A number r with 0 <= r < n, for n from 1 on; 0 for n = 0.
[[nodiscard]] int random_below(int n);

}  // namespace zar
