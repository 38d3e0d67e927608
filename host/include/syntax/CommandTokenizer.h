#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include "syntax/SyntaxError.h"
#include "syntax/Token.h"

namespace host::syntax {

// Splits one command's text into tokens, one at a time, each with its line
// and column. The command ends at a period followed only by blanks up to the
// end of its line, or at the end of the text; only blanks may follow that
// period. A line ends with LF, CRLF or a lone CR.
class CommandTokenizer {
public:
    // firstLine: the line of the source on which the text starts. The text
    // must outlive the tokenizer and its tokens.
    CommandTokenizer(std::string_view text, int firstLine);

    // The next token. At a problem, false: error() describes it and every
    // later call is false too. After the End token, End again.
    bool next(Token& token);
    const SyntaxError& error() const { return error_; }
    int firstLine() const { return firstLine_; }

private:
    bool atTerminator(std::size_t pos) const;
    std::size_t lineEndLength(std::size_t pos) const;
    std::size_t wordEnd(std::size_t from) const;
    bool readNumber(Token& token);
    bool readString(Token& token);
    bool checkNothingFollows();
    bool fail(const std::string& text, int column);
    void finish(Token& token, TokenKind kind, std::size_t end);
    void advance(std::size_t count);
    // Consumes one blank or line end at the current position; false if there is none.
    bool skipSpace();

    std::string_view text_;
    int firstLine_;
    std::size_t pos_ = 0;
    int line_;
    int column_ = 1;
    bool ended_ = false;
    bool failed_ = false;
    Token end_;
    SyntaxError error_;
};

}  // namespace host::syntax
