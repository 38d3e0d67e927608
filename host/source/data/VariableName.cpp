#include "data/VariableName.h"

namespace host {

namespace {

bool isAsciiLetter(unsigned char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

std::string upper(const std::string& text) {
    std::string result = text;
    for (char& c : result)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return result;
}

}  // namespace

std::string variableNameProblem(const std::string& name) {
    if (name.empty()) return "a variable name cannot be empty";
    const unsigned char first = static_cast<unsigned char>(name[0]);
    if (!isAsciiLetter(first) && first < 0x80)
        return "a variable name must start with a letter";
    for (char ch : name) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c >= 0x80 || isAsciiLetter(c) || (c >= '0' && c <= '9')) continue;
        if (c == '.' || c == '_' || c == '$' || c == '#' || c == '@') continue;
        return "a variable name may hold only letters, digits, '.', '_', '$', '#' and '@'";
    }
    if (name.back() == '.') return "a variable name cannot end with '.'";
    static const char* const reserved[] = {"ALL", "AND", "BY", "EQ", "GE", "GT", "LE",
                                           "LT",  "NE",  "NOT", "OR", "TO", "WITH"};
    const std::string upperName = upper(name);
    for (const char* word : reserved)
        if (upperName == word) return "\"" + name + "\" is a reserved word";
    return "";
}

bool sameVariableName(const std::string& a, const std::string& b) {
    return a.size() == b.size() && upper(a) == upper(b);
}

}  // namespace host
