#include "output/Utf8Text.h"

#include <utf8proc.h>

namespace host {

namespace {

// Length of the valid UTF-8 sequence at the start of the bytes, 0 if
// invalid (overlong forms, surrogates and code points above U+10FFFF
// included); its code point in codePoint.
std::size_t sequenceAt(const char* bytes, std::size_t size, utf8proc_int32_t& codePoint) {
    const utf8proc_ssize_t n = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes),
                                                static_cast<utf8proc_ssize_t>(size), &codePoint);
    return n > 0 ? static_cast<std::size_t>(n) : 0;
}

}  // namespace

std::string validUtf8(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        utf8proc_int32_t codePoint = 0;
        const std::size_t n = sequenceAt(text.data() + i, text.size() - i, codePoint);
        if (n == 0) {
            out += "\xEF\xBF\xBD";
            ++i;
        } else {
            out.append(text, i, n);
            i += n;
        }
    }
    return out;
}

std::size_t displayWidth(const std::string& text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size();) {
        utf8proc_int32_t codePoint = 0;
        const std::size_t n = sequenceAt(text.data() + i, text.size() - i, codePoint);
        if (n == 0) {
            ++width;  // an invalid byte shows as one replacement character
            ++i;
        } else {
            width += static_cast<std::size_t>(utf8proc_charwidth(codePoint));
            i += n;
        }
    }
    return width;
}

}  // namespace host
