#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace host {

// An 8-bit palette image, encoded as PNG (deflate through zlib).
class PngImage {
public:
    using Colour = std::array<std::uint8_t, 3>;

    PngImage(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }
    void setPalette(std::vector<Colour> palette) { palette_ = std::move(palette); }
    // Palette index of the pixel in column x of row y (row 0 at the top).
    std::uint8_t& at(int x, int y) { return pixels_[static_cast<std::size_t>(y) * width_ + x]; }

    // The PNG file's bytes.
    std::string encode() const;

private:
    int width_;
    int height_;
    std::vector<Colour> palette_;
    std::vector<std::uint8_t> pixels_;
};

}  // namespace host
