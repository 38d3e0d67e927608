#include "runner/CommandSplitter.h"

#include <cctype>

#include "syntax/LineEnds.h"

namespace host {
namespace {

using syntax::lineEndLength;
using syntax::onlyBlanksToLineEnd;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool isSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// "* text." and "COMMENT text." are comments, not commands.
bool isComment(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && isSpace(text[i])) ++i;
    if (i == text.size()) return false;
    if (text[i] == '*') return true;
    static constexpr std::string_view kComment = "COMMENT";
    for (char expected : kComment) {
        if (i == text.size() || std::toupper(static_cast<unsigned char>(text[i])) != expected) return false;
        ++i;
    }
    return i == text.size() || isSpace(text[i]) || text[i] == '.';
}

}  // namespace

CommandSplitter::CommandSplitter(std::string_view syntax) : text_(syntax) {
    if (text_.substr(0, kByteOrderMark.size()) == kByteOrderMark) text_.remove_prefix(kByteOrderMark.size());
}

bool CommandSplitter::next(SyntaxCommand& command) {
    for (;;) {
        // Up to the first character of the command; its line's blanks before it are
        // kept, so that columns reported for that line match the source.
        while (pos_ < text_.size() && isSpace(text_[pos_])) {
            if (const std::size_t lineEnd = lineEndLength(text_, pos_)) {
                pos_ += lineEnd;
                ++line_;
                lineStart_ = pos_;
            } else {
                ++pos_;
            }
        }
        if (pos_ >= text_.size()) return false;
        const std::size_t start = lineStart_;
        const int firstLine = line_;
        std::size_t end = text_.size();
        char quote = 0;
        for (; pos_ < text_.size(); ++pos_) {
            const char c = text_[pos_];
            const std::size_t lineEnd = lineEndLength(text_, pos_);
            if (quote != 0) {
                if (c == quote || lineEnd != 0) quote = 0;  // a string never spans lines; the parser reports it
            } else if (c == '\'' || c == '"') {
                quote = c;
            } else if (c == '.' && onlyBlanksToLineEnd(text_, pos_ + 1)) {
                end = ++pos_;
                break;
            }
            if (lineEnd != 0) {
                pos_ += lineEnd - 1;
                ++line_;
                lineStart_ = pos_ + 1;
            }
        }
        const std::string_view text = text_.substr(start, end - start);
        if (isComment(text)) continue;
        command.text.assign(text);
        command.firstLine = firstLine;
        return true;
    }
}

std::vector<SyntaxCommand> splitCommands(const std::string& syntax) {
    std::vector<SyntaxCommand> commands;
    CommandSplitter splitter(syntax);
    for (SyntaxCommand command; splitter.next(command);) commands.push_back(command);
    return commands;
}

}  // namespace host
