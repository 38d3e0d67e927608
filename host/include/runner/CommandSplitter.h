#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// One command of a syntax text, with the line on which it starts.
struct SyntaxCommand {
    std::string text;
    int firstLine = 1;
};

// Splits syntax text into commands, one at a time, so that a text of many
// commands holds one of them at a time. A command ends with a period that is
// the last non-blank character of its line, or at the end of the text;
// periods inside quoted strings do not count. A line ends with LF, CRLF or a
// lone CR. A UTF-8 byte order mark at the start of the text is not part of
// it. Empty commands and comments ("* ..." or "COMMENT ...") are skipped.
class CommandSplitter {
public:
    // The text must outlive the splitter.
    explicit CommandSplitter(std::string_view syntax);

    // The next command; false when there is none left.
    bool next(SyntaxCommand& command);

private:
    std::string_view text_;
    std::size_t pos_ = 0;
    std::size_t lineStart_ = 0;
    int line_ = 1;
};

// Every command of the text.
std::vector<SyntaxCommand> splitCommands(const std::string& syntax);

}  // namespace host
