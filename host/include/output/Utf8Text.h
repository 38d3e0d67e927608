#pragma once
#include <cstddef>
#include <string>

namespace host {

// The text with every byte sequence that is not valid UTF-8 replaced by
// U+FFFD, so that JSON and HTML output stay well-formed.
std::string validUtf8(const std::string& text);

// Number of terminal cells a UTF-8 text takes: East Asian wide and
// full-width characters count two, combining marks and other zero-width or
// non-printing characters none, an invalid byte one (it shows as U+FFFD).
std::size_t displayWidth(const std::string& text);

}  // namespace host
