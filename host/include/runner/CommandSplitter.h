#pragma once
#include <string>
#include <vector>

namespace host {

// One command of a syntax text, with the line on which it starts.
struct SyntaxCommand {
    std::string text;
    int firstLine = 1;
};

// Splits syntax text into commands. A command ends with a period that is the
// last non-blank character of its line, or at the end of the text; periods
// inside quoted strings do not count. Empty commands and comments ("* ..."
// or "COMMENT ...") are dropped.
std::vector<SyntaxCommand> splitCommands(const std::string& syntax);

}  // namespace host
