#include "SpoolFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "data/TemporaryFileRegistry.h"
#include "syntax/MessageText.h"

std::string temporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

namespace {

// A file in `folder` that has no name: O_TMPFILE where the file system
// offers it, otherwise a named file removed at once (recorded for the
// signal handler in between).
int createNameless(const std::string& folder) {
    const int fd = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (fd >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL)) return fd;
    std::string pattern = folder + "/.distcorr-spool-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    int slot = -1;
    const int named = host::temporaryFiles::createRecorded(name.data(), slot);
    if (named >= 0) ::unlink(name.data());
    host::temporaryFiles::remove(slot);
    return named;
}

}  // namespace

SpoolFile::SpoolFile(const std::string& folder, const std::string& shownAs)
    : folder_(folder.empty() ? temporaryFolder() : folder),
      shownAs_(shownAs.empty() ? "a temporary file in the folder " + host::syntax::quotedText(folder_)
                               : host::syntax::quotedText(shownAs)),
      buffer_([this](const char* bytes, std::size_t size) {
          if (fd_ < 0) return false;
          writeError_ = writeAllToDescriptor(fd_, bytes, size);
          return writeError_ == 0;
      }),
      stream_(&buffer_) {
    fd_ = createNameless(folder_);
    const int error = errno;
    if (fd_ < 0) fail("cannot create a file in the folder " + host::syntax::quotedText(folder_), error);
}

SpoolFile::~SpoolFile() {
    if (fd_ >= 0) ::close(fd_);
}

bool SpoolFile::fail(const std::string& what, int error) {
    if (problem_.empty()) problem_ = what + ": " + std::strerror(error);
    return false;
}

bool SpoolFile::flush() {
    stream_.flush();
    if (fd_ < 0) return false;
    return !buffer_.failed() || fail("cannot write " + shownAs_, writeError_ != 0 ? writeError_ : EIO);
}

bool SpoolFile::copyTo(std::ostream& out) {
    if (!flush()) return false;
    std::vector<char> block(1 << 16);
    for (off_t at = 0;;) {
        const ssize_t n = ::pread(fd_, block.data(), block.size(), at);
        if (n < 0) {
            const int error = errno;
            if (error == EINTR) continue;
            return fail("cannot read " + shownAs_, error);
        }
        if (n == 0) return true;
        out.write(block.data(), n);
        at += n;
    }
}
