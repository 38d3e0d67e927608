#include "syntax/MessageText.h"

#include <cstdint>

namespace host::syntax {
namespace {

// The length of the valid UTF-8 sequence at text[pos] and its code point;
// 0 when the byte there does not start one.
std::size_t decodeUtf8(std::string_view text, std::size_t pos, std::uint32_t& codePoint) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(pos);
    if (lead < 0x80) {
        codePoint = lead;
        return 1;
    }
    std::size_t length = 0;
    std::uint32_t minimum = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        codePoint = lead & 0x1Fu;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        codePoint = lead & 0x0Fu;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        codePoint = lead & 0x07u;
        minimum = 0x10000;
    } else {
        return 0;
    }
    if (pos + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char c = byte(pos + i);
        if ((c & 0xC0u) != 0x80u) return 0;
        codePoint = (codePoint << 6) | (c & 0x3Fu);
    }
    // Overlong forms, surrogates and code points beyond Unicode are not valid.
    if (codePoint < minimum || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) return 0;
    return length;
}

bool isHidden(std::uint32_t c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || (c >= 0x200B && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E) ||
           (c >= 0x2060 && c <= 0x2069) || c == 0xFEFF;
}

std::string hex(std::uint32_t value, int digits) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::string out(static_cast<std::size_t>(digits), '0');
    for (int i = digits - 1; i >= 0; --i, value >>= 4) out[static_cast<std::size_t>(i)] = kDigits[value & 0xFu];
    return out;
}

// Appends the character at text[pos] as shown and returns how many bytes it took.
std::size_t appendShown(std::string_view text, std::size_t pos, std::string& out) {
    std::uint32_t codePoint = 0;
    const std::size_t length = decodeUtf8(text, pos, codePoint);
    if (length == 0) {
        out += "\\x" + hex(static_cast<unsigned char>(text[pos]), 2);
        return 1;
    }
    if (isHidden(codePoint))
        out += "\\u" + hex(codePoint, 4);
    else
        out.append(text, pos, length);
    return length;
}

}  // namespace

std::string shownText(std::string_view text) {
    std::string out;
    std::size_t pos = 0;
    std::size_t shown = 0;
    std::size_t cut = 0;  // bytes of out holding the first kShownCharacters - 3 characters
    while (pos < text.size()) {
        if (shown == kShownCharacters) return out.substr(0, cut) + "...";
        pos += appendShown(text, pos, out);
        if (++shown == kShownCharacters - 3) cut = out.size();
    }
    return out;
}

std::string quotedText(std::string_view text) { return "\"" + shownText(text) + "\""; }

}  // namespace host::syntax
