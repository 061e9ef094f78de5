#include "platform/thread.h"

#include <pthread.h>
#include <sched.h>

#include <semaphore>

#include "platform/fatal.h"

namespace zar {

static_assert(sizeof(pthread_t) <= sizeof(ThreadHandle));

namespace {

constexpr int kMostThreads = 4;

struct Start {
    void (*entry)(int);
    int argument;
};

// What a thread is to run must outlive the call that starts it; the arguments are small numbers
// that tell threads apart, so each has a place of its own.
Start starts[kMostThreads];

// Each counts how often the thread has been resumed and has not parked since.
using Semaphore = std::counting_semaphore<>;
Semaphore wakes[kMostThreads] = {Semaphore{0}, Semaphore{0}, Semaphore{0}, Semaphore{0}};

void* run(void* start) {
    const Start* what = static_cast<const Start*>(start);
    what->entry(what->argument);
    return nullptr;
}

}  // namespace

ThreadHandle thread_start(void (*entry)(int), int argument, std::size_t stack_bytes) {
    Start& start = starts[argument];
    start = {entry, argument};
    pthread_attr_t attributes;
    pthread_t thread{};
    const bool started = pthread_attr_init(&attributes) == 0 &&
                         pthread_attr_setstacksize(&attributes, stack_bytes) == 0 &&
                         pthread_create(&thread, &attributes, run, &start) == 0;
    if (!started) {
        fatal_error("X-Error 7EU1MA1\n");
    }
    pthread_attr_destroy(&attributes);
    return static_cast<ThreadHandle>(thread);
}

void thread_park(int argument) { wakes[argument].acquire(); }

void thread_resume(int argument) { wakes[argument].release(); }

void thread_join(ThreadHandle handle) { pthread_join(static_cast<pthread_t>(handle), nullptr); }

void thread_yield() { sched_yield(); }

}  // namespace zar
