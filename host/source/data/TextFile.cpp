#include "data/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "data/DataLoadError.h"

namespace host {

namespace {

// Reads a descriptor to its end. The text is sized once from the file's size
// when it has one, so that a large file is never held twice while it grows.
std::string readAll(int fd, const std::string& name) {
    struct stat info {};
    std::string text;
    std::size_t used = 0;
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0)
        text.resize(static_cast<std::size_t>(info.st_size) + 1);  // one more byte finds the end
    for (;;) {
        if (used == text.size()) text.resize(text.size() < 65536 ? 65536 : text.size() * 2);
        const ssize_t got = ::read(fd, &text[used], text.size() - used);
        if (got == 0) break;
        if (got < 0) {
            if (errno == EINTR) continue;
            throw DataLoadError(name + ": cannot read the file: " + std::strerror(errno));
        }
        used += static_cast<std::size_t>(got);
    }
    text.resize(used);
    return text;
}

}  // namespace

bool isRegularFile(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::string readTextFile(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) throw DataLoadError(path + ": cannot read the file: " + std::strerror(errno));
    if (S_ISDIR(info.st_mode)) throw DataLoadError(path + ": this is a folder, not a file");
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) throw DataLoadError(path + ": cannot read the file: " + std::strerror(errno));
    try {
        std::string text = readAll(fd, path);
        ::close(fd);
        return text;
    } catch (...) {
        ::close(fd);
        throw;
    }
}

std::string readStandardInput(const std::string& name) {
    struct stat info {};
    if (::fstat(STDIN_FILENO, &info) == 0 && S_ISDIR(info.st_mode))
        throw DataLoadError(name + ": this is a folder, not a file");
    return readAll(STDIN_FILENO, name);
}

}  // namespace host
