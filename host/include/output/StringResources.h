#pragma once
#include <string>
#include <vector>

namespace host {

// Root of the host's resources: the session's resource folder when set,
// otherwise <folder of the host library>/../share/distcorr.
std::string resourceRoot();

// Folder of the string table of a language: <root>/strings/<language>.
// English ("") has no string table and gives "".
std::string stringResourcePath(const std::string& language);

// Languages that have a string table, sorted ("de", ...).
std::vector<std::string> availableLanguages();

// File name of the string table inside its folder.
extern const char* const kStringTableFileName;

}  // namespace host
