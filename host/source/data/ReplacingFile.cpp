#include "data/ReplacingFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "data/TemporaryFileRegistry.h"
#include "syntax/MessageText.h"

namespace host {

namespace {
constexpr std::size_t kWritebackStep = std::size_t{8} << 20;
}  // namespace

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

ReplacingFile::ReplacingFile(std::string target) : target_(std::move(target)) {}

ReplacingFile::~ReplacingFile() { discard(); }

bool ReplacingFile::failWith(const std::string& what, int error) {
    problem_ = what + ": " + std::strerror(error);
    return false;
}

bool ReplacingFile::open() {
    std::string pattern = target_ + ".tmp-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int fd = temporaryFiles::createRecorded(name.data(), cleanupSlot_);
    if (fd < 0) return failWith("cannot create a file in the folder " + syntax::quotedText(folderOf(target_)), errno);
    temporary_ = name.data();
    // mkstemp creates the file private to its owner; give it the usual permissions.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd, 0666 & ~mask);
    file_ = ::fdopen(fd, "wb");
    if (file_ == nullptr) {
        const int error = errno;
        ::close(fd);
        discard();
        return failWith("cannot open " + syntax::quotedText(temporary_), error);
    }
    return true;
}

bool ReplacingFile::write(std::string_view bytes) {
    if (file_ == nullptr) return failWith("cannot write " + syntax::quotedText(target_), EBADF);
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size())
        return failWith("cannot write " + syntax::quotedText(target_), errno != 0 ? errno : EIO);
    written_ += bytes.size();
    if (written_ - syncing_ >= kWritebackStep && !startWriteback())
        return failWith("cannot write " + syntax::quotedText(target_), errno != 0 ? errno : EIO);
    return true;
}

// Starts writing what is written so far to the disk, without waiting, so that
// a large file goes to the disk while it is being made and finish() waits only
// for the rest. Only the flush can fail; the disk's own errors reach finish().
bool ReplacingFile::startWriteback() {
    if (std::fflush(file_) != 0) return false;
    ::sync_file_range(::fileno(file_), static_cast<off_t>(syncing_), static_cast<off_t>(written_ - syncing_),
                      SYNC_FILE_RANGE_WRITE);
    syncing_ = written_;
    return true;
}

bool ReplacingFile::finish() {
    if (file_ == nullptr) return failWith("cannot write " + syntax::quotedText(target_), EBADF);
    errno = 0;
    bool ok = std::fflush(file_) == 0;
    int error = errno;
    if (ok && ::fsync(::fileno(file_)) != 0) {
        // Some file systems (pipes, special files) cannot sync; that is no write failure.
        if (errno != EINVAL && errno != EROFS) {
            ok = false;
            error = errno;
        }
    }
    errno = 0;
    if (std::fclose(file_) != 0 && ok) {
        ok = false;
        error = errno;
    }
    file_ = nullptr;
    if (!ok) return failWith("cannot write " + syntax::quotedText(target_), error != 0 ? error : EIO);
    return true;
}

bool ReplacingFile::replaceTarget() {
    if (temporary_.empty()) return failWith("cannot write " + syntax::quotedText(target_), EBADF);
    if (::rename(temporary_.c_str(), target_.c_str()) != 0)
        return failWith("cannot replace " + syntax::quotedText(target_), errno);
    placed_ = true;
    temporary_.clear();
    temporaryFiles::remove(cleanupSlot_);
    cleanupSlot_ = -1;
    return true;
}

void ReplacingFile::discard() {
    if (file_ != nullptr) {
        std::fclose(file_);
        file_ = nullptr;
    }
    if (!temporary_.empty() && !placed_) ::unlink(temporary_.c_str());
    temporary_.clear();
    temporaryFiles::remove(cleanupSlot_);
    cleanupSlot_ = -1;
}

}  // namespace host
