#pragma once
#include <string>

namespace host {

// Reads a whole file as bytes. Throws DataLoadError "<path>: <problem>" when
// it does not exist, is a folder or cannot be read.
std::string readTextFile(const std::string& path);

// Reads all of standard input as bytes; name is used in messages.
std::string readStandardInput(const std::string& name);

// True when path names an existing regular file (or a link to one).
bool isRegularFile(const std::string& path);

}  // namespace host
