#include "render/bitmap/picture_row.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

std::uint32_t OfEntry(PaletteEntry entry) {
    return std::uint32_t{entry.red} << 16 | std::uint32_t{entry.green} << 8 | entry.blue;
}

}  // namespace

PictureShare PictureShare::Within(std::int32_t from, std::int32_t to) const {
    PictureShare part = *this;
    part.first = std::max(first, from);
    part.end = std::min(end, to);
    part.firstWeight = WeightOf(part.first);
    part.lastWeight = WeightOf(part.end - 1);
    return part;
}

PictureShare PictureAxis::ShareOf(std::int32_t x) const {
    const double a = perDot_ * x + offset_;
    const double b = perDot_ * (x + 1.0) + offset_;
    const double low = std::clamp(std::min(a, b), 0.0, double(size_));
    const double high = std::clamp(std::max(a, b), 0.0, double(size_));
    PictureShare share;
    share.first = TruncateToInt32(low);
    share.end = TruncateToInt32(std::ceil(high));
    if (share.IsEmpty()) return share;
    const double firstPart = std::min(share.first + 1.0, high) - low;
    const double lastPart = high - std::max(share.end - 1.0, low);
    share.firstWeight = static_cast<std::uint32_t>(RoundToInt32(firstPart * 256.0));
    share.lastWeight = static_cast<std::uint32_t>(RoundToInt32(lastPart * 256.0));
    const std::int32_t count = share.end - share.first;
    share.weight = count == 1 ? share.firstWeight
                              : share.firstWeight + share.lastWeight +
                                    256 * static_cast<std::uint32_t>(count - 2);
    share.whole = share.weight;
    // At the picture's border the dot is covered in part.
    if (high - low < std::abs(perDot_) * 0.999) {
        share.whole = std::max(share.whole,
                               static_cast<std::uint32_t>(RoundToInt32(std::abs(perDot_) * 256.0)));
    }
    if (share.whole == 0) share.end = share.first;
    return share;
}

PictureDots::PictureDots(const PackedBitmapView& picture) : picture_(picture) {
    for (std::uint32_t i = 0; i < PackedColourCount(Bits()); ++i) {
        colours_[i] = OfEntry(picture.Colour(i));
    }
}

std::uint32_t PictureDots::At(std::int32_t x, std::int32_t y) const {
    const std::uint8_t* const row = Row(y);
    const auto column = static_cast<std::size_t>(x);
    const auto bits = static_cast<std::size_t>(Bits());
    if (bits == 1 || bits == 2 || bits == 4 || bits == 8) {
        const std::size_t at = column * bits;
        const unsigned shift = static_cast<unsigned>(8 - bits - at % 8);
        return colours_[(row[at / 8] >> shift) & ((1U << bits) - 1)];
    }
    if (bits == 24 || bits == 32) return ColourAt(row + column * (bits / 8));
    if (bits == 16) {
        const unsigned pair = row[2 * column] | static_cast<unsigned>(row[2 * column + 1]) << 8;
        const auto wide = [](unsigned five) { return (five & 31) << 3 | (five & 31) >> 2; };
        return wide(pair >> 10) << 16 | wide(pair >> 5) << 8 | wide(pair);
    }
    return 0xFFFFFF;
}

}  // namespace qm::bitmap
