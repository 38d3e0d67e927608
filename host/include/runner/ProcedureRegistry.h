#pragma once
#include <stdexcept>
#include <string>
#include <vector>

namespace host {

// A procedure known from its manifest: command name, library and entry symbol.
struct ProcedureInfo {
    std::string command;      // upper case, words separated by one blank
    std::string library;      // full path of the shared library
    std::string entry;        // exported symbol taking one pointer
    std::string manifestPath;
};

// Raised for problems with manifests, libraries or entry symbols.
class ProcedureLoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Finds procedures through the manifests ("*.procedure.json") in a folder and
// runs them on the calling thread.
class ProcedureRegistry {
public:
    // Reads every manifest in the folder. Throws ProcedureLoadError for a
    // manifest that cannot be read or lacks a member.
    void loadManifests(const std::string& folder);
    const std::vector<ProcedureInfo>& procedures() const { return procedures_; }

    // The procedure whose command name starts the text (case-insensitive,
    // words separated by any blanks), or null.
    const ProcedureInfo* match(const std::string& commandText) const;

    // Loads the library (once) and calls the entry with a null pointer.
    // Throws ProcedureLoadError when the library or the symbol is missing.
    void run(const ProcedureInfo& procedure);

    ~ProcedureRegistry();

private:
    struct Loaded {
        std::string library;
        void* handle;
    };
    std::vector<ProcedureInfo> procedures_;
    std::vector<Loaded> loaded_;
};

// The folder of the running program (from /proc/self/exe).
std::string executableFolder();

}  // namespace host
