#include "syntax/CommandTokenizer.h"

#include <cmath>
#include <cstdlib>

namespace host::syntax {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Letters include every byte of a UTF-8 sequence, so names may hold accented letters.
bool isWordStart(char c) {
    const unsigned char u = static_cast<unsigned char>(c);
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '@' || c == '#' ||
           c == '$' || u >= 0x80;
}

bool isWordPart(char c) { return isWordStart(c) || isDigit(c) || c == '.'; }

}  // namespace

CommandTokenizer::CommandTokenizer(const std::string& text, int firstLine)
    : text_(text), line_(firstLine < 1 ? 1 : firstLine) {}

bool CommandTokenizer::atTerminator(std::size_t pos) const {
    if (pos >= text_.size() || text_[pos] != '.') return false;
    for (std::size_t i = pos + 1; i < text_.size() && text_[i] != '\n'; ++i)
        if (!isBlank(text_[i])) return false;
    return true;
}

Token CommandTokenizer::startToken(TokenKind kind) const {
    Token token;
    token.kind = kind;
    token.line = line_;
    token.column = column_;
    return token;
}

void CommandTokenizer::advance(std::size_t count) {
    pos_ += count;
    column_ += static_cast<int>(count);
}

bool CommandTokenizer::fail(const std::string& text, int column) {
    error_ = SyntaxError{};
    error_.text = text;
    error_.line = line_;
    error_.column = column;
    return false;
}

bool CommandTokenizer::skipSpace() {
    const char c = text_[pos_];
    if (c == '\n') {
        ++pos_;
        ++line_;
        column_ = 1;
        return true;
    }
    if (isBlank(c)) {
        advance(1);
        return true;
    }
    return false;
}

bool CommandTokenizer::run() {
    tokens_.clear();
    while (pos_ < text_.size()) {
        if (skipSpace()) continue;
        const char c = text_[pos_];
        if (atTerminator(pos_)) {
            Token end = startToken(TokenKind::End);
            end.text = end.value = ".";
            tokens_.push_back(end);
            advance(1);
            return checkNothingFollows();
        }
        bool ok = true;
        if (c == '\'' || c == '"') {
            ok = readString();
        } else if (isDigit(c) || ((c == '-' || c == '+' || c == '.') && pos_ + 1 < text_.size() &&
                                   (isDigit(text_[pos_ + 1]) ||
                                    (c != '.' && text_[pos_ + 1] == '.' && pos_ + 2 < text_.size() &&
                                     isDigit(text_[pos_ + 2]))))) {
            ok = readNumber();
        } else if (isWordStart(c)) {
            ok = readWord();
        } else {
            TokenKind kind;
            switch (c) {
                case '/': kind = TokenKind::Slash; break;
                case '=': kind = TokenKind::Equals; break;
                case '(': kind = TokenKind::LeftParen; break;
                case ')': kind = TokenKind::RightParen; break;
                case '[': kind = TokenKind::LeftBracket; break;
                case ']': kind = TokenKind::RightBracket; break;
                default: return fail("character \"" + std::string(1, c) + "\" is not allowed here", column_);
            }
            Token token = startToken(kind);
            token.text = token.value = std::string(1, c);
            tokens_.push_back(token);
            advance(1);
        }
        if (!ok) return false;
    }
    // No period: the end of the text ends the command.
    Token end = startToken(TokenKind::End);
    tokens_.push_back(end);
    return true;
}

bool CommandTokenizer::readWord() {
    Token token = startToken(TokenKind::Word);
    std::size_t end = pos_;
    while (end < text_.size() && isWordPart(text_[end]) && !atTerminator(end)) ++end;
    token.text = token.value = text_.substr(pos_, end - pos_);
    tokens_.push_back(token);
    advance(end - pos_);
    return true;
}

bool CommandTokenizer::readNumber() {
    Token token = startToken(TokenKind::Number);
    std::size_t end = pos_;
    if (text_[end] == '-' || text_[end] == '+') ++end;
    while (end < text_.size() && isDigit(text_[end])) ++end;
    if (end < text_.size() && text_[end] == '.' && !atTerminator(end)) {
        ++end;
        while (end < text_.size() && isDigit(text_[end])) ++end;
    }
    if (end < text_.size() && (text_[end] == 'e' || text_[end] == 'E')) {
        std::size_t exp = end + 1;
        if (exp < text_.size() && (text_[exp] == '-' || text_[exp] == '+')) ++exp;
        if (exp < text_.size() && isDigit(text_[exp])) {
            while (exp < text_.size() && isDigit(text_[exp])) ++exp;
            end = exp;
        }
    }
    // "12abc" or "1e": letters glued to a number make neither a number nor a name.
    if (end < text_.size() && isWordPart(text_[end]) && !atTerminator(end)) {
        std::size_t stop = end;
        while (stop < text_.size() && isWordPart(text_[stop]) && !atTerminator(stop)) ++stop;
        return fail("\"" + text_.substr(pos_, stop - pos_) + "\" is not a valid number", column_);
    }
    token.text = token.value = text_.substr(pos_, end - pos_);
    token.number = std::strtod(token.text.c_str(), nullptr);
    if (!std::isfinite(token.number)) return fail("number \"" + token.text + "\" is too large", column_);
    tokens_.push_back(token);
    advance(end - pos_);
    return true;
}

bool CommandTokenizer::readString() {
    Token token = startToken(TokenKind::String);
    const char quote = text_[pos_];
    std::size_t i = pos_ + 1;
    std::string content;
    for (;;) {
        if (i >= text_.size() || text_[i] == '\n')
            return fail("quoted string is not closed before the end of the line", column_);
        if (text_[i] == quote) {
            if (i + 1 < text_.size() && text_[i + 1] == quote) {
                content += quote;
                i += 2;
                continue;
            }
            break;
        }
        content += text_[i++];
    }
    token.text = text_.substr(pos_, i + 1 - pos_);
    token.value = content;
    tokens_.push_back(token);
    advance(i + 1 - pos_);
    return true;
}

bool CommandTokenizer::checkNothingFollows() {
    while (pos_ < text_.size()) {
        if (!skipSpace()) {
            std::size_t stop = pos_;
            while (stop < text_.size() && !isBlank(text_[stop]) && text_[stop] != '\n') ++stop;
            return fail("text \"" + text_.substr(pos_, stop - pos_) +
                            "\" follows the period that ends the command",
                        column_);
        }
    }
    return true;
}

}  // namespace host::syntax
