#include "output/HtmlText.h"

#include <cstdint>

#include "output/Utf8Text.h"

namespace host {

std::string htmlEscape(const std::string& raw) {
    const std::string text = validUtf8(raw);
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&#39;"; break;
        default: out += c;
        }
    }
    return out;
}

std::string base64(const std::string& bytes) {
    static const char* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    std::size_t i = 0;
    for (; i + 2 < bytes.size(); i += 3) {
        const std::uint32_t v = static_cast<std::uint8_t>(bytes[i]) << 16 | static_cast<std::uint8_t>(bytes[i + 1]) << 8 |
                                static_cast<std::uint8_t>(bytes[i + 2]);
        out += digits[v >> 18];
        out += digits[(v >> 12) & 63];
        out += digits[(v >> 6) & 63];
        out += digits[v & 63];
    }
    if (i < bytes.size()) {
        std::uint32_t v = static_cast<std::uint8_t>(bytes[i]) << 16;
        if (i + 1 < bytes.size()) v |= static_cast<std::uint8_t>(bytes[i + 1]) << 8;
        out += digits[v >> 18];
        out += digits[(v >> 12) & 63];
        out += i + 1 < bytes.size() ? digits[(v >> 6) & 63] : '=';
        out += '=';
    }
    return out;
}

}  // namespace host
