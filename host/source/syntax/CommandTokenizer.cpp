#include "syntax/CommandTokenizer.h"

#include <cmath>

#include "syntax/LineEnds.h"
#include "syntax/MessageText.h"

namespace host::syntax {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Letters include every byte of a UTF-8 sequence, so names may hold accented letters.
bool isWordStart(char c) {
    const unsigned char u = static_cast<unsigned char>(c);
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '@' || c == '#' || c == '$' ||
           u >= 0x80;
}

bool isWordPart(char c) { return isWordStart(c) || isDigit(c) || c == '.'; }

// Bytes that continue a UTF-8 sequence do not start a new column.
bool startsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0u) != 0x80u; }

TokenKind punctuation(char c) {
    switch (c) {
        case '/':
            return TokenKind::Slash;
        case '=':
            return TokenKind::Equals;
        case '(':
            return TokenKind::LeftParen;
        case ')':
            return TokenKind::RightParen;
        case '[':
            return TokenKind::LeftBracket;
        case ']':
            return TokenKind::RightBracket;
        default:
            return TokenKind::Invalid;
    }
}

}  // namespace

CommandTokenizer::CommandTokenizer(std::string_view text, int firstLine)
    : text_(text), firstLine_(firstLine < 1 ? 1 : firstLine), line_(firstLine_) {}

std::size_t CommandTokenizer::lineEndLength(std::size_t pos) const { return syntax::lineEndLength(text_, pos); }

bool CommandTokenizer::atTerminator(std::size_t pos) const {
    return pos < text_.size() && text_[pos] == '.' && onlyBlanksToLineEnd(text_, pos + 1);
}

void CommandTokenizer::advance(std::size_t count) {
    for (std::size_t end = pos_ + count; pos_ < end; ++pos_)
        if (startsCharacter(text_[pos_])) ++column_;
}

bool CommandTokenizer::fail(const std::string& text, int column) {
    failed_ = true;
    error_ = SyntaxError{};
    error_.text = text;
    error_.line = line_;
    error_.column = column;
    return false;
}

bool CommandTokenizer::skipSpace() {
    if (const std::size_t lineEnd = lineEndLength(pos_)) {
        pos_ += lineEnd;
        ++line_;
        column_ = 1;
        return true;
    }
    if (!isBlank(text_[pos_])) return false;
    advance(1);
    return true;
}

// The token runs from the current position to end.
void CommandTokenizer::finish(Token& token, TokenKind kind, std::size_t end) {
    token.kind = kind;
    token.text = text_.substr(pos_, end - pos_);
    token.line = line_;
    token.column = column_;
    advance(end - pos_);
}

bool CommandTokenizer::next(Token& token) {
    if (failed_) return false;
    if (ended_) {
        token = end_;
        return true;
    }
    while (pos_ < text_.size() && skipSpace()) {
    }
    if (pos_ >= text_.size()) {
        // No period: the end of the text ends the command.
        ended_ = true;
        finish(end_, TokenKind::End, pos_);
        token = end_;
        return true;
    }
    const char c = text_[pos_];
    if (atTerminator(pos_)) {
        ended_ = true;
        finish(end_, TokenKind::End, pos_ + 1);
        token = end_;
        return checkNothingFollows();
    }
    if (c == '\'' || c == '"') return readString(token);
    const bool signedNumber = (c == '-' || c == '+' || c == '.') && pos_ + 1 < text_.size() &&
                              (isDigit(text_[pos_ + 1]) || (c != '.' && text_[pos_ + 1] == '.' &&
                                                            pos_ + 2 < text_.size() && isDigit(text_[pos_ + 2])));
    if (isDigit(c) || signedNumber) return readNumber(token);
    if (isWordStart(c)) {
        finish(token, TokenKind::Word, wordEnd(pos_));
        return true;
    }
    const TokenKind kind = punctuation(c);
    if (kind == TokenKind::Invalid)
        return fail("character " + quotedText(text_.substr(pos_, 1)) + " is not allowed here", column_);
    finish(token, kind, pos_ + 1);
    return true;
}

// A word runs over letters, digits and periods, up to a terminating period.
std::size_t CommandTokenizer::wordEnd(std::size_t from) const {
    std::size_t end = from;
    while (end < text_.size() && isWordPart(text_[end]) && !atTerminator(end)) ++end;
    return end;
}

bool CommandTokenizer::readNumber(Token& token) {
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
    if (end < text_.size() && isWordPart(text_[end]) && !atTerminator(end))
        return fail(quotedText(text_.substr(pos_, wordEnd(end) - pos_)) + " is not a valid number", column_);
    const int column = column_;
    finish(token, TokenKind::Number, end);
    if (!std::isfinite(token.number())) return fail("number " + token.describe() + " is too large", column);
    return true;
}

bool CommandTokenizer::readString(Token& token) {
    const char quote = text_[pos_];
    std::size_t i = pos_ + 1;
    for (;;) {
        if (i >= text_.size() || lineEndLength(i) != 0)
            return fail("quoted string is not closed before the end of the line", column_);
        if (text_[i] == quote) {
            if (i + 1 < text_.size() && text_[i + 1] == quote) {
                i += 2;
                continue;
            }
            break;
        }
        ++i;
    }
    finish(token, TokenKind::String, i + 1);
    return true;
}

bool CommandTokenizer::checkNothingFollows() {
    while (pos_ < text_.size()) {
        if (!skipSpace()) {
            std::size_t stop = pos_;
            while (stop < text_.size() && !isBlank(text_[stop]) && lineEndLength(stop) == 0) ++stop;
            return fail(
                "text " + quotedText(text_.substr(pos_, stop - pos_)) + " follows the period that ends the command",
                column_);
        }
    }
    return true;
}

}  // namespace host::syntax
