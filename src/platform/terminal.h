// What the standard streams are connected to. The engine itself never asks: it speaks to programs
// in the same way as to people.
#pragma once

namespace zar {

// Is there a person at the other end? True for a terminal, false for a pipe or a file.
[[nodiscard]] bool output_is_terminal();

// Has somebody connected standard input to something that can be read? True for a pipe, a socket or
// a file, false for a terminal, for the null device and when it is closed.
[[nodiscard]] bool input_is_redirected();

}  // namespace zar
