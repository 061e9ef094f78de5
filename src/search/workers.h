// The worker threads 1 to thread_count - 1: created once, parked between searches, resumed for
// each. They search the same root as the main thread, each on its own board, and meet it only in
// the transposition table. All functions are called by the command thread.
#pragma once

namespace zar {

// Creates the workers, parked.
void threads_create();

// Ends the workers and waits until they are gone. Harmless when there are none.
void threads_end();

// Sends every worker into a search of search_shared's root.
void threads_start_search();

// Tells every worker to stop and waits until all are parked again.
void threads_stop_search();

// Stops the workers for the end of the process: waits for them, but not for long.
void threads_shutdown();

}  // namespace zar
