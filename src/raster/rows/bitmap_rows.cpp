// See bitmap_rows.h.
#include "raster/rows/bitmap_rows.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "common/packed_bitmap.h"

namespace qm {

namespace {

using Byte = std::uint8_t;

// Columns and rows of a tile in a quarter turn: small enough for the first cache level, long enough
// that each bitmap row receives whole cache lines.
constexpr std::int64_t kTile = 64;

std::size_t StrideOf(std::int64_t width, int bits) {
    return static_cast<std::size_t>(PackedStride(width, bits));
}

// Copies three-byte pixels with the first and third byte exchanged.
void SwapPixels(const Byte* from, Byte* to, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i, from += 3, to += 3) {
        const Byte first = from[0];
        to[0] = from[2];
        to[1] = from[1];
        to[2] = first;
    }
}

// The bits of each byte reversed.
constexpr std::uint64_t ReverseBits(std::uint64_t v) {
    v = ((v & 0x0F0F0F0F0F0F0F0FU) << 4) | ((v >> 4) & 0x0F0F0F0F0F0F0F0FU);
    v = ((v & 0x3333333333333333U) << 2) | ((v >> 2) & 0x3333333333333333U);
    return ((v & 0x5555555555555555U) << 1) | ((v >> 1) & 0x5555555555555555U);
}

Byte SwapNibbles(Byte value) { return static_cast<Byte>((value << 4) | (value >> 4)); }

// Turns a block of 8 x 8 bits, its rows in the bytes from the highest down, on its main diagonal.
std::uint64_t TransposeBits(std::uint64_t x) {
    std::uint64_t t = (x ^ (x >> 7)) & 0x00AA00AA00AA00AAU;
    x ^= t ^ (t << 7);
    t = (x ^ (x >> 14)) & 0x0000CCCC0000CCCCU;
    x ^= t ^ (t << 14);
    t = (x ^ (x >> 28)) & 0x00000000F0F0F0F0U;
    return x ^ t ^ (t << 28);
}

// One byte of each of `count` rows, the first row in the byte `skip` places below the highest.
inline std::uint64_t GatherRows(const Byte* from, std::size_t stride, std::int64_t skip,
                                std::int64_t count) {
    std::uint64_t block = 0;
    for (std::int64_t i = 0; i < count; ++i, from += stride) block = (block << 8) | *from;
    return block << (8 * (8 - skip - count));
}

// Adds the bytes of a block, from the highest down, to `columns` rows of the bitmap: a byte of the
// bitmap may get its bits from two bands.
inline void ScatterColumns(std::uint64_t block, Byte* to, std::size_t stride,
                           std::int64_t columns) {
    for (std::int64_t i = 0; i < columns; ++i, to += stride) {
        *to = static_cast<Byte>(*to | static_cast<Byte>(block >> (56 - 8 * i)));
    }
}

// One bit a pixel, quarter turn: eight rows by eight columns at a time. Quirk: 270 degrees gives
// the same bitmap as 90.
void QuarterBits(const BitmapTarget& target, const RowBand& band) {
    const std::size_t stride = StrideOf(target.height, 1);
    const std::int64_t end = band.first + band.count;
    for (std::int64_t top = band.first; top < end;) {
        const std::int64_t tileEnd = std::min(end, (top / kTile + 1) * kTile);
        for (std::int64_t x = 0; x < target.width; x += 8) {
            const std::int64_t columns = std::min<std::int64_t>(8, target.width - x);
            for (std::int64_t y = top; y < tileEnd;) {
                const std::int64_t next = std::min(tileEnd, (y / 8 + 1) * 8);
                const Byte* from = band.Row(y - band.first) + x / 8;
                Byte* to = target.rows + static_cast<std::size_t>(x) * stride + y / 8;
                const std::uint64_t block = next - y == 8
                                                ? GatherRows(from, band.stride, 0, 8)
                                                : GatherRows(from, band.stride, y % 8, next - y);
                if (block != 0) ScatterColumns(TransposeBits(block), to, stride, columns);
                y = next;
            }
        }
        top = tileEnd;
    }
}

// Four bits a pixel, quarter turn. Only here 270 degrees reverses the order of the columns.
void QuarterNibbles(const BitmapTarget& target, const RowBand& band, bool reversed) {
    const std::size_t stride = StrideOf(target.height, 4);
    for (std::int64_t left = 0; left < target.width; left += kTile) {
        const std::int64_t right = std::min<std::int64_t>(left + kTile, target.width);
        for (std::int64_t i = 0; i < band.count; ++i) {
            const Byte* from = band.Row(i);
            const std::int64_t y = band.first + i;
            const bool high = y % 2 == 0;
            for (std::int64_t x = left; x < right; ++x) {
                const Byte pair = from[x / 2];
                const unsigned pixel = x % 2 == 0 ? pair >> 4U : pair & 15U;
                const std::int64_t row = reversed ? target.width - 1 - x : x;
                Byte& to = target.rows[static_cast<std::size_t>(row) * stride +
                                       static_cast<std::size_t>(y / 2)];
                to = static_cast<Byte>(to | (high ? pixel << 4 : pixel));
            }
        }
    }
}

// One byte, or three with red and blue exchanged.
template <std::size_t kBytes>
void CopyPixel(const Byte* from, Byte* to) {
    to[0] = from[kBytes - 1];
    if (kBytes == 3) {
        to[1] = from[1];
        to[2] = from[0];
    }
}

// Whole bytes a pixel (`kBytes` 1, or 3 with red and blue exchanged), quarter turn. Quirk: 270
// degrees is the mapping of 90 without the last column, whose stored row stays zero.
template <std::size_t kBytes>
void QuarterPixels(const BitmapTarget& target, const RowBand& band, std::int64_t columns) {
    const std::size_t stride = StrideOf(target.height, static_cast<int>(kBytes) * 8);
    for (std::int64_t top = 0; top < band.count; top += kTile) {
        const std::int64_t bottom = std::min(top + kTile, band.count);
        for (std::int64_t left = 0; left < columns; left += kTile) {
            const std::int64_t right = std::min(left + kTile, columns);
            for (std::int64_t x = left; x < right; ++x) {
                const Byte* from = band.Row(top) + static_cast<std::size_t>(x) * kBytes;
                Byte* to = target.rows + static_cast<std::size_t>(x) * stride +
                           static_cast<std::size_t>(band.first + top) * kBytes;
                for (std::int64_t y = top; y < bottom; ++y, from += band.stride, to += kBytes) {
                    CopyPixel<kBytes>(from, to);
                }
            }
        }
    }
}

// Copies bytes in reversed order, eight at a time, each of them as change(them) makes it.
template <class Change>
void ReverseBytes(const Byte* from, Byte* to, std::size_t count, Change change) {
    const Byte* end = from + count;
    for (; count >= 8; count -= 8, to += 8) {
        end -= 8;
        std::uint64_t eight = 0;
        std::memcpy(&eight, end, 8);
        eight = change(__builtin_bswap64(eight));
        std::memcpy(to, &eight, 8);
    }
    for (; count > 0; --count) *to++ = static_cast<Byte>(change(*--end));
}

// A row of bits reversed; the unused ones behind the last pixel, which come first then, are shifted
// out.
void ReverseBitRow(const Byte* from, Byte* to, std::size_t bytes, unsigned unused) {
    ReverseBytes(from, to, bytes, ReverseBits);
    if (unused == 0) return;
    for (std::size_t k = 0; k + 1 < bytes; ++k) {
        to[k] = static_cast<Byte>(to[k] << unused | to[k + 1] >> (8 - unused));
    }
    to[bytes - 1] = static_cast<Byte>(to[bytes - 1] << unused);
}

// One row reversed; `width` pixels.
void ReverseRow(const Byte* from, Byte* to, std::int64_t width, int bits) {
    const auto pixels = static_cast<std::size_t>(width);
    if (bits == 1) {
        const std::size_t bytes = (pixels + 7) / 8;
        ReverseBitRow(from, to, bytes, static_cast<unsigned>(bytes * 8 - pixels));
    } else if (bits == 4) {
        // Quirk: whole bytes only, so the last pixel of an odd width is dropped.
        for (std::size_t k = 0; k < pixels / 2; ++k) to[k] = SwapNibbles(from[pixels / 2 - 1 - k]);
    } else if (bits == 8 || bits == 24) {
        // A reversed run of bytes is the pixels in reversed order, each with its bytes exchanged.
        ReverseBytes(from, to, pixels * static_cast<std::size_t>(bits / 8),
                     [](std::uint64_t eight) { return eight; });
    }
}

// 180 degrees: source row y goes to stored row y, which is upside down in a bottom-up bitmap.
void HalfTurn(const BitmapTarget& target, const RowBand& band) {
    const std::size_t stride = StrideOf(target.width, target.bits);
    for (std::int64_t i = 0; i < band.count; ++i) {
        Byte* to = target.rows + static_cast<std::size_t>(band.first + i) * stride;
        ReverseRow(band.Row(i), to, target.width, target.bits);
    }
}

void QuarterTurn(const BitmapTarget& target, const RowBand& band, bool is270) {
    const std::int64_t columns = is270 ? target.width - 1 : target.width;
    switch (target.bits) {
        case 1:
            QuarterBits(target, band);
            break;
        case 4:
            QuarterNibbles(target, band, is270);
            break;
        case 8:
            QuarterPixels<1>(target, band, columns);
            break;
        case 24:
            QuarterPixels<3>(target, band, columns);
            break;
        default:
            break;
    }
}

// The eight bits of a byte, highest first, as eight bytes of 0 or 1.
std::array<std::uint64_t, 256> MakeSpreadTable() {
    std::array<std::uint64_t, 256> table{};
    for (unsigned value = 0; value < 256; ++value) {
        Byte bits[8];
        for (unsigned i = 0; i < 8; ++i) bits[i] = (value >> (7 - i)) & 1U;
        std::memcpy(&table[value], bits, 8);
    }
    return table;
}

}  // namespace

