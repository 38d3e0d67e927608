#include "data/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "data/DataLoadError.h"

namespace host {

int readDescriptor(int fd, std::string& text, std::size_t limit) {
    // One byte beyond the limit tells a text of exactly `limit` bytes from a longer one.
    const std::size_t room = limit < SIZE_MAX ? limit + 1 : limit;
    struct stat info {};
    text.clear();
    std::size_t used = 0;
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0)
        text.resize(std::min(static_cast<std::size_t>(info.st_size) + 1, room));  // one more byte finds the end
    for (;;) {
        if (used == text.size()) {
            if (used > limit) {
                text.clear();
                return EFBIG;
            }
            text.resize(std::min(std::max<std::size_t>(65536, text.size() * 2), room));
        }
        const ssize_t got = ::read(fd, &text[used], text.size() - used);
        if (got == 0) break;
        if (got < 0) {
            if (errno == EINTR) continue;
            const int error = errno;
            text.clear();
            return error;
        }
        used += static_cast<std::size_t>(got);
    }
    text.resize(used);
    return 0;
}

namespace {

// Reads a descriptor to its end; a failed read is a DataLoadError naming the file.
std::string readAll(int fd, const std::string& name) {
    std::string text;
    if (const int error = readDescriptor(fd, text))
        throw DataLoadError(name + ": cannot read the file: " + std::strerror(error));
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
