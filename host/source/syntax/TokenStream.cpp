#include "syntax/TokenStream.h"

#include <utility>

namespace host::syntax {

TokenStream::TokenStream(std::string text, int firstLine) : text_(std::move(text)), tokenizer_(text_, firstLine) {}

const Token& TokenStream::peek(std::size_t ahead) {
    while (ahead_.size() <= ahead && !broken_) {
        Token token;
        if (!tokenizer_.next(token)) {
            broken_ = true;
            token = Token{};
            token.kind = TokenKind::Invalid;
            token.line = tokenizer_.error().line;
            token.column = tokenizer_.error().column;
        }
        ahead_.push_back(token);
    }
    const Token& token = ahead < ahead_.size() ? ahead_[ahead] : ahead_.back();
    if (ahead == 0 && token.is(TokenKind::Invalid)) throw tokenizer_.error();
    return token;
}

void TokenStream::rewind() {
    tokenizer_ = CommandTokenizer(text_, tokenizer_.firstLine());
    ahead_.clear();
    broken_ = false;
}

Token TokenStream::take() {
    const Token token = peek();
    if (!token.is(TokenKind::End)) ahead_.pop_front();
    return token;
}

}  // namespace host::syntax
