// relay PROGRAM [ARGUMENT...]: starts a program of Windows whose standard input is a pipe of
// Windows, and passes on all that comes from its own; the exit status is the program's. Wine cannot
// tell whether bytes wait in a pipe of the system below it, which is what the engine has to ask.

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "relay: %s fails with error %lu\n", what, GetLastError());
    ExitProcess(3);
}

// The command line without its first word, quoted as it was.
std::wstring rest_of_command_line() {
    const std::wstring line = GetCommandLineW();
    const bool is_quoted = line.starts_with(L'"');
    const std::size_t end = line.find(is_quoted ? L'"' : L' ', is_quoted ? 1 : 0);
    const std::size_t start =
        end == std::wstring::npos ? end : line.find_first_not_of(L' ', end + 1);
    return start == std::wstring::npos ? std::wstring() : line.substr(start);
}

// Passes on bytes until there are no more, or nobody wants them.
DWORD WINAPI pump(void* pipe) {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    char bytes[4096];
    DWORD size = 0;
    DWORD written = 0;
    while (ReadFile(input, bytes, sizeof bytes, &size, nullptr) && size > 0 &&
           WriteFile(pipe, bytes, size, &written, nullptr)) {
    }
    CloseHandle(pipe);
    return 0;
}

}  // namespace

int main() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE read_end = nullptr;
    HANDLE write_end = nullptr;
    if (!CreatePipe(&read_end, &write_end, &inherited, 0) ||
        !SetHandleInformation(write_end, HANDLE_FLAG_INHERIT, 0)) {
        fail("making a pipe");
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = read_end;
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION program{};
    std::wstring command = rest_of_command_line();
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &startup, &program)) {
        fail("starting the program");
    }
    CloseHandle(read_end);
    if (CreateThread(nullptr, 0, pump, write_end, 0, nullptr) == nullptr) {
        fail("starting a thread");
    }
    DWORD status = 0;
    if (WaitForSingleObject(program.hProcess, INFINITE) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(program.hProcess, &status)) {
        fail("waiting for the program");
    }
    // Not by a return, which would wait for the other thread's read.
    ExitProcess(status);
}
