#pragma once
#include <string>
#include <string_view>

namespace host::syntax {

enum class TokenKind {
    Word,    // keyword or variable name: letters, digits, '.', '_'
    Number,  // signed decimal with optional exponent
    String,  // '...' or "..."; a doubled quote stands for one quote
    Slash,
    Equals,
    LeftParen,
    RightParen,
    LeftBracket,
    RightBracket,
    End,     // the terminating period, or the end of the text
    Invalid  // text that is not a token; the tokenizer's error says why
};

// One token: its kind and a view of its text in the command, which must
// outlive it. Compact, so that long commands stay cheap.
struct Token {
    TokenKind kind = TokenKind::End;
    std::string_view text;  // as written; strings keep their quotes
    int line = 1;           // line of the source (not of the command text)
    int column = 1;         // 1-based, counted in characters of the line

    bool is(TokenKind k) const { return kind == k; }
    // Words and numbers as written, the content of a string.
    std::string value() const;
    // The value of a number (0 for other tokens).
    double number() const;
    // How a message quotes the token: "x", "=", or the end of the command.
    std::string describe() const;
};

}  // namespace host::syntax
