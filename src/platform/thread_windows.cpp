#include "platform/thread.h"

#include <process.h>
#include <windows.h>

#include <climits>

#include "platform/fatal.h"

namespace zar {

static_assert(sizeof(HANDLE) <= sizeof(ThreadHandle));

namespace {

constexpr int kMostThreads = 4;

struct Start {
    void (*entry)(int);
    int argument;
};

// What a thread is to run must outlive the call that starts it; the arguments are small numbers
// that tell threads apart, so each has a place of its own.
Start starts[kMostThreads];

// Each counts how often the thread has been resumed and has not parked since. The semaphore of GCC
// 12's library may, on this system, sleep on when it is released just before it is waited for.
HANDLE wakes[kMostThreads];

unsigned __stdcall run(void* start) {
    const Start* what = static_cast<const Start*>(start);
    what->entry(what->argument);
    return 0;
}

}  // namespace

ThreadHandle thread_start(void (*entry)(int), int argument, std::size_t stack_bytes) {
    Start& start = starts[argument];
    start = {entry, argument};
    HANDLE& wake = wakes[argument];
    if (wake == nullptr) {
        wake = CreateSemaphoreW(nullptr, 0, LONG_MAX, nullptr);
    }
    if (wake == nullptr) {
        fatal_error("X-Error 7EU1MA1\n");
    }
    // Without the flag the size would be the part of the stack that is in memory from the start.
    const ThreadHandle handle = _beginthreadex(nullptr, static_cast<unsigned>(stack_bytes), run,
                                               &start, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (handle == 0) {
        fatal_error("X-Error 7EU1MA1\n");
    }
    return handle;
}

void thread_park(int argument) { WaitForSingleObject(wakes[argument], INFINITE); }

void thread_resume(int argument) { ReleaseSemaphore(wakes[argument], 1, nullptr); }

void thread_join(ThreadHandle handle) {
    const HANDLE thread = reinterpret_cast<HANDLE>(handle);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

void thread_yield() { SwitchToThread(); }

}  // namespace zar
