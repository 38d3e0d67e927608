#include "syntax/VariableNameLocator.h"

#include <cstddef>

#include "syntax/TextCase.h"

namespace host::syntax {
namespace {

bool isWord(const Token& t, const std::string& word) {
    return t.is(TokenKind::Word) && equalsIgnoreCase(t.value, word);
}

}  // namespace

const Token* VariableNameLocator::find(const std::string& subComName, const std::string& paramName,
                                       const std::string& name, int occurrence) const {
    const std::size_t n = tokens_.size();
    // A subcommand is written after "/"; a keyword that carries qualifiers is not.
    std::size_t anchor = n;
    for (std::size_t i = 1; i < n && anchor == n; ++i)
        if (tokens_[i - 1].is(TokenKind::Slash) && isWord(tokens_[i], subComName)) anchor = i;
    for (std::size_t i = 0; i < n && anchor == n; ++i)
        if (isWord(tokens_[i], subComName)) anchor = i;
    if (anchor == n) anchor = 0;

    std::size_t start = n;
    for (std::size_t i = anchor; i + 1 < n && start == n; ++i)
        if (isWord(tokens_[i], paramName) && tokens_[i + 1].is(TokenKind::Equals)) start = i + 2;
    // A list that continues another one ("a b WITH c d") has no "=".
    for (std::size_t i = anchor; i + 1 < n && start == n; ++i)
        if (isWord(tokens_[i], paramName) && tokens_[i + 1].is(TokenKind::Word)) start = i + 1;

    int seen = 0;
    for (std::size_t j = start; j < n; ++j) {
        const Token& t = tokens_[j];
        if (t.is(TokenKind::End) || t.is(TokenKind::Slash) || t.is(TokenKind::RightParen)) break;
        const bool nextItem = j + 1 < n && (tokens_[j + 1].is(TokenKind::Equals) || tokens_[j + 1].is(TokenKind::LeftParen));
        if (t.is(TokenKind::Word) && nextItem) break;
        if (isWord(t, name) && ++seen == occurrence) return &t;
    }
    return nullptr;
}

}  // namespace host::syntax
