// Packed bitmaps: the one block of memory in which pictures travel between the raster decoder, the
// builder, the host, the writers and the export.
//
// Layout (a device-independent bitmap as Windows packs it): a 40-byte BITMAPINFOHEADER, the colour
// table of 4-byte entries, then the rows, each padded to a multiple of 4 bytes, bottom row first;
// all numbers little-endian. Entry points: PackedBitmapSize, WritePackedHeader for those who make
// one, PackedBitmapView::Parse for those who read one. Tests: tests/common/packed_bitmap_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace qm {

inline constexpr std::size_t kPackedHeaderBytes = 40;

// One entry of a colour table, in the order the block stores it.
struct PaletteEntry {
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;
    std::uint8_t reserved = 0;
};
static_assert(sizeof(PaletteEntry) == 4);

// Of 0x00RRGGBB.
inline PaletteEntry EntryOf(std::uint32_t colour) {
    return {static_cast<std::uint8_t>(colour), static_cast<std::uint8_t>(colour >> 8),
            static_cast<std::uint8_t>(colour >> 16), 0};
}

inline bool operator==(PaletteEntry a, PaletteEntry b) {
    return a.blue == b.blue && a.green == b.green && a.red == b.red && a.reserved == b.reserved;
}

// Bytes of one padded row of `width` pixels of `bits` bits (0 to 255); 0 for a width below 1.
std::int64_t PackedStride(std::int64_t width, int bits);

// Bytes of one row without its padding; the last byte may hold unused low bits.
std::int64_t PackedRowBytes(std::int64_t width, int bits);

// Entries of the colour table of a bitmap that this module makes: 2^bits up to 8 bits, else none.
std::uint32_t PackedColourCount(int bits);

// Bytes of a whole packed bitmap with a full colour table. Nothing when a side is not positive, the
// depth is outside 1 to 255 or the rows take more than 2 GiB.
std::optional<std::size_t> PackedBitmapSize(std::int32_t width, std::int32_t height, int bits);

// Writes header and colour table for a bottom-up bitmap and returns where its rows start. `block`
// holds PackedBitmapSize bytes, `palette` PackedColourCount entries (their reserved byte is written
// as 0; null leaves the table as it is). The rows are not touched.
std::uint8_t* WritePackedHeader(std::uint8_t* block, std::int32_t width, std::int32_t height,
                                int bits, const PaletteEntry* palette);

// A checked read-only view of a packed bitmap in somebody else's memory, which must outlive it.
// Once parsed, every row and every colour it hands out lies inside the block.
class PackedBitmapView {
  public:
    // Nothing when the header claims more than `size` bytes hold, is compressed, has no pixels, has
    // a depth outside 1 to 255 or more colours than its depth can name.
    static std::optional<PackedBitmapView> Parse(const void* data, std::size_t size);

    std::int32_t Width() const { return width_; }
    // Rows; positive also for a top-down block.
    std::int32_t Height() const { return height_; }
    int Bits() const { return bits_; }
    std::uint32_t ColourCount() const { return colourCount_; }
    // Bytes from one stored row to the next.
    std::size_t Stride() const { return stride_; }
    // Bytes of a row that hold pixels.
    std::size_t RowBytes() const { return rowBytes_; }
    // All rows with their padding, in stored order.
    const std::uint8_t* Pixels() const { return pixels_; }
    std::size_t PixelBytes() const { return stride_ * static_cast<std::size_t>(height_); }

    // Entry `index` of the colour table; black behind its end.
    PaletteEntry Colour(std::uint32_t index) const;
    // Row `stored` (0 to Height() - 1) as it lies in the block: normally the bottom row first.
    const std::uint8_t* StoredRow(std::int32_t stored) const;
    // Row `y` (0 to Height() - 1) counted from the top of the image.
    const std::uint8_t* RowFromTop(std::int32_t y) const;
    // Converts row `y` from the top to red, green, blue bytes; `rgb` holds 3 x Width() bytes.
    // Depths 1, 2, 4, 8, 16 (5-5-5), 24 and 32; any other depth gives a white row.
    void RowToRgb(std::int32_t y, std::uint8_t* rgb) const;

  private:
    PackedBitmapView() = default;
    void IndexedRowToRgb(const std::uint8_t* row, std::uint8_t* rgb) const;

    const std::uint8_t* colours_ = nullptr;
    const std::uint8_t* pixels_ = nullptr;
    std::size_t stride_ = 0;
    std::size_t rowBytes_ = 0;
    std::uint32_t colourCount_ = 0;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    int bits_ = 0;
    bool topDown_ = false;
};

}  // namespace qm
