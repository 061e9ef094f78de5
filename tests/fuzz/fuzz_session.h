// Whole UCI sessions, with every answer checked.
#pragma once

#include <string_view>

namespace zar::fuzz {

// Starts the engine for sessions. To be called once, in place of start_engine.
void start_sessions();

// Executes the lines of a session, always from the same state. While a search runs, one line
// arrives every few hundred nodes, so an empty line is a pause. What the session leaves running is
// stopped; so is, sooner or later, a session that goes on for too long. Lines that would only cost
// time are passed over: tables and threads by the number, files elsewhere. Ends the fuzzer when a
// "go" is not answered once, and by a legal move, or when a variation is not legal.
void run_session(std::string_view session);

}  // namespace zar::fuzz
