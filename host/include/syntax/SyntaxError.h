#pragma once
#include <string>

namespace host::syntax {

// One problem found in a command's text. Shown as
//   <context>: <text> (<source>, line <n>, column <m>). Allowed: <allowed>.
// where the context names the subcommand, keyword and qualifier involved
// ("PRINT DISTMATRIX SAVE") and each part is left out when empty. Without a
// context the text's first letter is upper-cased.
struct SyntaxError {
    std::string context;
    std::string text;
    int line = 0;    // 0 when the place is not known
    int column = 0;
    std::string allowed;

    std::string format(const std::string& sourceName) const;
};

}  // namespace host::syntax
