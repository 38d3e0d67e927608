#pragma once
#include <cstddef>
#include <string_view>

namespace host::syntax {

// A line of syntax ends with LF, CRLF or a lone CR, as a line of a CSV file does.
// The length of the line end at pos: 1 for LF or a lone CR, 2 for CRLF, 0 for none.
inline std::size_t lineEndLength(std::string_view text, std::size_t pos) {
    if (pos >= text.size()) return 0;
    if (text[pos] == '\n') return 1;
    if (text[pos] != '\r') return 0;
    return pos + 1 < text.size() && text[pos + 1] == '\n' ? 2 : 1;
}

// Blanks separate tokens within a line.
inline bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\f' || c == '\v'; }

// True when only blanks follow from up to the end of the line (or of the text).
inline bool onlyBlanksToLineEnd(std::string_view text, std::size_t from) {
    for (std::size_t i = from; i < text.size() && lineEndLength(text, i) == 0; ++i)
        if (!isBlank(text[i])) return false;
    return true;
}

}  // namespace host::syntax
