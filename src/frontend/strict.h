// Strict mode (zar-x3 --strict), for programs that take UCI at its word. Commands are read as UCI
// describes them, input that cannot be used is answered by one "info string ERROR: ..." line and
// changes nothing, and results are told in the lines of report_strict.h. The search is the same.
#pragma once

#include <string_view>

#include "board/board.h"

namespace zar {

// Makes a line what the commands expect: no white space at its ends, single blanks between words.
// An option's value keeps what is inside it.
void strict_tidy(char* line);

// "position" with what follows it on the line. False, with the board as it was and the error told,
// when this is no position or one of the moves is illegal.
bool strict_position(Board& board, std::string_view arguments);

// "setoption" with what follows it. False, with the error told, when no option takes this value;
// else the option has been set, and `name` is its name.
bool strict_setoption(std::string_view arguments, std::string_view& name);

}  // namespace zar
