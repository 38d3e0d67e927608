#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "syntax/SyntaxError.h"
#include "syntax/Token.h"

namespace host::syntax {

// Splits one command's text into tokens, each with its line and column.
// The command ends at a period followed only by blanks up to the end of its
// line, or at the end of the text; only blanks may follow that period.
class CommandTokenizer {
public:
    // firstLine: the line of the source on which the text starts.
    CommandTokenizer(const std::string& text, int firstLine);

    // False at the first problem, which error() then describes. On success
    // the tokens end with exactly one End token.
    bool run();
    const std::vector<Token>& tokens() const { return tokens_; }
    const SyntaxError& error() const { return error_; }

private:
    bool atTerminator(std::size_t pos) const;
    bool readWord();
    bool readNumber();
    bool readString();
    bool checkNothingFollows();
    bool fail(const std::string& text, int column);
    Token startToken(TokenKind kind) const;
    void advance(std::size_t count);
    // Consumes one blank or line end at the current position; false if there is none.
    bool skipSpace();

    std::string text_;
    std::size_t pos_ = 0;
    int line_;
    int column_ = 1;
    std::vector<Token> tokens_;
    SyntaxError error_;
};

}  // namespace host::syntax
