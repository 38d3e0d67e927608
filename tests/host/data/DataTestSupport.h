#pragma once
// Helpers shared by the data tests: fixture paths, scratch folders and files.
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "HostSession.h"

namespace datatest {

inline std::string fixture(const std::string& name) { return std::string(DC_FIXTURES) + "/data/" + name; }

inline std::string example(const std::string& name) { return std::string(DC_SOURCE_DIR) + "/examples/" + name; }

inline void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline bool pathExists(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

// Names in a folder, sorted, without "." and "..".
inline std::vector<std::string> listFolder(const std::string& path) {
    std::vector<std::string> names;
    if (DIR* dir = ::opendir(path.c_str())) {
        while (const dirent* entry = ::readdir(dir)) {
            const std::string name = entry->d_name;
            if (name != "." && name != "..") names.push_back(name);
        }
        ::closedir(dir);
    }
    std::sort(names.begin(), names.end());
    return names;
}

// A fresh folder under the build tree, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = std::string(DC_BINARY_DIR) + "/data-test-XXXXXX";
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        if (::mkdtemp(name.data()) != nullptr) path_ = name.data();
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// Starts a fresh command in the session, with messages kept but not printed.
inline void quietSession() {
    host::HostSession& session = host::HostSession::instance();
    session.setQuiet(true);
    session.beginCommand({});
}

inline std::vector<std::string> errorTexts() {
    std::vector<std::string> texts;
    for (const auto& message : host::HostSession::instance().messages())
        if (message.level == host::MessageLevel::Error) texts.push_back(message.text);
    return texts;
}

}  // namespace datatest
