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
#include <stdexcept>
#include <string_view>
#include <utility>

#include "HostSession.h"
#include "StandardOutput.h"
#include "syntax/MessageText.h"

using host::syntax::quotedText;

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

// Writes into an existing device or pipe as it is; the reason of a failure,
// or "". An exception from the writer is a failure too.
std::string writeInPlace(const std::string& path, const ReportFile::Writer& writer) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;
        return "cannot open " + quotedText(path) + ": " + systemError(error);
    }
    int error = 0;
    std::string problem;
    SinkStreamBuffer buffer([&](const char* bytes, std::size_t size) {
        error = writeAllToDescriptor(fd, bytes, size);
        return error == 0;
    });
    std::ostream stream(&buffer);
    try {
        writer(stream);
        stream.flush();
    } catch (const std::bad_alloc&) {
        problem = "there was not enough memory";
    } catch (const std::exception& e) {
        problem = e.what();
    }
    if (::close(fd) != 0 && error == 0 && errno != EINTR) error = errno;
    if (!problem.empty()) return problem;
    return error == 0 ? "" : "cannot write " + quotedText(path) + ": " + systemError(error);
}

}  // namespace

std::string ReportFile::problemWith(const std::string& path) {
    if (path.empty()) return "no file name was given";
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode)) return "it is a folder";
        if (const host::InputFile* input = host::HostSession::instance().inputFileAt(path))
            return "it is the same file as " + input->role + " " + quotedText(input->path) +
                   "; an output never replaces an input";
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

std::unique_ptr<SpoolFile> ReportFile::spoolFor(const std::string& path) {
    if (path == "-" || writtenInPlace(path)) return std::make_unique<SpoolFile>("");
    const std::string target = replacedPath(path);
    return std::make_unique<SpoolFile>(host::folderOf(target), target);
}

bool ReportFile::notWritten(const std::string& what, const std::string& problem) {
    std::cerr << "Error: the " << what << " was not written: " << problem << ".\n";
    return false;
}

bool ReportFile::write(const std::string& path, const std::string& what, const Writer& writer, StandardOutput& out) {
    if (path != "-" && writtenInPlace(path)) {
        const std::string problem = writeInPlace(path, writer);
        return problem.empty() || notWritten(what, problem);
    }
    ReportFile report(path, what, out);
    try {
        writer(report.stream());
    } catch (const std::bad_alloc&) {
        report.fail("there was not enough memory");
    } catch (const std::exception& e) {
        report.fail(e.what());
    }
    return report.finish();
}

ReportFile::ReportFile(const std::string& path, std::string what, StandardOutput& out)
    : path_(path),
      what_(std::move(what)),
      out_(out),
      target_(path == "-"            ? Target::StandardOutput
              : writtenInPlace(path) ? Target::InPlace
                                     : Target::Replaced) {
    if (target_ == Target::InPlace) {
        spool_ = spoolFor(path);
    } else if (target_ == Target::Replaced) {
        file_ = std::make_unique<host::ReplacingFile>(replacedPath(path));
        if (!file_->open()) problem_ = file_->problem();
        buffer_ = std::make_unique<SinkStreamBuffer>([this](const char* bytes, std::size_t size) {
            return problem_.empty() && file_->write(std::string_view(bytes, size));
        });
        stream_ = std::make_unique<std::ostream>(buffer_.get());
    }
}

ReportFile::~ReportFile() = default;

std::ostream& ReportFile::stream() {
    switch (target_) {
        case Target::StandardOutput:
            return out_.stream();
        case Target::InPlace:
            return spool_->stream();
        case Target::Replaced:
            break;
    }
    return *stream_;
}

void ReportFile::fail(const std::string& problem) {
    if (problem_.empty()) problem_ = problem;
}

bool ReportFile::finish() {
    switch (target_) {
        case Target::StandardOutput: {
            const bool sent = out_.flush();  // standard output reports its own failure, once
            return problem_.empty() ? sent : notWritten(what_, problem_);
        }
        case Target::InPlace:
            if (problem_.empty())
                problem_ = writeInPlace(path_, [this](std::ostream& out) {
                    if (!spool_->copyTo(out)) throw std::runtime_error(spool_->problem());
                });
            break;
        case Target::Replaced:
            stream_->flush();
            if (problem_.empty() && (buffer_->failed() || !file_->finish() || !file_->replaceTarget()))
                problem_ = file_->problem();
            if (!problem_.empty()) file_->discard();
            break;
    }
    return problem_.empty() || notWritten(what_, problem_);
}
