// Files that are read, of whatever length.
#pragma once

#include <cstdint>
#include <cstdio>

namespace zar {

// Opens a file for reading bytes; null when that is impossible or it is no regular file: a pipe or
// a device would block, or never end. The path is relative to the working directory. On Windows it
// is UTF-8, or in the system's code page if it cannot be UTF-8.
[[nodiscard]] std::FILE* file_open(const char* path);

// As std::fseek and std::ftell, whose offsets end at 2 GiB on Windows.
[[nodiscard]] bool file_seek(std::FILE* file, std::int64_t offset, int origin);
[[nodiscard]] std::int64_t file_tell(std::FILE* file);

}  // namespace zar