void CopyUpright(const BitmapTarget& target, const RowBand& band) {
    if (band.data == nullptr) return;
    const std::size_t stride = StrideOf(target.width, target.bits);
    const std::int64_t usedBits = static_cast<std::int64_t>(target.width) * target.bits;
    const auto bytes = static_cast<std::size_t>((usedBits + 7) / 8);
    const unsigned unused = static_cast<unsigned>(static_cast<std::int64_t>(bytes) * 8 - usedBits);
    for (std::int64_t i = 0; i < band.count; ++i) {
        const std::int64_t stored = target.height - 1 - (band.first + i);
        Byte* to = target.rows + static_cast<std::size_t>(stored) * stride;
        if (target.bits == 24) {
            SwapPixels(band.Row(i), to, static_cast<std::size_t>(target.width));
        } else {
            std::memcpy(to, band.Row(i), bytes);
            if (unused != 0) to[bytes - 1] = static_cast<Byte>(to[bytes - 1] & (0xFFU << unused));
        }
    }
}

int RotateRows(const BitmapTarget& target, const RowBand& band, int angle) {
    if (target.rows == nullptr) return 0;
    if (angle != 90 && angle != 180 && angle != 270) return 0;
    if (band.data == nullptr) return 1;
    if (angle == 180) {
        HalfTurn(target, band);
    } else {
        QuarterTurn(target, band, angle == 270);
    }
    return 1;
}

std::int64_t PlaneBytes(std::int32_t width) { return (std::max<std::int64_t>(width, 0) + 7) / 8; }

void MergePlaneRow(const std::uint8_t* planes, std::uint8_t* row, std::int32_t width, int kind) {
    static const std::array<std::uint64_t, 256> kSpread = MakeSpreadTable();
    // Quirk: of four planes only three are merged, so their indexes stay below 8.
    const unsigned count = kind == kEightPlanes ? 8 : kind == kAllFourPlanes ? 4 : 3;
    const auto planeBytes = static_cast<std::size_t>(PlaneBytes(width));
    const auto pixels = static_cast<std::size_t>(width);
    for (std::size_t i = 0; i < planeBytes; ++i) {
        std::uint64_t indexes = 0;
        for (unsigned p = 0; p < count; ++p) indexes |= kSpread[planes[p * planeBytes + i]] << p;
        std::memcpy(row + i * 8, &indexes, std::min<std::size_t>(8, pixels - i * 8));
    }
}

}  // namespace qm
