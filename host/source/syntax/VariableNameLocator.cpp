#include "syntax/VariableNameLocator.h"

#include <cstddef>

#include "syntax/CommandTokenizer.h"
#include "syntax/TextCase.h"

namespace host::syntax {
namespace {

bool isWord(const Token& t, const std::string& word) { return t.is(TokenKind::Word) && equalsIgnoreCase(t.text, word); }

// The tokens of a text in order, with the one after the current one, up to
// the End token (included) or to text that is not a token (excluded).
class TokenWalk {
public:
    TokenWalk(std::string_view text, int firstLine) : tokenizer_(text, firstLine) {
        pull(current_);
        pull(next_);
    }
    bool valid() const { return !current_.is(TokenKind::Invalid); }
    const Token& current() const { return current_; }
    const Token& next() const { return next_; }
    std::size_t index() const { return index_; }
    void advance() {
        current_ = current_.is(TokenKind::End) ? Token{TokenKind::Invalid, {}, 0, 0} : next_;
        if (!next_.is(TokenKind::End) && !next_.is(TokenKind::Invalid)) pull(next_);
        ++index_;
    }

private:
    void pull(Token& token) {
        if (!tokenizer_.next(token)) token.kind = TokenKind::Invalid;
    }

    CommandTokenizer tokenizer_;
    Token current_;
    Token next_;
    std::size_t index_ = 0;
};

}  // namespace

// Where the subcommand or keyword stands: a subcommand is written after "/",
// a keyword that carries qualifiers is not. The start of the text when neither.
std::size_t VariableNameLocator::anchorOf(const std::string& subComName) const {
    bool afterSlash = false;
    bool seen = false;
    std::size_t firstWord = 0;
    for (TokenWalk walk(text_, firstLine_); walk.valid(); walk.advance()) {
        if (isWord(walk.current(), subComName)) {
            if (afterSlash) return walk.index();
            if (!seen) firstWord = walk.index();
            seen = true;
        }
        afterSlash = walk.current().is(TokenKind::Slash);
    }
    return firstWord;
}

// Where the value of the parameter starts: after "=" when next is Equals, at
// the word after the parameter's name when next is Word.
std::size_t VariableNameLocator::valueStart(std::size_t anchor, const std::string& paramName, TokenKind next) const {
    for (TokenWalk walk(text_, firstLine_); walk.valid(); walk.advance())
        if (walk.index() >= anchor && isWord(walk.current(), paramName) && walk.next().is(next))
            return walk.index() + (next == TokenKind::Equals ? 2 : 1);
    return kNowhere;
}

bool VariableNameLocator::find(const std::string& subComName, const std::string& paramName, const std::string& name,
                               int occurrence, Token& at) const {
    const std::size_t anchor = anchorOf(subComName);
    std::size_t start = valueStart(anchor, paramName, TokenKind::Equals);
    // A list that continues another one ("a b WITH c d") has no "=".
    if (start == kNowhere) start = valueStart(anchor, paramName, TokenKind::Word);
    if (start == kNowhere) return false;
    TokenWalk walk(text_, firstLine_);
    while (walk.valid() && walk.index() < start) walk.advance();

    int seen = 0;
    for (; walk.valid(); walk.advance()) {
        const Token& t = walk.current();
        if (t.is(TokenKind::End) || t.is(TokenKind::Slash) || t.is(TokenKind::RightParen)) break;
        const bool nextItem = walk.next().is(TokenKind::Equals) || walk.next().is(TokenKind::LeftParen);
        if (t.is(TokenKind::Word) && nextItem) break;
        if (isWord(t, name) && ++seen == occurrence) {
            at = t;
            return true;
        }
    }
    return false;
}

}  // namespace host::syntax
