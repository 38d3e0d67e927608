#pragma once
#include <cstddef>
#include <string>

namespace host {

// The text with every byte sequence that is not valid UTF-8 replaced by
// U+FFFD, so that JSON and HTML output stay well-formed.
std::string validUtf8(const std::string& text);

// Number of characters (code points) of a UTF-8 text, the width the text
// takes in a terminal for the scripts our labels use.
std::size_t displayWidth(const std::string& text);

}  // namespace host
