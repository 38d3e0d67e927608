#include "data/TextFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "data/DataLoadError.h"

namespace host {

bool isRegularFile(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::string readTextFile(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        throw DataLoadError(path + ": cannot read the file: " + std::strerror(errno));
    if (S_ISDIR(info.st_mode)) throw DataLoadError(path + ": this is a folder, not a file");
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) throw DataLoadError(path + ": cannot read the file: " + std::strerror(errno));
    std::string text;
    char buffer[65536];
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) text.append(buffer, got);
    const bool failed = std::ferror(file) != 0;
    const int error = errno;
    std::fclose(file);
    if (failed) throw DataLoadError(path + ": cannot read the file: " + std::strerror(error));
    return text;
}

}  // namespace host
