#include "platform/file.h"

#include <sys/stat.h>

namespace zar {

std::FILE* file_open(const char* path) {
    struct stat status {};
    if (stat(path, &status) != 0 || !S_ISREG(status.st_mode)) {
        return nullptr;
    }
    return std::fopen(path, "rb");
}

bool file_seek(std::FILE* file, std::int64_t offset, int origin) {
    return fseeko(file, static_cast<off_t>(offset), origin) == 0;
}

std::int64_t file_tell(std::FILE* file) { return ftello(file); }

}  // namespace zar
