// Opening lines as text, one a line:
//
//     # Ruy Lopez                          a comment; it may stand behind a line too
//     e2e4 e7e5 g1f3 b8c6 f1b5 a7a6        moves from the start position
//     3: d2d4 d7d5 c2c4                    the same with a weight, 1..65535; it is 1 elsewhere
//     1. e4 e5 2. Nf3                      standard notation; numbers may be there or not
//
// Every move of a line gets the line's weight.
#pragma once

#include <string>

#include "book_moves.h"

namespace zar::tools {

// Adds one line. A fault costs the rest of it, all of it if it is one of the weight, and is
// reported.
void book_add_line(BookText& text, std::string line);

}  // namespace zar::tools
