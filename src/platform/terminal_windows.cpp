#include "platform/terminal.h"

#include <io.h>
#include <windows.h>

#include <cstdio>

namespace zar {

bool output_is_terminal() { return _isatty(_fileno(stdout)) != 0; }

bool input_is_redirected() {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    if (input == nullptr || input == INVALID_HANDLE_VALUE) {
        return false;
    }
    // Consoles and the null device are character devices.
    const DWORD type = GetFileType(input);
    return type == FILE_TYPE_DISK || type == FILE_TYPE_PIPE;
}

}  // namespace zar
