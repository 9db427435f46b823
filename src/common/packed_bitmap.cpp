// See packed_bitmap.h.
#include "common/packed_bitmap.h"

#include <cstring>

#include "common/numbers.h"

namespace qm {

namespace {

// Offsets inside the 40-byte header.
enum HeaderOffset : std::size_t {
    kSize = 0,
    kWidth = 4,
    kHeight = 8,
    kPlanes = 12,
    kBitCount = 14,
    kCompression = 16,
    kImageSize = 20,
    kColoursUsed = 32,
    kColoursImportant = 36,
};

constexpr std::int64_t kLargestImage = std::int64_t{1} << 31;

void Put16(std::uint8_t* to, std::uint32_t value) {
    to[0] = static_cast<std::uint8_t>(value);
    to[1] = static_cast<std::uint8_t>(value >> 8);
}

void Put32(std::uint8_t* to, std::uint32_t value) {
    Put16(to, value);
    Put16(to + 2, value >> 16);
}

std::uint32_t Get16(const std::uint8_t* from) {
    return from[0] | (static_cast<std::uint32_t>(from[1]) << 8);
}

std::uint32_t Get32(const std::uint8_t* from) { return Get16(from) | (Get16(from + 2) << 16); }

// Five bits stretched to eight, so that 31 becomes 255.
std::uint8_t FiveToEight(std::uint32_t value) {
    return static_cast<std::uint8_t>((value << 3) | (value >> 2));
}

}  // namespace

std::int64_t PackedStride(std::int64_t width, int bits) {
    return width < 1 ? 0 : (width * bits + 31) / 32 * 4;
}

std::int64_t PackedRowBytes(std::int64_t width, int bits) {
    return width < 1 ? 0 : (width * bits + 7) / 8;
}

std::uint32_t PackedColourCount(int bits) {
    return bits >= 0 && bits <= 8 ? std::uint32_t{1} << bits : 0;
}

std::optional<std::size_t> PackedBitmapSize(std::int32_t width, std::int32_t height, int bits) {
    if (width < 1 || height < 1 || bits < 1 || bits > 255) return std::nullopt;
    const auto image = CheckedBytes(PackedStride(width, bits), height, kLargestImage);
    if (!image) return std::nullopt;
    return kPackedHeaderBytes + sizeof(PaletteEntry) * PackedColourCount(bits) + *image;
}

std::uint8_t* WritePackedHeader(std::uint8_t* block, std::int32_t width, std::int32_t height,
                                int bits, const PaletteEntry* palette) {
    const std::uint32_t colours = PackedColourCount(bits);
    std::memset(block, 0, kPackedHeaderBytes);
    Put32(block + kSize, kPackedHeaderBytes);
    Put32(block + kWidth, static_cast<std::uint32_t>(width));
    Put32(block + kHeight, static_cast<std::uint32_t>(height));
    Put16(block + kPlanes, 1);
    Put16(block + kBitCount, static_cast<std::uint32_t>(bits));
    Put32(block + kImageSize, static_cast<std::uint32_t>(PackedStride(width, bits) * height));
    Put32(block + kColoursUsed, colours);
    Put32(block + kColoursImportant, colours);
    std::uint8_t* table = block + kPackedHeaderBytes;
    for (std::uint32_t i = 0; palette != nullptr && i < colours; ++i) {
        const PaletteEntry entry{palette[i].blue, palette[i].green, palette[i].red, 0};
        std::memcpy(table + i * sizeof(entry), &entry, sizeof(entry));
    }
    return table + colours * sizeof(PaletteEntry);
}

std::optional<PackedBitmapView> PackedBitmapView::Parse(const void* data, std::size_t size) {
    if (data == nullptr || size < kPackedHeaderBytes) return std::nullopt;
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    // A later header version is longer and begins with the same fields.
    const std::size_t headerBytes = Get32(bytes + kSize);
    if (headerBytes < kPackedHeaderBytes || headerBytes > size) return std::nullopt;
    if (Get16(bytes + kPlanes) != 1 || Get32(bytes + kCompression) != 0) return std::nullopt;

    PackedBitmapView view;
    view.width_ = static_cast<std::int32_t>(Get32(bytes + kWidth));
    const auto height = static_cast<std::int32_t>(Get32(bytes + kHeight));
    view.topDown_ = height < 0;
    view.height_ = view.topDown_ ? WrapNegate(height) : height;
    view.bits_ = static_cast<int>(Get16(bytes + kBitCount));
    if (view.width_ < 1 || view.height_ < 1 || view.bits_ < 1 || view.bits_ > 255) {
        return std::nullopt;
    }
    view.colourCount_ = Get32(bytes + kColoursUsed);
    const std::uint32_t fullTable = PackedColourCount(view.bits_);
    if (fullTable != 0 && view.colourCount_ > fullTable) return std::nullopt;
    // By the format's own rule 0 stands for the full table.
    if (view.colourCount_ == 0) view.colourCount_ = fullTable;

    view.stride_ = static_cast<std::size_t>(PackedStride(view.width_, view.bits_));
    view.rowBytes_ = static_cast<std::size_t>(PackedRowBytes(view.width_, view.bits_));
    std::size_t left = size - headerBytes;
    if (view.colourCount_ > left / sizeof(PaletteEntry)) return std::nullopt;
    left -= view.colourCount_ * sizeof(PaletteEntry);
    if (static_cast<std::size_t>(view.height_) > left / view.stride_) return std::nullopt;
    view.colours_ = bytes + headerBytes;
    view.pixels_ = view.colours_ + view.colourCount_ * sizeof(PaletteEntry);
    return view;
}

PaletteEntry PackedBitmapView::Colour(std::uint32_t index) const {
    PaletteEntry entry;
    if (index < colourCount_) {
        std::memcpy(&entry, colours_ + index * sizeof(entry), sizeof(entry));
    }
    return entry;
}

const std::uint8_t* PackedBitmapView::StoredRow(std::int32_t stored) const {
    return pixels_ + static_cast<std::size_t>(stored) * stride_;
}

const std::uint8_t* PackedBitmapView::RowFromTop(std::int32_t y) const {
    return StoredRow(topDown_ ? y : height_ - 1 - y);
}

void PackedBitmapView::IndexedRowToRgb(const std::uint8_t* row, std::uint8_t* rgb) const {
    std::uint8_t table[256][3] = {};
    for (std::uint32_t i = 0; i < colourCount_; ++i) {
        const PaletteEntry colour = Colour(i);
        table[i][0] = colour.red;
        table[i][1] = colour.green;
        table[i][2] = colour.blue;
    }
    const unsigned depth = static_cast<unsigned>(bits_);
    const unsigned mask = (1U << depth) - 1;
    unsigned shift = 8;  // position of the next pixel's lowest bit in *row, from the high end
    for (std::int32_t x = 0; x < width_; ++x, rgb += 3) {
        shift -= depth;
        std::memcpy(rgb, table[(*row >> shift) & mask], 3);
        if (shift == 0) {
            shift = 8;
            ++row;
        }
    }
}

void PackedBitmapView::RowToRgb(std::int32_t y, std::uint8_t* rgb) const {
    const std::uint8_t* row = RowFromTop(y);
    const auto width = static_cast<std::size_t>(width_);
    switch (bits_) {
        case 1:
        case 2:
        case 4:
        case 8:
            IndexedRowToRgb(row, rgb);
            return;
        case 16:
            for (std::size_t x = 0; x < width; ++x, row += 2, rgb += 3) {
                const std::uint32_t pixel = Get16(row);
                rgb[0] = FiveToEight((pixel >> 10) & 31);
                rgb[1] = FiveToEight((pixel >> 5) & 31);
                rgb[2] = FiveToEight(pixel & 31);
            }
            return;
        case 24:
        case 32: {
            const std::size_t step = static_cast<std::size_t>(bits_) / 8;
            for (std::size_t x = 0; x < width; ++x, row += step, rgb += 3) {
                rgb[0] = row[2];
                rgb[1] = row[1];
                rgb[2] = row[0];
            }
            return;
        }
        default:
            std::memset(rgb, 255, width * 3);
    }
}

}  // namespace qm
