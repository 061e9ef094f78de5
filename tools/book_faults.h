// What can be wrong with an opening book.
#pragma once

#include <string>
#include <vector>

#include "book_file.h"

namespace zar::tools {

// One line of text a fault, entries being numbered from 0, in this order: entries that come after
// one of a higher key or, within a key, of a lower weight; moves that a position has twice; entries
// whose move is not legal in any position that the book's own moves reach from the start; bytes
// behind the last whole entry.
[[nodiscard]] std::vector<std::string> book_faults(const BookFile& file);

}  // namespace zar::tools
