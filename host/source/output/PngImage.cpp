#include "output/PngImage.h"

#include <algorithm>

namespace host {

namespace {

std::uint32_t crc32(const std::string& bytes, std::size_t from) {
    static const auto table = [] {
        std::array<std::uint32_t, 256> t{};
        for (std::uint32_t n = 0; n < 256; ++n) {
            std::uint32_t c = n;
            for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    std::uint32_t c = 0xFFFFFFFFu;
    for (std::size_t i = from; i < bytes.size(); ++i)
        c = table[(c ^ static_cast<std::uint8_t>(bytes[i])) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

void put32(std::string& s, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) s += static_cast<char>((v >> shift) & 0xFF);
}

void chunk(std::string& png, const char* type, const std::string& data) {
    put32(png, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = png.size();
    png += type;
    png += data;
    put32(png, crc32(png, start));
}

// A zlib stream of stored (uncompressed) deflate blocks.
std::string zlibStored(const std::string& raw) {
    std::string z = "\x78\x01";
    std::size_t pos = 0;
    do {
        const std::size_t n = std::min<std::size_t>(65535, raw.size() - pos);
        const bool last = pos + n == raw.size();
        z += static_cast<char>(last ? 1 : 0);
        z += static_cast<char>(n & 0xFF);
        z += static_cast<char>(n >> 8);
        z += static_cast<char>(~n & 0xFF);
        z += static_cast<char>((~n >> 8) & 0xFF);
        z.append(raw, pos, n);
        pos += n;
    } while (pos < raw.size());
    std::uint32_t a = 1, b = 0;
    for (char c : raw) {
        a = (a + static_cast<std::uint8_t>(c)) % 65521;
        b = (b + a) % 65521;
    }
    put32(z, (b << 16) | a);
    return z;
}

}  // namespace

PngImage::PngImage(int width, int height)
    : width_(std::max(1, width)), height_(std::max(1, height)),
      pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), 0) {}

std::string PngImage::encode() const {
    std::string png = "\x89PNG\r\n\x1a\n";
    std::string header;
    put32(header, static_cast<std::uint32_t>(width_));
    put32(header, static_cast<std::uint32_t>(height_));
    header += std::string("\x08\x03\x00\x00\x00", 5);  // 8 bits, palette, deflate, no filter, no interlace
    chunk(png, "IHDR", header);
    std::string palette;
    for (const Colour& c : palette_)
        for (std::uint8_t v : c) palette += static_cast<char>(v);
    if (palette.empty()) palette = std::string(3, '\0');
    chunk(png, "PLTE", palette);
    std::string raw;
    raw.reserve(pixels_.size() + static_cast<std::size_t>(height_));
    for (int y = 0; y < height_; ++y) {
        raw += '\0';  // filter type: none
        raw.append(reinterpret_cast<const char*>(&pixels_[static_cast<std::size_t>(y) * width_]),
                   static_cast<std::size_t>(width_));
    }
    chunk(png, "IDAT", zlibStored(raw));
    chunk(png, "IEND", "");
    return png;
}

}  // namespace host
