#include "data/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace host {

FolderLock::FolderLock(const std::string& folder) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    int result;
    do result = ::flock(fd, LOCK_EX);
    while (result != 0 && errno == EINTR);
    if (result != 0) {
        ::close(fd);
        return;
    }
    fd_ = fd;
}

FolderLock::~FolderLock() {
    if (fd_ >= 0) ::close(fd_);  // closing releases the lock
}

}  // namespace host
