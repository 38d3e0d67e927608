#pragma once
#include <string>

namespace host::syntax {

enum class TokenKind {
    Word,          // keyword or variable name: letters, digits, '.', '_'
    Number,        // signed decimal with optional exponent
    String,        // '...' or "..."; a doubled quote stands for one quote
    Slash,
    Equals,
    LeftParen,
    RightParen,
    LeftBracket,
    RightBracket,
    End            // the terminating period, or the end of the text
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::string text;     // as written; strings keep their quotes
    std::string value;    // words and numbers as written, the content of a string
    double number = 0.0;  // the value of a number
    int line = 1;         // line of the source (not of the command text)
    int column = 1;       // 1-based, counted in characters of the line

    bool is(TokenKind k) const { return kind == k; }
    // How a message quotes the token: "x", "=", or end of command.
    std::string describe() const;
};

}  // namespace host::syntax
