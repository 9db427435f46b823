// See bitmap_changes.h.
#include "raster/bitmap_changes.h"

#include <algorithm>
#include <vector>

#include "common/packed_bitmap.h"

namespace qm {

namespace {

// Pixels `i` and `width` - 1 - i of the row change places.
void ReversePixels(std::uint8_t* row, std::size_t width, int bits) {
    if (bits >= 8) {
        const std::size_t bytes = static_cast<std::size_t>(bits) / 8;
        for (std::size_t i = 0; i < width / 2; ++i) {
            std::uint8_t* const left = row + i * bytes;
            std::swap_ranges(left, left + bytes, row + (width - 1 - i) * bytes);
        }
        return;
    }
    const auto size = static_cast<unsigned>(bits);
    const unsigned mask = (1U << size) - 1U;
    const std::size_t perByte = 8 / size;
    std::vector<std::uint8_t> reversed((width + perByte - 1) / perByte);
    const auto shift = [&](std::size_t x) {
        return 8U - size * (static_cast<unsigned>(x % perByte) + 1U);
    };
    for (std::size_t x = 0; x < width; ++x) {
        const std::size_t from = width - 1 - x;
        const unsigned pixel = (unsigned{row[from / perByte]} >> shift(from)) & mask;
        std::uint8_t& to = reversed[x / perByte];
        to = static_cast<std::uint8_t>(to | (pixel << shift(x)));
    }
    std::copy(reversed.begin(), reversed.end(), row);
}

}  // namespace

void Invert(const GlobalBlock& block) {
    const GlobalView view(block.Get());
    const auto bitmap = PackedBitmapView::Parse(view.Data(), view.Size());
    if (!bitmap) return;
    const auto pixels = static_cast<std::size_t>(bitmap->Pixels() - view.Data());
    const bool table = bitmap->Bits() <= 8;
    const std::size_t from = table ? pixels - sizeof(PaletteEntry) * bitmap->ColourCount() : pixels;
    const std::size_t to = table ? pixels : pixels + bitmap->PixelBytes();
    for (std::size_t i = from; i < to; ++i) {
        const bool reserved = table && (i - from) % 4 == 3;
        if (!reserved) view.Data()[i] = static_cast<std::uint8_t>(~view.Data()[i]);
    }
}

void TurnOver(const GlobalBlock& block) {
    const GlobalView view(block.Get());
    const auto bitmap = PackedBitmapView::Parse(view.Data(), view.Size());
    if (!bitmap) return;
    const int bits = bitmap->Bits();
    if (bits != 1 && bits != 4 && bits != 8 && bits != 24) return;
    std::uint8_t* const pixels = view.Data() + (bitmap->Pixels() - view.Data());
    const std::size_t stride = bitmap->Stride();
    const auto height = static_cast<std::size_t>(bitmap->Height());
    for (std::size_t y = 0; y < height; ++y) {
        std::uint8_t* const row = pixels + y * stride;
        ReversePixels(row, static_cast<std::size_t>(bitmap->Width()), bits);
    }
    for (std::size_t y = 0; y < height / 2; ++y) {
        std::uint8_t* const row = pixels + y * stride;
        std::swap_ranges(row, row + stride, pixels + (height - 1 - y) * stride);
    }
}

}  // namespace qm
