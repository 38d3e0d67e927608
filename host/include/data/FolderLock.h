#pragma once
#include <string>

namespace host {

// An exclusive advisory lock (flock) on a folder, held while the object
// lives. Processes that put several files in place together (a data file and
// its dictionary) take it around the renames, so that two of them never
// interleave and leave one's data beside the other's dictionary. When the
// folder cannot be opened or locked the work goes on unlocked.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder);
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

    bool locked() const { return fd_ >= 0; }

private:
    int fd_ = -1;
};

}  // namespace host
