// See column_sums.h. The loops over columns are written so that compilers make vectors of them.
#include "render/bitmap/column_sums.h"

#include <algorithm>
#include <cstring>

namespace qm::bitmap {

namespace {

static_assert(std::uint64_t{kMostRows} * 256 * 255 * kMostColumns <= UINT32_MAX);

// The eight bits of a byte, highest first, as eight bytes of 0 or 1.
std::array<std::uint64_t, 256> MakeSpreadTable() {
    std::array<std::uint64_t, 256> table{};
    for (unsigned value = 0; value < 256; ++value) {
        std::uint8_t bits[8];
        for (unsigned i = 0; i < 8; ++i) bits[i] = (value >> (7 - i)) & 1U;
        std::memcpy(&table[value], bits, sizeof bits);
    }
    return table;
}

bool IsZero(const std::uint8_t* eight) {
    std::uint64_t all = 0;
    std::memcpy(&all, eight, sizeof all);
    return all == 0;
}

// A product that fits into 16 bits.
template <class Sum>
void AddWeighted(const std::uint8_t* values, std::size_t count, std::uint32_t weight, Sum* sums) {
    const auto factor = static_cast<std::uint16_t>(weight);
    for (std::size_t i = 0; i < count; ++i) {
        sums[i] = static_cast<Sum>(sums[i] + static_cast<std::uint16_t>(values[i] * factor));
    }
}

}  // namespace

void BitSums::Start(std::int32_t from, std::int32_t to) {
    from_ = from / 8 * 8;
    bytes_ = static_cast<std::size_t>((to - from_ + 7) / 8);
    std::fill_n(counts_.data(), bytes_, 0);
    std::memset(weighted_.data(), 0, 8 * bytes_ * sizeof weighted_[0]);
    isEmpty_ = true;
}

void BitSums::Add(std::int32_t y, std::uint32_t weight, const PictureInk&) {
    static const std::array<std::uint64_t, 256> kSpread = MakeSpreadTable();
    const std::uint8_t* const row = picture_.Row(y) + from_ / 8;
    std::array<std::uint64_t, kBytes> spread;
    std::uint64_t* const to = weight == 256 ? counts_.data() : spread.data();
    if (weight != 256) std::fill_n(to, bytes_, 0);
    bool isPaper = true;
    for (std::size_t i = 0; i < bytes_; i += 8) {
        const std::size_t count = std::min<std::size_t>(8, bytes_ - i);
        // Most of a plan is paper.
        if (count == 8 && IsZero(row + i)) continue;
        isPaper = false;
        for (std::size_t k = i; k < i + count; ++k) to[k] += kSpread[row[k]];
    }
    isEmpty_ = isEmpty_ && isPaper;
    if (isPaper || weight == 256) return;
    AddWeighted(reinterpret_cast<const std::uint8_t*>(spread.data()), 8 * bytes_, weight,
                weighted_.data());
}

bool BitSums::Finish() {
    if (isEmpty_) return false;
    // Not elements of the arrays: builds that check each one would take seconds for a large
    // picture.
    const auto* const counts = reinterpret_cast<const std::uint8_t*>(counts_.data());
    std::uint16_t* const weighted = weighted_.data();
    std::uint16_t any = 0;
    for (std::size_t i = 0; i < 8 * bytes_; ++i) {
        weighted[i] = static_cast<std::uint16_t>(weighted[i] + (counts[i] << 8));
        any = static_cast<std::uint16_t>(any | weighted[i]);
    }
    if (any == 0) return false;
    std::uint32_t* before = before_.data();
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < 8 * bytes_; i += 8) {
        for (std::size_t k = i; k < i + 8; ++k) {
            *before++ = sum;
            sum += weighted[k];
        }
    }
    *before = sum;
    return true;
}

void ColourSums::Start(std::int32_t from, std::int32_t to) {
    from_ = from;
    columns_ = to - from;
    std::fill_n(sums_.data(), 3 * static_cast<std::size_t>(columns_), 0);
}

void ColourSums::Add(std::int32_t y, std::uint32_t weight, const PictureInk& ink) {
    const auto count = 3 * static_cast<std::size_t>(columns_);
    if (picture_.Bits() == 24 && ink.IsPlain()) {
        const std::uint8_t* const dots = picture_.Row(y) + 3 * static_cast<std::size_t>(from_);
        return AddWeighted(dots, count, weight, sums_.data());
    }
    std::uint8_t* to = row_.data();
    const bool isPlain = ink.IsPlain();
    picture_.WithRow(y, [&](auto dotAt) {
        for (std::int32_t x = from_; x < from_ + columns_; ++x, to += 3) {
            const std::uint32_t seen = isPlain ? dotAt(x) : ink.Of(dotAt(x));
            to[0] = static_cast<std::uint8_t>(seen);
            to[1] = static_cast<std::uint8_t>(seen >> 8);
            to[2] = static_cast<std::uint8_t>(seen >> 16);
        }
    });
    AddWeighted(row_.data(), count, weight, sums_.data());
}

}  // namespace qm::bitmap
