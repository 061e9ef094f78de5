// What GCC and clang offer beyond the standard library: hints of what will be read soon, and words
// that threads share without a lock. The standard's own names for the latter are missing from the
// C++ libraries of some systems (std::atomic_ref before libc++ 19, std::bit_cast before 14).
#pragma once

namespace zar {

// The same bytes as an object of another type of the same size.
template <typename To, typename From>
[[nodiscard]] constexpr To bit_cast(const From& from) noexcept {
    return __builtin_bit_cast(To, from);
}

// Asks the processor to fetch the cache line of this address. Any address will do.
inline void prefetch(const void* address) noexcept {
    __builtin_prefetch(address);
    // To GCC 12 a function that only fetches has no effect: it drops calls that it does not inline.
    asm volatile("");
}

// Reads or writes an integer that other threads may write or read at the same time. It is read or
// written whole; nothing orders it among other words.
template <typename Word>
[[nodiscard]] inline Word relaxed_load(const Word& word) noexcept {
    return __atomic_load_n(&word, __ATOMIC_RELAXED);
}

template <typename Word>
inline void relaxed_store(Word& word, Word value) noexcept {
    __atomic_store_n(&word, value, __ATOMIC_RELAXED);
}

}  // namespace zar
