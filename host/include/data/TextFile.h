#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace host {

// Reads descriptor `fd` to its end into `text`. Returns 0, the errno of a
// failed read, or EFBIG when there are more than `limit` bytes (`text` is
// then empty). The text is sized once from the file's size when it has one,
// so that a large file is never held twice while it grows. A lack of memory
// throws std::bad_alloc.
int readDescriptor(int fd, std::string& text, std::size_t limit = SIZE_MAX);

// Reads a whole file as bytes. Throws DataLoadError "<path>: <problem>" when
// it does not exist, is a folder or cannot be read.
std::string readTextFile(const std::string& path);

// Reads all of standard input as bytes; name is used in messages.
std::string readStandardInput(const std::string& name);

// True when path names an existing regular file (or a link to one).
bool isRegularFile(const std::string& path);

}  // namespace host
