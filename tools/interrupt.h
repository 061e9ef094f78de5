// Ctrl-C while a search runs: the search ends with what it has, and the program goes on.
#pragma once

namespace zar::tools {

// From now on the first Ctrl-C is only noted; another one ends the program.
void interrupt_watch();

// Ctrl-C ends the program again.
void interrupt_forget();

// Has one been noted? Asked by the search every few thousand nodes, as its hook.
[[nodiscard]] bool interrupted();

}  // namespace zar::tools
