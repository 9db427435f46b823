// Reads PNG files back: their chunks, and the dots of a picture without a palette.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

namespace qm {

inline std::uint32_t BigEndianAt(const std::string& text, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<unsigned char>(text.at(at + i));
    }
    return value;
}

// Chunks by type, repeated ones joined; checks their sums.
inline std::map<std::string, std::string> PngChunks(const std::string& png) {
    std::map<std::string, std::string> chunks;
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
    for (std::size_t at = 8; at < png.size();) {
        const std::size_t size = BigEndianAt(png, at);
        const std::string body = png.substr(at + 4, size + 4);
        EXPECT_EQ(
            crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size())),
            BigEndianAt(png, at + 8 + size));
        chunks[body.substr(0, 4)] += body.substr(4);
        at += size + 12;
    }
    EXPECT_EQ(chunks.count("IEND"), 1U);
    return chunks;
}

inline std::string Inflated(const std::string& data, std::size_t bytes) {
    std::string result(bytes + 1, '?');
    auto size = static_cast<uLongf>(result.size());
    EXPECT_EQ(
        uncompress(reinterpret_cast<Bytef*>(result.data()), &size,
                   reinterpret_cast<const Bytef*>(data.data()), static_cast<uLong>(data.size())),
        Z_OK);
    result.resize(size);
    return result;
}

// A picture of eight bits a colour, red, green, blue, and perhaps opacity.
class PngDots {
  public:
    explicit PngDots(const std::string& png) {
        auto chunks = PngChunks(png);
        width_ = static_cast<int>(BigEndianAt(chunks["IHDR"], 0));
        height_ = static_cast<int>(BigEndianAt(chunks["IHDR"], 4));
        channels_ = chunks["IHDR"].at(9) == 6 ? 4 : 3;
        EXPECT_EQ(chunks["IHDR"].at(8), 8);
        const std::size_t row = RowBytes() + 1;
        bytes_ = Inflated(chunks["IDAT"], row * static_cast<std::size_t>(height_));
        for (std::size_t y = 0; y * row < bytes_.size(); ++y) Unfilter(y * row + 1);
    }
    int Width() const { return width_; }
    int Height() const { return height_; }
    // 0xRRGGBB of the dot in column x and row y, y up.
    std::uint32_t At(int x, int y) const {
        const auto row = static_cast<std::size_t>(height_ - 1 - y);
        const std::size_t at = row * (RowBytes() + 1) + 1 + static_cast<std::size_t>(channels_ * x);
        return Byte(at) << 16 | Byte(at + 1) << 8 | Byte(at + 2);
    }

  private:
    std::size_t RowBytes() const { return static_cast<std::size_t>(channels_ * width_); }
    std::uint32_t Byte(std::size_t at) const { return static_cast<std::uint8_t>(bytes_.at(at)); }
    // Undoes the filter of the row whose dots begin at `start`, the rows above being plain.
    void Unfilter(std::size_t start) {
        const auto channels = static_cast<std::size_t>(channels_);
        for (std::size_t i = 0; i < RowBytes(); ++i) {
            const std::size_t at = start + i;
            const bool first = start == 1;
            const int a = i < channels ? 0 : static_cast<int>(Byte(at - channels));
            const int b = first ? 0 : static_cast<int>(Byte(at - RowBytes() - 1));
            const int c =
                first || i < channels ? 0 : static_cast<int>(Byte(at - RowBytes() - 1 - channels));
            const int pa = std::abs(b - c), pb = std::abs(a - c), pc = std::abs(a + b - 2 * c);
            const int paeth = pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
            const int predicted[] = {0, a, b, (a + b) / 2, paeth};
            bytes_[at] = static_cast<char>(bytes_[at] + predicted[Byte(start - 1)]);
        }
    }

    int width_ = 0;
    int height_ = 0;
    int channels_ = 0;
    std::string bytes_;
};

}  // namespace qm
