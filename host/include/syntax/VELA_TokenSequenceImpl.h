#pragma once
#include <optional>
#include <string>
#include <vector>

#include "VELA_TokenSequence.h"
#include "syntax/SyntaxError.h"
#include "syntax/Token.h"

// The tokens of a command. A problem found while splitting the text is kept
// here and reported by the parser, which knows the command's name.
struct VELA_TokenSequence::Impl {
    std::vector<host::syntax::Token> tokens;  // ends with one End token
    std::optional<host::syntax::SyntaxError> error;
    std::string sourceName;

    void load(const std::string& text, int firstLine, const std::string& source);
};
