#pragma once
#include <cstddef>
#include <deque>
#include <string>

#include "syntax/CommandTokenizer.h"
#include "syntax/SyntaxError.h"
#include "syntax/Token.h"

namespace host::syntax {

// The tokens of one command, split from its text only as far as the parser
// reads, and kept only until the parser has taken them: a command that is
// refused early costs nothing for the rest of its text, and a long one holds
// a few tokens at a time.
class TokenStream {
public:
    TokenStream(std::string text, int firstLine);
    TokenStream(const TokenStream&) = delete;
    TokenStream& operator=(const TokenStream&) = delete;

    // The token ahead places after the current one. Where the text cannot be
    // split the token is Invalid; the current token being Invalid throws the
    // tokenizer's SyntaxError, so problems are reported in the order of the text.
    const Token& peek(std::size_t ahead = 0);
    // The current token; the stream moves past it unless it is the End.
    Token take();
    // Back to the first token of the text.
    void rewind();

private:
    std::string text_;  // the tokens' views point into it
    CommandTokenizer tokenizer_;
    std::deque<Token> ahead_;  // split but not yet taken
    bool broken_ = false;      // the tokenizer failed; the last token ahead is Invalid
};

}  // namespace host::syntax
