#include "render/page_bitmap.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <unordered_map>

#include "common/packed_bitmap.h"
#include "render/cairo_image.h"

namespace qm {

namespace {

// 0x00RRGGBB.
std::uint32_t DotAt(const std::uint8_t* row, int x) {
    std::uint32_t dot = 0;
    std::memcpy(&dot, row + std::ptrdiff_t{4} * x, sizeof dot);
    return dot & 0xFFFFFF;
}

PaletteEntry EntryOf(std::uint32_t dot) {
    return {static_cast<std::uint8_t>(dot), static_cast<std::uint8_t>(dot >> 8),
            static_cast<std::uint8_t>(dot >> 16), 0};
}

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

// The colours of an image in the order of their first dot.
class ColourIndex {
  public:
    // Nothing when the image has more colours than a byte can name.
    static std::optional<ColourIndex> Of(const PageImage& image) {
        ColourIndex index;
        std::uint32_t last = ~0U;
        for (int y = 0; y < image.Height(); ++y) {
            const std::uint8_t* const row = image.Row(y);
            for (int x = 0; x < image.Width(); ++x) {
                const std::uint32_t dot = DotAt(row, x);
                if (dot == last) continue;
                last = dot;
                if (!index.Add(dot)) return std::nullopt;
            }
        }
        return index;
    }
    const Palette& Colours() const { return colours_; }
    std::uint8_t operator()(std::uint32_t dot) const { return numbers_.find(dot)->second; }

  private:
    bool Add(std::uint32_t dot) {
        const std::size_t next = numbers_.size();
        if (!numbers_.emplace(dot, static_cast<std::uint8_t>(next)).second) return true;
        if (next == colours_.size()) return false;
        colours_[next] = EntryOf(dot);
        return true;
    }

    std::unordered_map<std::uint32_t, std::uint8_t> numbers_;
    Palette colours_{};
};

// --------------------------------------------------------------------------------- 1 bit a dot

// Thresholds of ordered dithering: bit by bit from the mixed bits of x and y, the finest ones first
// (Bayer), so that the dots of each lightness lie as far apart as possible.
unsigned Threshold(int x, int y) {
    const auto column = static_cast<unsigned>(x);
    const auto row = static_cast<unsigned>(y);
    unsigned threshold = 0;
    for (unsigned bit = 0; bit < 3; ++bit) {
        threshold = threshold << 2 | ((column ^ row) >> bit & 1) << 1 | (row >> bit & 1);
    }
    return threshold;  // 0 to 63
}

// Weights of the components in lightness: ITU-R BT.601.
bool IsWhite(std::uint32_t dot, int x, int y) {
    const std::uint32_t lightness =
        (299 * (dot >> 16 & 255) + 587 * (dot >> 8 & 255) + 114 * (dot & 255)) / 1000;
    return lightness * 64 > Threshold(x, y) * 255 + 127;
}

// ----------------------------------------------------------------------------------------- rows

// Calls write(dot, x, y, row) for every dot with the row of the bitmap that it belongs to.
template <typename Write>
std::vector<std::uint8_t> Pack(const PageImage& image, int bits, const PaletteEntry* palette,
                               const Write& write) {
    const auto bytes = PackedBitmapSize(image.Width(), image.Height(), bits);
    if (!bytes) throw std::bad_alloc();
    std::vector<std::uint8_t> packed(*bytes);
    std::uint8_t* row =
        WritePackedHeader(packed.data(), image.Width(), image.Height(), bits, palette);
    for (int y = image.Height() - 1; y >= 0; --y) {
        const std::uint8_t* const source = image.Row(y);
        for (int x = 0; x < image.Width(); ++x) write(DotAt(source, x), x, y, row);
        row += PackedStride(image.Width(), bits);
    }
    return packed;
}

std::vector<std::uint8_t> PackBlackAndWhite(const PageImage& image) {
    const PaletteEntry palette[] = {{0, 0, 0, 0}, {255, 255, 255, 0}};
    return Pack(image, 1, palette, [](std::uint32_t dot, int x, int y, std::uint8_t* row) {
        if (IsWhite(dot, x, y)) row[x / 8] |= static_cast<std::uint8_t>(0x80U >> (x % 8));
    });
}

template <typename Index>
std::vector<std::uint8_t> PackIndexed(const PageImage& image, const Palette& palette,
                                      const Index& indexOf) {
    return Pack(image, 8, palette.data(),
                [&](std::uint32_t dot, int x, int, std::uint8_t* row) { row[x] = indexOf(dot); });
}

std::vector<std::uint8_t> PackColours(const PageImage& image) {
    return Pack(image, 24, nullptr, [](std::uint32_t dot, int x, int, std::uint8_t* row) {
        const PaletteEntry entry = EntryOf(dot);
        row += std::ptrdiff_t{3} * x;
        row[0] = entry.blue;
        row[1] = entry.green;
        row[2] = entry.red;
    });
}

}  // namespace

std::vector<std::uint8_t> DrawBitmap(const PageSource& page, const PageOptions& options, int bits) {
    const PageImage image = DrawPage(page, options, {"HP-RTL", bits == 24});
    if (bits == 1) return PackBlackAndWhite(image);
    if (bits != 8) return PackColours(image);
    const auto index = ColourIndex::Of(image);
    if (index) return PackIndexed(image, index->Colours(), *index);
    return PackIndexed(image, CubePalette(), CubeIndex);
}

}  // namespace qm
