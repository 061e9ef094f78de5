// What happens between the start of the process and the first command.
#pragma once

namespace zar {

// Seeds the random generator, gives options their defaults, and fills the tables that are built at
// run time. Allocates nothing large. Everything else in the engine relies on this.
void startup_tables();

// Start-up of the UCI engine: the banner, the tables, and "Engine Ready". In strict mode it says
// nothing before it is asked.
void startup_engine(bool strict);

// Prints "Engine Ready", but not in strict mode.
void announce_ready();

}  // namespace zar
