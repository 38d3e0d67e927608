#include "syntax/TextCase.h"

#include <cctype>

namespace host::syntax {

std::string upperCase(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(a[i])) != std::toupper(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

std::string joinWords(const std::vector<std::string>& words, const std::string& separator) {
    std::string out;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) out += separator;
        out += words[i];
    }
    return out;
}

}  // namespace host::syntax
