#pragma once
#include <string>

// Resolves a file name given in a command to a full path: relative names
// against the working directory, "~" to the home folder. Returns "" and
// reports a host error when the folder does not exist.
std::string GetExtendFilePath(const std::string& name, bool forWriting, bool mustExist,
                              bool reportErrors);
