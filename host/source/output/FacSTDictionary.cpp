#include "FacSTDictionary.h"

#include <filesystem>
#include <system_error>
#include <vector>

#include "HostSession.h"
#include "output/StringResources.h"
#include "output/StringTableFile.h"

struct FacSTDictionary::Impl {
    host::StringTableFile table;
    const host::StringTableFile::Section* section = nullptr;
};

namespace {

void warn(const std::string& text) {
    host::HostSession::instance().addMessage(host::MessageLevel::Warning, "", text);
}

}  // namespace

// An empty location means English: no table, every key is its own text.
FacSTDictionary::FacSTDictionary(const std::string& resourceLocation) : impl_(std::make_unique<Impl>()) {
    if (resourceLocation.empty()) return;
    const std::string path =
        (std::filesystem::path(resourceLocation) / host::kStringTableFileName).string();
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        warn("There is no string table " + path + "; output texts are shown in English.");
        return;
    }
    std::vector<std::string> problems;
    const bool usable = impl_->table.read(path, problems);
    for (const std::string& p : problems) warn(p);
    if (!usable) warn("Output texts are shown in English.");
}

FacSTDictionary::~FacSTDictionary() = default;

void FacSTDictionary::SetProcedure(const std::string& procedureTitle) {
    impl_->section = impl_->table.section(procedureTitle);
}

std::string FacSTDictionary::LookUp(const std::string& key) const {
    if (impl_->section == nullptr) return key;
    auto it = impl_->section->find(key);
    return it == impl_->section->end() ? key : it->second;
}
