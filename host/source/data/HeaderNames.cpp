#include "data/HeaderNames.h"

#include <unordered_map>
#include <unordered_set>

#include "data/NumberText.h"
#include "data/VariableName.h"

namespace host {

namespace {

bool isLetter(unsigned char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c >= 0x80; }

bool isNameCharacter(unsigned char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '$' || c == '#' || c == '@';
}

std::string upper(const std::string& text) {
    std::string result = text;
    for (char& c : result)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return result;
}

// Cuts text to at most size bytes without splitting a UTF-8 character.
void cutTo(std::string& text, std::size_t size) {
    if (text.size() <= size) return;
    while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
    text.resize(size);
}

void dropTrailingDots(std::string& text) {
    while (!text.empty() && text.back() == '.') text.pop_back();
}

// The valid name made from one cell, before it is made unique.
std::string validNameFor(const std::string& original, std::size_t column) {
    std::string name;
    bool gap = false;
    for (const char ch : original) {
        if (!isNameCharacter(static_cast<unsigned char>(ch))) {
            gap = true;
            continue;
        }
        if (gap && !name.empty()) name += '_';
        gap = false;
        name += ch;
    }
    dropTrailingDots(name);
    if (name.empty()) return "V" + std::to_string(column);
    if (!isLetter(static_cast<unsigned char>(name[0]))) name = "V" + name;
    cutTo(name, kMaxHeaderNameBytes);
    dropTrailingDots(name);
    if (!variableNameProblem(name).empty()) name += '_';  // a reserved word
    return name;
}

std::string reasonFor(const std::string& original) {
    if (original.empty()) return "it has no name in the header row";
    if (original.size() > kMaxHeaderNameBytes)
        return "a variable name may be at most " + std::to_string(kMaxHeaderNameBytes) + " bytes long";
    return variableNameProblem(original);
}

}  // namespace

std::vector<HeaderName> variableNamesFromHeader(const std::vector<std::string>& cells) {
    std::vector<HeaderName> names(cells.size());
    std::unordered_map<std::string, std::size_t> taken;  // upper-case name -> column from 0
    // Valid names first, so that no derived name can take one of them.
    for (std::size_t i = 0; i < cells.size(); ++i) {
        HeaderName& header = names[i];
        header.original = std::string(trimBlanks(cells[i]));
        header.reason = reasonFor(header.original);
        if (!header.reason.empty()) continue;
        const auto inserted = taken.emplace(upper(header.original), i);
        if (inserted.second)
            header.name = header.original;
        else
            header.reason = "column " + std::to_string(inserted.first->second + 1) +
                            " has the same name (letter case does not count)";
    }
    std::unordered_map<std::string, int> nextSuffix;  // upper-case base name -> next number to try
    for (std::size_t i = 0; i < cells.size(); ++i) {
        HeaderName& header = names[i];
        if (!header.name.empty()) continue;
        const std::string base = validNameFor(header.original, i + 1);
        std::string name = base;
        if (taken.count(upper(name)) != 0) {
            int& suffix = nextSuffix.emplace(upper(base), 2).first->second;
            do {
                const std::string tail = "_" + std::to_string(suffix++);
                name = base;
                cutTo(name, kMaxHeaderNameBytes - tail.size());
                dropTrailingDots(name);
                name += tail;
            } while (taken.count(upper(name)) != 0);
        }
        taken.emplace(upper(name), i);
        header.name = name;
    }
    return names;
}

}  // namespace host
