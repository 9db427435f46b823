// Reads PNG files back: their chunks, and the dots of a picture.
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

// A picture of any colour type of up to eight bits a sample but grey with opacity.
class PngDots {
  public:
    explicit PngDots(const std::string& png) {
        auto chunks = PngChunks(png);
        width_ = static_cast<int>(BigEndianAt(chunks["IHDR"], 0));
        height_ = static_cast<int>(BigEndianAt(chunks["IHDR"], 4));
        bits_ = chunks["IHDR"].at(8);
        type_ = chunks["IHDR"].at(9);
        channels_ = type_ == 6 ? 4 : type_ == 2 ? 3 : 1;
        palette_ = chunks["PLTE"];
        const std::size_t row = RowBytes() + 1;
        bytes_ = Inflated(chunks["IDAT"], row * static_cast<std::size_t>(height_));
        for (std::size_t y = 0; y * row < bytes_.size(); ++y) Unfilter(y * row + 1);
    }
    // The type: 0 grey, 2 colours, 3 indexed, 6 with opacity.
    int Type() const { return type_; }
    int Bits() const { return bits_; }
    int Width() const { return width_; }
    int Height() const { return height_; }
    // 0xRRGGBB of the dot in column x and row y, y up.
    std::uint32_t At(int x, int y) const {
        const auto row = static_cast<std::size_t>(height_ - 1 - y);
        const std::size_t start = row * (RowBytes() + 1) + 1;
        const std::size_t at = start + static_cast<std::size_t>(channels_ * x);
        if (channels_ > 1) return Byte(at) << 16 | Byte(at + 1) << 8 | Byte(at + 2);
        const int bit = x * bits_;
        const std::uint32_t sample =
            Byte(start + static_cast<std::size_t>(bit / 8)) >> (8 - bits_ - bit % 8) &
            ((1U << bits_) - 1);
        if (type_ == 0) return sample * 255 / ((1U << bits_) - 1) * 0x010101;
        const auto part = [&](std::size_t i) {
            return std::uint32_t{static_cast<std::uint8_t>(palette_.at(3 * sample + i))};
        };
        return part(0) << 16 | part(1) << 8 | part(2);
    }
    // 0 to 255, of type 6.
    std::uint32_t Opacity(int x, int y) const {
        const auto row = static_cast<std::size_t>(height_ - 1 - y);
        return Byte(row * (RowBytes() + 1) + 1 + static_cast<std::size_t>(4 * x) + 3);
    }

  private:
    std::size_t RowBytes() const {
        return static_cast<std::size_t>((channels_ * bits_ * width_ + 7) / 8);
    }
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
    int bits_ = 0;
    int type_ = 0;
    std::string palette_;
    std::string bytes_;
};

}  // namespace qm
