#include "runner/CommandSplitter.h"

#include <cctype>

namespace host {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

bool onlyBlanksToLineEnd(const std::string& s, std::size_t from) {
    for (std::size_t i = from; i < s.size() && s[i] != '\n'; ++i)
        if (!isBlank(s[i])) return false;
    return true;
}

bool hasContent(const std::string& s) {
    for (char c : s)
        if (!std::isspace(static_cast<unsigned char>(c))) return true;
    return false;
}

// "* text." and "COMMENT text." are comments, not commands.
bool isComment(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return false;
    const std::string s = text.substr(first);
    if (s[0] == '*') return true;
    std::string word;
    for (char c : s) {
        if (std::isspace(static_cast<unsigned char>(c)) || c == '.') break;
        word += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return word == "COMMENT";
}

}  // namespace

std::vector<SyntaxCommand> splitCommands(const std::string& syntax) {
    std::vector<SyntaxCommand> commands;
    SyntaxCommand current;
    int line = 1;
    char quote = 0;
    bool started = false;
    std::size_t lineStart = 0;

    auto finish = [&]() {
        if (hasContent(current.text) && !isComment(current.text)) commands.push_back(current);
        current = SyntaxCommand{};
        started = false;
    };

    for (std::size_t i = 0; i < syntax.size(); ++i) {
        const char c = syntax[i];
        if (!started && !std::isspace(static_cast<unsigned char>(c))) {
            started = true;
            current.firstLine = line;
            // Keep the blanks before the command on its first line, so that columns
            // reported for that line match the source.
            current.text = syntax.substr(lineStart, i - lineStart);
        }
        if (quote != 0) {
            if (c == quote) quote = 0;
            if (c == '\n') quote = 0;  // a string never spans lines; the parser reports it
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (c == '.' && onlyBlanksToLineEnd(syntax, i + 1)) {
            current.text += c;
            finish();
            continue;
        }
        if (started) current.text += c;
        if (c == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    finish();
    return commands;
}

}  // namespace host
