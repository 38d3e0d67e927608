#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace host::syntax {

// How a message shows a piece of the user's text (a token, a name): never
// more than kShownCharacters characters, and nothing that a terminal or a
// reader of the message would not see as plain text.
//  - A control character (U+0000-U+001F, U+007F-U+009F) or an invisible
//    formatting character (U+200B-U+200F, U+2028-U+202E, U+2060-U+2069,
//    U+FEFF) is shown as \uXXXX with its code point in hexadecimal.
//  - A byte that is not part of valid UTF-8 is shown as \xXX.
//  - A text of more than kShownCharacters characters shows its first
//    kShownCharacters - 3 characters followed by "...".
// Each escape counts as one character.
constexpr std::size_t kShownCharacters = 80;

std::string shownText(std::string_view text);
// shownText in double quotes: "x1".
std::string quotedText(std::string_view text);

}  // namespace host::syntax
