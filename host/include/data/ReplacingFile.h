#pragma once
#include <cstdio>
#include <string>
#include <string_view>

namespace host {

// Writes a file under a temporary name in the target's folder and puts it in
// place only when complete, so that a failed write never damages an existing
// file of that name. Every operation returns false on failure and leaves the
// reason (naming the path and the system error) in problem(). The temporary
// file is registered for removal when the program is ended by a signal.
class ReplacingFile {
public:
    explicit ReplacingFile(std::string target);
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;
    ~ReplacingFile();  // discards an unfinished temporary file

    bool open();
    bool write(std::string_view bytes);
    // Flushes the data to the disk and closes the temporary file.
    bool finish();
    // Renames the finished temporary file over the target.
    bool replaceTarget();
    // Closes and removes the temporary file; never fails.
    void discard();

    const std::string& target() const { return target_; }
    const std::string& temporary() const { return temporary_; }
    const std::string& problem() const { return problem_; }

private:
    bool failWith(const std::string& what, int error);
    bool startWriteback();

    std::string target_;
    std::string temporary_;
    std::string problem_;
    std::FILE* file_ = nullptr;
    bool placed_ = false;
    std::size_t written_ = 0;  // bytes written so far
    std::size_t syncing_ = 0;  // bytes whose writing to the disk has been started
    int cleanupSlot_ = -1;
};

// Folder part of a path ("." when there is none).
std::string folderOf(const std::string& path);

}  // namespace host
