#include "platform/memory.h"

#include <new>

#include "platform/fatal.h"

namespace zar {

void out_of_memory() { fatal_error("X-Error 7EU1MA1\n"); }

void memory_install_handler() { std::set_new_handler(out_of_memory); }

}  // namespace zar
