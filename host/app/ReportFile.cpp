#include "ReportFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <new>
#include <string_view>

#include "HostSession.h"
#include "SinkStreamBuffer.h"
#include "StandardOutput.h"
#include "data/ReplacingFile.h"

namespace {

std::string systemError(int error) { return std::strerror(error); }

// Written as it is rather than replaced: an existing device or pipe, and any
// name under /dev or /proc (/dev/stdout must reach the descriptor, even when
// it leads to a regular file).
bool writtenInPlace(const std::string& path) {
    if (path.rfind("/dev/", 0) == 0 || path.rfind("/proc/", 0) == 0) return true;
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode);
}

// The file that is replaced: for a link, the file it names, so the link stays.
std::string replacedPath(const std::string& path) {
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return path;
    char* resolved = ::realpath(path.c_str(), nullptr);
    if (resolved == nullptr) return path;
    std::string result = resolved;
    std::free(resolved);
    return result;
}

// Writes into an existing device or pipe as it is.
std::string writeInPlace(const std::string& path, const ReportFile::Writer& writer) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) return "cannot open \"" + path + "\": " + systemError(errno);
    int error = 0;
    SinkStreamBuffer buffer([&](const char* bytes, std::size_t size) {
        error = writeAllToDescriptor(fd, bytes, size);
        return error == 0;
    });
    std::ostream stream(&buffer);
    writer(stream);
    stream.flush();
    if (::close(fd) != 0 && error == 0 && errno != EINTR) error = errno;
    return error == 0 ? "" : "cannot write \"" + path + "\": " + systemError(error);
}

std::string writeReplacing(const std::string& path, const ReportFile::Writer& writer) {
    host::ReplacingFile file(replacedPath(path));
    if (!file.open()) return file.problem();
    SinkStreamBuffer buffer(
        [&](const char* bytes, std::size_t size) { return file.write(std::string_view(bytes, size)); });
    std::ostream stream(&buffer);
    writer(stream);
    stream.flush();
    if (buffer.failed() || !file.finish() || !file.replaceTarget()) return file.problem();
    return "";
}

}  // namespace

std::string ReportFile::problemWith(const std::string& path) {
    if (path.empty()) return "no file name was given";
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode)) return "it is a folder";
        if (const host::InputFile* input = host::HostSession::instance().inputFileAt(path))
            return "it is the same file as " + input->role + " \"" + input->path +
                   "\"; an output never replaces an input";
        if (::access(path.c_str(), W_OK) != 0) return "cannot write it: " + systemError(errno);
        if (writtenInPlace(path)) return "";
    } else if (errno != ENOENT) {
        return "cannot use it: " + systemError(errno);
    }
    // Creating the temporary file is the real test of the folder.
    host::ReplacingFile probe(replacedPath(path));
    if (!probe.open()) return probe.problem();
    probe.discard();
    return "";
}

bool ReportFile::sameTarget(const std::string& a, const std::string& b) {
    struct stat first {
    }, second{};
    if (::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0)
        return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
    std::error_code ec1, ec2;
    const std::filesystem::path p1 = std::filesystem::weakly_canonical(a, ec1);
    const std::filesystem::path p2 = std::filesystem::weakly_canonical(b, ec2);
    return !ec1 && !ec2 && p1 == p2;
}

bool ReportFile::write(const std::string& path, const std::string& what, const Writer& writer, StandardOutput& out) {
    std::string problem;
    try {
        if (path == "-") {
            writer(out.stream());
            return out.flush();  // standard output reports its own failure, once
        }
        problem = writtenInPlace(path) ? writeInPlace(path, writer) : writeReplacing(path, writer);
    } catch (const std::bad_alloc&) {
        problem = "there was not enough memory";
    } catch (const std::exception& e) {
        problem = e.what();
    }
    if (problem.empty()) return true;
    std::cerr << "Error: the " << what << " was not written: " << problem << ".\n";
    return false;
}
