#pragma once
#include <map>
#include <string>
#include <vector>

namespace host {

// A string table file: translations of the visible texts of procedures,
// keyed by procedure title and then by the English text.
//   {"language": "de",
//    "procedures": {"Distance Correlation": {"Mean": "Mittelwert", ...}}}
class StringTableFile {
public:
    using Section = std::map<std::string, std::string>;

    // Reads the file. False, with the reason in problems, when the file as a
    // whole cannot be used; entries that are not texts are skipped, each
    // with a problem, and the rest is kept.
    bool read(const std::string& path, std::vector<std::string>& problems);

    // Null when the file has no section for the procedure.
    const Section* section(const std::string& procedureTitle) const;

private:
    std::map<std::string, Section> sections_;
};

}  // namespace host
