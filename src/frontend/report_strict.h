// The lines that strict mode tells results in: each "info" line is whole, and the lines of a search
// with several variations never show a first move twice.
#pragma once

#include "search/types.h"

namespace zar {

// Forgets the lines of the search before. To be called before every search.
void report_strict_reset();

// Takes in the main thread's current result and prints all lines that there are, best first.
void report_strict_pv(const SearchThread& self);

}  // namespace zar
