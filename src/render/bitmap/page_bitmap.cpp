#include "render/bitmap/page_bitmap.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>
#include <utility>

#include "common/packed_bitmap.h"
#include "render/bitmap/colour_table.h"
#include "render/bitmap/page_bands.h"

namespace qm::bitmap {

namespace {

using Palette = std::array<PaletteEntry, 256>;

// -------------------------------------------------------------------------------- 8 bits a dot

constexpr unsigned kCubeSide = 6;
constexpr unsigned kCubeStep = 255 / (kCubeSide - 1);

unsigned CubeLevel(std::uint32_t component) {
    return ((component & 255) + kCubeStep / 2) / kCubeStep;
}

std::uint8_t CubeIndex(std::uint32_t dot) {
    return static_cast<std::uint8_t>(
        (CubeLevel(dot >> 16) * kCubeSide + CubeLevel(dot >> 8)) * kCubeSide + CubeLevel(dot));
}

Palette CubePalette() {
    Palette palette{};
    for (unsigned i = 0; i < kCubeSide * kCubeSide * kCubeSide; ++i) {
        const auto level = [](unsigned value) {
            return static_cast<std::uint8_t>(value % kCubeSide * kCubeStep);
        };
        palette[i] = {level(i), level(i / kCubeSide), level(i / kCubeSide / kCubeSide), 0};
    }
    return palette;
}

// --------------------------------------------------------------------------------- 1 bit a dot

// Thresholds of ordered dithering: bit by bit from the mixed bits of x and y, the finest ones first
// (Bayer), so that the dots of each lightness lie as far apart as possible.
unsigned Threshold(std::int32_t x, std::int32_t y) {
    const auto column = static_cast<unsigned>(x);
    const auto row = static_cast<unsigned>(y);
    unsigned threshold = 0;
    for (unsigned bit = 0; bit < 3; ++bit) {
        threshold = threshold << 2 | ((column ^ row) >> bit & 1) << 1 | (row >> bit & 1);
    }
    return threshold;  // 0 to 63
}

// Weights of the components in lightness: ITU-R BT.601.
bool IsWhite(std::uint32_t dot, std::int32_t x, std::int32_t y) {
    const std::uint32_t lightness =
        (299 * (dot >> 16 & 255) + 587 * (dot >> 8 & 255) + 114 * (dot & 255)) / 1000;
    return lightness * 64 > Threshold(x, y) * 255 + 127;
}

// ---------------------------------------------------------------------------------------- bitmap

class BitmapWriter {
  public:
    BitmapWriter(const PageRaster& raster, int bits)
        : width_(raster.width), height_(raster.height), bits_(bits) {
        const auto bytes = PackedBitmapSize(width_, height_, bits);
        if (!bytes) throw std::bad_alloc();
        packed_.resize(*bytes);
        rows_ = WriteHeader(Palette{PaletteEntry{0, 0, 0, 0}, PaletteEntry{255, 255, 255, 0}});
    }

    void Take(const Band& band) {
        for (std::int32_t y = band.Top(); y < band.Bottom(); ++y) {
            const BandDot* const dots = band.Row(y);
            if (bits_ == 1) {
                WriteBits(dots, y);
            } else if (bits_ == 8) {
                WriteIndices(dots, y);
            } else {
                WriteColours(dots, y);
            }
        }
    }
    std::vector<std::uint8_t> Finish() {
        if (bits_ == 8 && !cube_) {
            Palette palette{};
            const auto& colours = colours_.Colours();
            std::transform(colours.begin(), colours.end(), palette.begin(), EntryOf);
            WriteHeader(palette);
        }
        return std::move(packed_);
    }

  private:
    std::uint8_t* WriteHeader(const Palette& palette) {
        return WritePackedHeader(packed_.data(), width_, height_, bits_, palette.data());
    }
    std::uint8_t* RowAt(std::int32_t y) {
        return rows_ + static_cast<std::ptrdiff_t>(PackedStride(width_, bits_)) * (height_ - 1 - y);
    }
    void WriteBits(const BandDot* dots, std::int32_t y) {
        std::uint8_t* const row = RowAt(y);
        for (std::int32_t x = 0; x < width_; ++x) {
            if (!IsWhite(dots[x].colour, x, y)) continue;
            row[x / 8] = static_cast<std::uint8_t>(row[x / 8] | 0x80U >> (x % 8));
        }
    }
    void WriteIndices(const BandDot* dots, std::int32_t y) {
        std::uint8_t* const row = RowAt(y);
        for (std::int32_t x = 0; x < width_; ++x) {
            const std::size_t number =
                cube_ ? CubeIndex(dots[x].colour) : colours_.NumberOf(dots[x].colour);
            if (number == ColourTable::kMost) {
                TurnToCube(y);
                return WriteIndices(dots, y);
            }
            row[x] = static_cast<std::uint8_t>(number);
        }
    }
    // The rows above `y` named colours of a table that is full.
    void TurnToCube(std::int32_t y) {
        cube_ = true;
        WriteHeader(CubePalette());
        std::array<std::uint8_t, ColourTable::kMost> indices{};
        const auto& colours = colours_.Colours();
        std::transform(colours.begin(), colours.end(), indices.begin(), CubeIndex);
        for (std::int32_t above = 0; above < y; ++above) {
            std::uint8_t* const row = RowAt(above);
            std::transform(row, row + width_, row,
                           [&](std::uint8_t number) { return indices[number]; });
        }
    }
    void WriteColours(const BandDot* dots, std::int32_t y) {
        std::uint8_t* row = RowAt(y);
        const BandDot* const last = dots + width_ - 1;
        // A whole word is stored for each dot, of which the next replaces the last byte.
        for (; dots != last; ++dots, row += 3) {
            const std::uint32_t colour = dots->colour;
            for (unsigned byte = 0; byte < 4; ++byte) {
                row[byte] = static_cast<std::uint8_t>(colour >> (8 * byte));
            }
        }
        for (unsigned byte = 0; byte < 3; ++byte) {
            row[byte] = static_cast<std::uint8_t>(last->colour >> (8 * byte));
        }
    }

    std::int32_t width_;
    std::int32_t height_;
    int bits_;
    std::vector<std::uint8_t> packed_;
    std::uint8_t* rows_ = nullptr;
    ColourTable colours_;
    bool cube_ = false;
};

}  // namespace

}  // namespace qm::bitmap

namespace qm {

std::vector<std::uint8_t> DrawBitmap(const PageSource& page, const PageOptions& options, int bits) {
    using namespace bitmap;
    PageOptions drawing = options;
    drawing.smooth = bits == 24;
    const PageRaster raster = RasterOf(page, drawing, "HP-RTL", kMaxDotsInMemory);
    BitmapWriter writer(raster, bits);
    DrawBands(
        page, drawing, raster, [&](const Band& band) { writer.Take(band); },
        BandBytesFor(page, drawing, raster));
    return writer.Finish();
}

}  // namespace qm
