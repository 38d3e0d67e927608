#include "output/StringTableFile.h"

#include <fstream>
#include <iterator>

#include <rapidjson/document.h>

#include "data/JsonText.h"

namespace host {

bool StringTableFile::read(const std::string& path, std::vector<std::string>& problems) {
    sections_.clear();
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        problems.push_back("The string table " + path + " cannot be read.");
        return false;
    }
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    rapidjson::Document doc;
    const JsonParseResult parsed = parseJsonText(doc, text);
    if (!parsed.ok) {
        problems.push_back("The string table " + path + " is not valid JSON (line " + std::to_string(parsed.line) +
                           ", column " + std::to_string(parsed.column) + ": " + parsed.reason + ").");
        return false;
    }
    if (!doc.IsObject() || !doc.HasMember("procedures") || !doc["procedures"].IsObject()) {
        problems.push_back("The string table " + path +
                           " has no \"procedures\" object holding the translations of each procedure.");
        return false;
    }
    for (const auto& procedure : doc["procedures"].GetObject()) {
        const std::string title = procedure.name.GetString();
        if (!procedure.value.IsObject()) {
            problems.push_back("The string table " + path + ": the entry of procedure \"" + title +
                               "\" is not an object of translations; it is skipped.");
            continue;
        }
        Section& section = sections_[title];
        for (const auto& entry : procedure.value.GetObject()) {
            const std::string key = entry.name.GetString();
            if (!entry.value.IsString()) {
                problems.push_back("The string table " + path + ": the translation of \"" + key +
                                   "\" (procedure \"" + title + "\") is not a text; it is skipped.");
                continue;
            }
            section[key] = std::string(entry.value.GetString(), entry.value.GetStringLength());
        }
    }
    return true;
}

const StringTableFile::Section* StringTableFile::section(const std::string& procedureTitle) const {
    auto it = sections_.find(procedureTitle);
    return it == sections_.end() ? nullptr : &it->second;
}

}  // namespace host
