#include "platform/terminal.h"

#include <unistd.h>

namespace zar {

bool output_is_terminal() { return isatty(STDOUT_FILENO) != 0; }

}  // namespace zar
