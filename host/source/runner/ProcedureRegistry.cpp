#include "runner/ProcedureRegistry.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <rapidjson/document.h>

#include "data/JsonText.h"

namespace fs = std::filesystem;

namespace host {
namespace {

std::vector<std::string> upperWords(const std::string& text, std::size_t maxWords) {
    std::vector<std::string> words;
    std::string word;
    for (char c : text) {
        if (std::isspace(static_cast<unsigned char>(c)) || c == '/' || c == '.' || c == '=') {
            if (!word.empty()) {
                words.push_back(word);
                word.clear();
                if (words.size() == maxWords) return words;
            }
            if (!std::isspace(static_cast<unsigned char>(c))) break;
        } else {
            word += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    if (!word.empty() && words.size() < maxWords) words.push_back(word);
    return words;
}

std::string memberText(const rapidjson::Document& doc, const char* name, const std::string& path) {
    auto it = doc.FindMember(name);
    if (it == doc.MemberEnd() || !it->value.IsString() || it->value.GetStringLength() == 0)
        throw ProcedureLoadError(path + ": manifest member \"" + name + "\" is missing or not a text");
    return it->value.GetString();
}

}  // namespace

void ProcedureRegistry::loadManifests(const std::string& folder) {
    std::error_code ec;
    std::vector<fs::path> manifests;
    for (const auto& entry : fs::directory_iterator(folder, ec)) {
        const std::string name = entry.path().filename().string();
        const std::string suffix = ".procedure.json";
        if (name.size() > suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
            manifests.push_back(entry.path());
    }
    if (ec) throw ProcedureLoadError(folder + ": cannot read the procedure folder: " + ec.message());
    std::sort(manifests.begin(), manifests.end());

    for (const auto& path : manifests) {
        std::ifstream in(path);
        if (!in) throw ProcedureLoadError(path.string() + ": cannot open the manifest");
        std::stringstream buffer;
        buffer << in.rdbuf();
        rapidjson::Document doc;
        const JsonParseResult parsed = parseJsonText(doc, buffer.str());
        if (!parsed.ok || !doc.IsObject())
            throw ProcedureLoadError(path.string() + ": malformed manifest: " +
                                     (!parsed.ok ? parsed.reason : "not a JSON object"));
        ProcedureInfo info;
        info.manifestPath = path.string();
        std::string command;
        for (const auto& w : upperWords(memberText(doc, "command", path.string()), 16))
            command += (command.empty() ? "" : " ") + w;
        info.command = command;
        fs::path library = memberText(doc, "library", path.string());
        info.library = (library.is_absolute() ? library : path.parent_path() / library).string();
        info.entry = memberText(doc, "entry", path.string());
        procedures_.push_back(info);
    }
}

const ProcedureInfo* ProcedureRegistry::match(const std::string& commandText) const {
    const ProcedureInfo* best = nullptr;
    std::size_t bestWords = 0;
    for (const auto& p : procedures_) {
        std::size_t n = 1 + static_cast<std::size_t>(std::count(p.command.begin(), p.command.end(), ' '));
        auto words = upperWords(commandText, n);
        std::string joined;
        for (const auto& w : words) joined += (joined.empty() ? "" : " ") + w;
        if (joined == p.command && n > bestWords) {
            best = &p;
            bestWords = n;
        }
    }
    return best;
}

void ProcedureRegistry::run(const ProcedureInfo& procedure) {
    void* handle = nullptr;
    for (const auto& l : loaded_)
        if (l.library == procedure.library) handle = l.handle;
    if (handle == nullptr) {
        if (!fs::exists(procedure.library))
            throw ProcedureLoadError(procedure.manifestPath + ": procedure library " + procedure.library +
                                     " does not exist");
        handle = dlopen(procedure.library.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr)
            throw ProcedureLoadError("cannot load procedure library " + procedure.library + ": " + dlerror());
        loaded_.push_back({procedure.library, handle});
    }
    dlerror();
    void* symbol = dlsym(handle, procedure.entry.c_str());
    if (symbol == nullptr)
        throw ProcedureLoadError("procedure library " + procedure.library + " has no entry symbol \"" +
                                 procedure.entry + "\"");
    using Entry = void (*)(void*);
    reinterpret_cast<Entry>(symbol)(nullptr);
}

ProcedureRegistry::~ProcedureRegistry() {
    // Libraries stay loaded until the program ends: objects they created (for
    // example vtables of chart classes) may still be referenced by the host.
}

std::string executableFolder() {
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (ec) return ".";
    return exe.parent_path().string();
}

}  // namespace host
