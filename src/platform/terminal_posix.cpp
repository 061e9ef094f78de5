#include "platform/terminal.h"

#include <sys/stat.h>
#include <unistd.h>

namespace zar {

bool output_is_terminal() { return isatty(STDOUT_FILENO) != 0; }

bool input_is_redirected() {
    struct stat status {};
    return fstat(STDIN_FILENO, &status) == 0 && !S_ISCHR(status.st_mode);
}

}  // namespace zar
