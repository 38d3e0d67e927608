#include "output/PngImage.h"

#include <zlib.h>

#include <algorithm>
#include <new>

namespace host {

namespace {

void put32(std::string& s, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) s += static_cast<char>((v >> shift) & 0xFF);
}

void chunk(std::string& png, const char* type, const std::string& data) {
    put32(png, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = png.size();
    png += type;
    png += data;
    const auto* bytes = reinterpret_cast<const Bytef*>(png.data() + start);
    put32(png,
          static_cast<std::uint32_t>(::crc32(::crc32(0L, Z_NULL, 0), bytes, static_cast<uInt>(png.size() - start))));
}

// The zlib stream of the pixel rows, compressed at the best level.
std::string deflated(const std::string& raw) {
    uLongf size = ::compressBound(static_cast<uLong>(raw.size()));
    std::string z(size, '\0');
    const int status = ::compress2(reinterpret_cast<Bytef*>(&z[0]), &size, reinterpret_cast<const Bytef*>(raw.data()),
                                   static_cast<uLong>(raw.size()), Z_BEST_COMPRESSION);
    if (status != Z_OK) throw std::bad_alloc();  // compress2 fails only for lack of memory
    z.resize(size);
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
    chunk(png, "IDAT", deflated(raw));
    chunk(png, "IEND", "");
    return png;
}

}  // namespace host
