#include "output/StringResources.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "HostSession.h"

namespace fs = std::filesystem;

namespace host {

const char* const kStringTableFileName = "strings.json";

namespace {

// Any object of this library: dladdr on it names the library file.
const char kLibraryAnchor = 0;

std::string libraryResourceRoot() {
    Dl_info info{};
    if (dladdr(&kLibraryAnchor, &info) == 0 || info.dli_fname == nullptr) return "share/distcorr";
    std::error_code ec;
    fs::path library = fs::absolute(fs::path(info.dli_fname), ec);
    if (ec) library = fs::path(info.dli_fname);
    return (library.parent_path() / ".." / "share" / "distcorr").lexically_normal().string();
}

}  // namespace

std::string resourceRoot() {
    const std::string& configured = HostSession::instance().resourceDir();
    if (!configured.empty()) return configured;
    static const std::string root = libraryResourceRoot();
    return root;
}

std::string stringResourcePath(const std::string& language) {
    if (language.empty()) return "";
    return (fs::path(resourceRoot()) / "strings" / language).string();
}

std::vector<std::string> availableLanguages() {
    std::vector<std::string> languages;
    std::error_code ec;
    fs::directory_iterator it(fs::path(resourceRoot()) / "strings", ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        if (fs::is_regular_file(it->path() / kStringTableFileName, ec))
            languages.push_back(it->path().filename().string());
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

}  // namespace host
