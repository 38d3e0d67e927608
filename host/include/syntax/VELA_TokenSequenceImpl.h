#pragma once
#include <memory>
#include <string>

#include "VELA_TokenSequence.h"
#include "syntax/TokenStream.h"

// The tokens of a command, split as the parser reads them. A problem found
// while splitting the text is reported by the parser, which knows the
// command's name.
struct VELA_TokenSequence::Impl {
    std::unique_ptr<host::syntax::TokenStream> tokens;
    std::string sourceName;

    void load(std::string text, int firstLine, const std::string& source);
};
