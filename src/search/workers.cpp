#include "search/workers.h"

#include <array>
#include <atomic>

#include "platform/clock.h"
#include "platform/thread.h"
#include "search/driver.h"
#include "search/types.h"

namespace zar {

namespace {

// The deepest search takes less than 4 KiB for each of its 255 plies.
constexpr std::size_t kStackBytes = 8U << 20;

struct Worker {
    ThreadHandle handle;
    std::atomic<bool> done{
        true};  // the worker's search has returned; written by both sides in turn
    std::atomic<bool> exited{false};  // the worker has left its loop
};

// Entry 0 is the main thread's and stays unused.
std::array<Worker, kMaxThreads> workers;

// Set while the workers are being ended.
std::atomic<bool> threads_exit{false};

Worker& worker_of(int thread) { return workers[static_cast<std::size_t>(thread)]; }

void thread_entry(int thread) {
    Worker& self = worker_of(thread);
    while (true) {
        thread_park(thread);
        if (threads_exit.load(std::memory_order_acquire)) {
            break;
        }
        thread_search(thread);
        self.done.store(true, std::memory_order_release);
    }
    self.exited.store(true, std::memory_order_release);
}

// Calls action(thread) for every worker there is.
template <typename Action>
void for_each_worker(Action action) {
    for (int thread = 1; thread < search_shared.thread_count; ++thread) {
        action(thread);
    }
}

void resume_all() { for_each_worker(thread_resume); }

void tell_to_stop() {
    for_each_worker(
        [](int thread) { search_thread(thread).stop.store(true, std::memory_order_relaxed); });
}

}  // namespace

void threads_create() {
    for_each_worker([](int thread) {
        Worker& worker = worker_of(thread);
        worker.done.store(true, std::memory_order_relaxed);
        worker.exited.store(false, std::memory_order_relaxed);
        worker.handle = thread_start(thread_entry, thread, kStackBytes);
    });
}

void threads_end() {
    threads_exit.store(true, std::memory_order_release);
    resume_all();
    for_each_worker([](int thread) { thread_join(worker_of(thread).handle); });
    threads_exit.store(false, std::memory_order_relaxed);
}

void threads_start_search() {
    for_each_worker([](int thread) {
        search_thread(thread).stop.store(false, std::memory_order_relaxed);
        worker_of(thread).done.store(false, std::memory_order_relaxed);
    });
    resume_all();
}

void threads_stop_search() {
    tell_to_stop();
    for_each_worker([](int thread) {
        while (!worker_of(thread).done.load(std::memory_order_acquire)) {
            thread_yield();
        }
    });
}

void threads_shutdown() {
    constexpr double kPatience = 2.0;  // seconds; a worker looks at its flag every few milliseconds
    threads_exit.store(true, std::memory_order_release);
    tell_to_stop();
    resume_all();
    const double deadline = clock_wall_seconds() + kPatience;
    for_each_worker([&](int thread) {
        const Worker& worker = worker_of(thread);
        while (!worker.exited.load(std::memory_order_acquire)) {
            if (clock_wall_seconds() > deadline) {
                return;
            }
            thread_yield();
        }
        thread_join(worker.handle);
    });
}

}  // namespace zar
