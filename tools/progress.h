// A line at the foot of a terminal that is written over again and again. Where standard output is
// no terminal, nothing of it appears.
#pragma once

#include <string>

namespace zar::tools {

// Shows a text in place of the one before; no more than a few times a second unless `at_once`.
void progress_show(const std::string& text, bool at_once);

// Takes the text away, so that a whole line can be printed.
void progress_clear();

// "[#####.....] 5/10".
[[nodiscard]] std::string progress_bar(std::size_t done, std::size_t all);

}  // namespace zar::tools
