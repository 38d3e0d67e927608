#include "GetExtendFilePath.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "data/HostError.h"
#include "syntax/MessageText.h"

namespace fs = std::filesystem;
using host::syntax::quotedText;

namespace {

// "~" and "~/x" use the home folder, "~user/x" that user's; "" when unknown.
std::string homeFolder(const std::string& user) {
    if (user.empty()) {
        const char* home = std::getenv("HOME");
        if (home != nullptr && *home != '\0') return home;
        const passwd* entry = ::getpwuid(::getuid());
        return entry != nullptr && entry->pw_dir != nullptr ? entry->pw_dir : "";
    }
    const passwd* entry = ::getpwnam(user.c_str());
    return entry != nullptr && entry->pw_dir != nullptr ? entry->pw_dir : "";
}

std::string fail(bool report, const std::string& text) {
    if (report) host::reportHostError(text);
    return "";
}

}  // namespace

std::string GetExtendFilePath(const std::string& name, bool forWriting, bool mustExist, bool reportErrors) {
    if (name.empty()) return fail(reportErrors, "No file name was given.");
    std::string expanded = name;
    if (name[0] == '~') {
        const std::size_t slash = name.find('/');
        const std::string user = name.substr(1, slash == std::string::npos ? std::string::npos : slash - 1);
        const std::string home = homeFolder(user);
        if (home.empty())
            return fail(reportErrors, "Cannot use the file name " + quotedText(name) + ": the home folder of " +
                                          (user.empty() ? "the current user" : "user " + quotedText(user)) +
                                          " is not known.");
        expanded = home + (slash == std::string::npos ? "" : name.substr(slash));
    }
    std::error_code error;
    fs::path path(expanded);
    if (path.is_relative()) {
        const fs::path current = fs::current_path(error);
        if (error)
            return fail(reportErrors, "Cannot use the file name " + quotedText(name) +
                                          ": the working folder is not known (" + error.message() + ").");
        path = current / path;
    }
    path = path.lexically_normal();
    if (!path.has_filename())
        return fail(reportErrors, "Cannot use the file name " + quotedText(name) + ": it names a folder, not a file.");
    const fs::path folder = path.parent_path();
    const fs::file_status folderStatus = fs::status(folder, error);
    if (!fs::exists(folderStatus))
        return fail(reportErrors, "Cannot use the file name " + quotedText(name) + ": the folder " +
                                      quotedText(folder.string()) + " does not exist.");
    if (!fs::is_directory(folderStatus))
        return fail(reportErrors, "Cannot use the file name " + quotedText(name) + ": " + quotedText(folder.string()) +
                                      " is not a folder.");
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status))
        return fail(reportErrors, "Cannot use the file name " + quotedText(name) + ": " + quotedText(path.string()) +
                                      " is a folder.");
    if (mustExist && !fs::exists(status))
        return fail(reportErrors, "Cannot use the file name " + quotedText(name) + ": the file " +
                                      quotedText(path.string()) + " does not exist.");
    if (forWriting && fs::exists(status) && ::access(path.c_str(), W_OK) != 0)
        return fail(reportErrors, "Cannot use the file name " + quotedText(name) + ": the file " +
                                      quotedText(path.string()) + " cannot be written.");
    return path.string();
}
