#include "syntax/SyntaxError.h"

#include <cctype>

namespace host::syntax {

std::string SyntaxError::format(const std::string& sourceName) const {
    std::string out;
    if (!context.empty()) {
        out += context + ": " + text;
    } else {
        // Without a context the text opens the message.
        out += text;
        if (!out.empty()) out[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(out[0])));
    }
    if (line > 0) {
        out += " (";
        if (!sourceName.empty()) out += sourceName + ", ";
        out += "line " + std::to_string(line) + ", column " + std::to_string(column) + ")";
    } else if (!sourceName.empty()) {
        out += " (" + sourceName + ")";
    }
    out += ".";
    if (!allowed.empty()) out += " Allowed: " + allowed + ".";
    return out;
}

}  // namespace host::syntax
