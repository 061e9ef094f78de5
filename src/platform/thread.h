// Operating-system threads with a stack of a given size, which the standard library cannot ask for.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zar {

// A running or finished thread that has not been joined.
using ThreadHandle = std::uintptr_t;

// Runs entry(argument) in a new thread; the argument, from 0 to 3, tells threads apart. Like
// memory, threads cannot be done without: failure ends the engine with "X-Error 7EU1MA1".
[[nodiscard]] ThreadHandle thread_start(void (*entry)(int), int argument, std::size_t stack_bytes);

// Parks the calling thread, which was started with this argument, until it is resumed. Every call
// of thread_resume ends one parking, be it one that has yet to begin.
void thread_park(int argument);
void thread_resume(int argument);

// Waits until the thread has ended and releases it.
void thread_join(ThreadHandle handle);

// Lets other threads have the processor.
void thread_yield();

}  // namespace zar
