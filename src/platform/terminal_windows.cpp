#include "platform/terminal.h"

#include <io.h>

#include <cstdio>

namespace zar {

bool output_is_terminal() { return _isatty(_fileno(stdout)) != 0; }

}  // namespace zar
