#include "render/bitmap/picture_row.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;

void AddTo(RowSum& sum, std::uint32_t dot, std::uint64_t weight) {
    sum.red += (dot >> 16) * weight;
    sum.green += (dot >> 8 & 255) * weight;
    sum.blue += (dot & 255) * weight;
    sum.weight += weight;
}

std::uint32_t OfEntry(PaletteEntry entry) {
    return std::uint32_t{entry.red} << 16 | std::uint32_t{entry.green} << 8 | entry.blue;
}

std::uint32_t BitAt(const std::uint8_t* row, std::int32_t x) {
    return row[x >> 3] >> (7 - (x & 7)) & 1U;
}

// Ones among bits `first` to `end` - 1.
std::uint32_t OnesIn(const std::uint8_t* row, std::int32_t first, std::int32_t end) {
    std::uint32_t ones = 0;
    for (std::int32_t x = first; x < end;) {
        const std::int32_t bit = x & 7;
        const std::int32_t count = std::min(8 - bit, end - x);
        const std::uint32_t bits = (row[x >> 3] >> (8 - bit - count)) & ((1U << count) - 1);
        ones += static_cast<std::uint32_t>(__builtin_popcount(bits));
        x += count;
    }
    return ones;
}

}  // namespace

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
    share.whole = count == 1 ? share.firstWeight
                             : share.firstWeight + share.lastWeight +
                                   256 * static_cast<std::uint32_t>(count - 2);
    // At the picture's border the dot is covered in part.
    if (high - low < std::abs(perDot_) * 0.999) {
        share.whole = std::max(share.whole,
                               static_cast<std::uint32_t>(RoundToInt32(std::abs(perDot_) * 256.0)));
    }
    if (share.whole == 0) share.end = share.first;
    return share;
}

const std::uint32_t* PictureDots::Colours(const PackedBitmapView& picture) {
    if (!hasColours_) {
        for (std::uint32_t i = 0; i < colours_.size(); ++i)
            colours_[i] = OfEntry(picture.Colour(i));
        hasColours_ = true;
    }
    return colours_.data();
}

std::uint32_t PictureDots::Dot(const PackedBitmapView& picture, std::int32_t x, std::int32_t y) {
    const std::uint8_t* const row = picture.RowFromTop(y);
    const auto column = static_cast<std::size_t>(x);
    const auto bits = static_cast<std::size_t>(picture.Bits());
    if (bits == 1 || bits == 2 || bits == 4 || bits == 8) {
        const std::size_t at = column * bits;
        const unsigned shift = static_cast<unsigned>(8 - bits - at % 8);
        return Colours(picture)[(row[at / 8] >> shift) & ((1U << bits) - 1)];
    }
    if (bits == 24 || bits == 32) {
        const std::uint8_t* const dot = row + column * (bits / 8);
        return std::uint32_t{dot[2]} << 16 | std::uint32_t{dot[1]} << 8 | dot[0];
    }
    if (bits == 16) {
        const unsigned pair = row[2 * column] | static_cast<unsigned>(row[2 * column + 1]) << 8;
        const auto wide = [](unsigned five) { return (five & 31) << 3 | (five & 31) >> 2; };
        return wide(pair >> 10) << 16 | wide(pair >> 5) << 8 | wide(pair);
    }
    return kWhite;
}

RowSum PictureRow::AddBits(const PictureShare& share, bool whiteIsClear) const {
    std::uint64_t ones = std::uint64_t{BitAt(row_, share.first)} * share.firstWeight;
    std::uint64_t all = share.firstWeight;
    const std::int32_t last = share.end - 1;
    if (last > share.first) {
        ones += std::uint64_t{BitAt(row_, last)} * share.lastWeight;
        ones += std::uint64_t{256} * OnesIn(row_, share.first + 1, last);
        all +=
            share.lastWeight + std::uint64_t{256} * static_cast<unsigned>(last - share.first - 1);
    }
    RowSum sum;
    if (!whiteIsClear || colours_[1] != kWhite) AddTo(sum, colours_[1], ones);
    if (!whiteIsClear || colours_[0] != kWhite) AddTo(sum, colours_[0], all - ones);
    return sum;
}

RowSum PictureRow::AddColours(const PictureShare& share, bool whiteIsClear) const {
    RowSum sum;
    const std::uint8_t* dot = row_ + std::ptrdiff_t{3} * share.first;
    for (std::int32_t x = share.first; x < share.end; ++x, dot += 3) {
        if (whiteIsClear && dot[0] == 255 && dot[1] == 255 && dot[2] == 255) continue;
        const std::uint64_t weight = share.WeightOf(x);
        sum.red += dot[2] * weight;
        sum.green += dot[1] * weight;
        sum.blue += dot[0] * weight;
        sum.weight += weight;
    }
    return sum;
}

RowSum PictureRow::AddDots(const PictureShare& share, bool whiteIsClear) const {
    RowSum sum;
    for (std::int32_t x = share.first; x < share.end; ++x) {
        const std::uint32_t dot = Dot(x);
        if (!whiteIsClear || dot != kWhite) AddTo(sum, dot, share.WeightOf(x));
    }
    return sum;
}

}  // namespace qm::bitmap
