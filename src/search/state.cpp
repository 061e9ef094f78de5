// The records that the threads of a search work on.

#include "search/types.h"

namespace zar {

SearchShared search_shared{};
std::array<SearchThread, kMaxThreads> search_threads{};

}  // namespace zar
