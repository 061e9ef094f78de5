// Files by their wide names: the narrow functions of the C library take no UTF-8.

#include "platform/file.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <string>

namespace zar {

namespace {

// The path in UTF-16; empty when it cannot be read as text of this code page.
std::wstring widen(const char* path, UINT code_page) {
    constexpr int kUpToZero = -1;
    const int size =
        MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, path, kUpToZero, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, path, kUpToZero, wide.data(), size);
    return wide;
}

// GUIs send UTF-8; an old one may send what its user typed.
std::wstring wide_path(const char* path) {
    std::wstring wide = widen(path, CP_UTF8);
    return wide.empty() ? widen(path, CP_ACP) : wide;
}

// What else has a name - a console, a printer, a pipe - is told by its handle; a directory cannot
// be opened in this way.
HANDLE open_disk_file(const char* path) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE handle = CreateFileW(wide_path(path).c_str(), GENERIC_READ, kShareAll, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_DISK) {
        CloseHandle(handle);
        return INVALID_HANDLE_VALUE;
    }
    return handle;
}

}  // namespace

std::FILE* file_open(const char* path) {
    const HANDLE handle = open_disk_file(path);
    if (handle == INVALID_HANDLE_VALUE) {
        return nullptr;
    }
    const int descriptor =
        _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_RDONLY | _O_BINARY);
    if (descriptor == -1) {
        CloseHandle(handle);
        return nullptr;
    }
    std::FILE* const file = _fdopen(descriptor, "rb");
    if (file == nullptr) {
        _close(descriptor);
    }
    return file;
}

bool file_seek(std::FILE* file, std::int64_t offset, int origin) {
    return _fseeki64(file, offset, origin) == 0;
}

std::int64_t file_tell(std::FILE* file) { return _ftelli64(file); }

}  // namespace zar
