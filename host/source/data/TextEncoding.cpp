#include "data/TextEncoding.h"

#include <cstdint>
#include <cstring>

#include "data/DataLoadError.h"

namespace host {

namespace {

// Windows-1252 characters of the bytes 0x80-0x9F; the five undefined bytes
// keep their Latin-1 code points.
constexpr char16_t kWindows1252High[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                           0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                           0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                           0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void appendUtf8(std::string& out, std::uint32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

std::string fromWindows1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (b >= 0x80 && b < 0xA0)
            appendUtf8(out, kWindows1252High[b - 0x80]);
        else
            appendUtf8(out, b);
    }
    return out;
}

// UTF-16 after its byte-order mark; an unpaired surrogate is an error.
std::string fromUtf16(std::string_view bytes, bool bigEndian, const std::string& fileName) {
    std::string out;
    out.reserve(bytes.size());
    auto unit = [&](std::size_t i) {
        const auto a = static_cast<unsigned char>(bytes[i]);
        const auto b = static_cast<unsigned char>(bytes[i + 1]);
        return static_cast<std::uint32_t>(bigEndian ? (a << 8 | b) : (b << 8 | a));
    };
    int line = 1;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::uint32_t code = unit(i);
        if (code >= 0xD800 && code < 0xDC00 && i + 3 < bytes.size() && unit(i + 2) >= 0xDC00 && unit(i + 2) < 0xE000) {
            code = 0x10000 + ((code - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
            i += 2;
        } else if (code >= 0xD800 && code < 0xE000) {
            throw DataLoadError(fileName + ":" + std::to_string(line) +
                                ": the file is UTF-16 text with a broken character; save it as UTF-8");
        }
        if (code == '\n') ++line;
        appendUtf8(out, code);
    }
    if (bytes.size() % 2 != 0)
        throw DataLoadError(fileName + ":" + std::to_string(line) +
                            ": the file is UTF-16 text but has an odd number of bytes; save it as UTF-8");
    return out;
}

// Length of the valid UTF-8 sequence starting at text[i]; 0 when invalid.
std::size_t sequenceLength(std::string_view text, std::size_t i) {
    const auto b0 = static_cast<unsigned char>(text[i]);
    auto continuation = [&](std::size_t k, unsigned char low = 0x80, unsigned char high = 0xBF) {
        if (i + k >= text.size()) return false;
        const auto b = static_cast<unsigned char>(text[i + k]);
        return b >= low && b <= high;
    };
    if (b0 >= 0xC2 && b0 <= 0xDF) return continuation(1) ? 2 : 0;
    if (b0 >= 0xE0 && b0 <= 0xEF) {
        const unsigned char low = b0 == 0xE0 ? 0xA0 : 0x80;   // no overlong forms
        const unsigned char high = b0 == 0xED ? 0x9F : 0xBF;  // no surrogates
        return continuation(1, low, high) && continuation(2) ? 3 : 0;
    }
    if (b0 >= 0xF0 && b0 <= 0xF4) {
        const unsigned char low = b0 == 0xF0 ? 0x90 : 0x80;
        const unsigned char high = b0 == 0xF4 ? 0x8F : 0xBF;  // at most U+10FFFF
        return continuation(1, low, high) && continuation(2) && continuation(3) ? 4 : 0;
    }
    return 0;
}

}  // namespace

std::size_t firstInvalidUtf8(std::string_view text) {
    std::size_t i = 0;
    const std::size_t size = text.size();
    while (i < size) {
        // Plain ASCII, eight bytes at a time.
        while (i + 8 <= size) {
            std::uint64_t word = 0;
            std::memcpy(&word, text.data() + i, 8);
            if ((word & 0x8080808080808080ULL) != 0) break;
            i += 8;
        }
        if (i >= size) break;
        if (static_cast<unsigned char>(text[i]) < 0x80) {
            ++i;
            continue;
        }
        const std::size_t length = sequenceLength(text, i);
        if (length == 0) return i;
        i += length;
    }
    return std::string_view::npos;
}

int lineOfOffset(std::string_view text, std::size_t offset) {
    int line = 1;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && !(i + 1 < text.size() && text[i + 1] == '\n'))) ++line;
    }
    return line;
}

std::string decodeDataText(std::string bytes, const std::string& fileName, std::string& note) {
    note.clear();
    if (bytes.size() >= 2 && (bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0))
        return fromUtf16(std::string_view(bytes).substr(2), bytes[0] == '\xFE', fileName);
    const std::size_t bad = firstInvalidUtf8(bytes);
    if (bad == std::string::npos) return bytes;
    note = fileName + ":" + std::to_string(lineOfOffset(bytes, bad)) +
           ": the file is not UTF-8 text; it is read as Windows-1252 (Latin-1)";
    std::string_view body = bytes;
    if (body.compare(0, 3, "\xEF\xBB\xBF") == 0) body.remove_prefix(3);  // a mark that promised UTF-8
    return fromWindows1252(body);
}

}  // namespace host
