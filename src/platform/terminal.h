// Is there a person at the other end of standard output?
#pragma once

namespace zar {

// True for a terminal, false for a pipe or a file. The engine itself never asks: it speaks to
// programs in the same way as to people.
[[nodiscard]] bool output_is_terminal();

}  // namespace zar
