// Column sums: what some rows of a picture add up to, column by column and each row by its weight,
// and what the columns under a dot of the page add up to then. One class for pictures of one bit a
// dot, one for all others; both hold sums of up to kMostRows rows in kMostColumns columns, so that
// a page's dot that takes in more of a picture is summed in pieces. Test:
// tests/render/bitmap/picture_sampler_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "render/bitmap/picture_row.h"

namespace qm::bitmap {

// So few that the products of weights and components of a share's part fit into 32 bits.
inline constexpr std::int32_t kMostColumns = 1024;
inline constexpr std::int32_t kMostRows = 64;

inline bool IsGrey(std::uint32_t colour) { return colour == (colour & 0xFF) * 0x010101; }

// Of one bit a dot: only ones are counted.
class BitSums {
  public:
    using Total = std::uint64_t;
    // What zeros and ones look like.
    struct Inks {
        Inks(const PictureDots& picture, const PictureInk& ink)
            : zero(ink.Of(picture.Colours()[0])),
              one(ink.Of(picture.Colours()[1])),
              areGrey(IsGrey(zero) && IsGrey(one)) {}
        std::uint32_t zero;
        std::uint32_t one;
        bool areGrey;
    };

    explicit BitSums(const PictureDots& picture) : picture_(picture) {}

    // Starts with the columns `from` to `to` - 1, at most kMostColumns.
    void Start(std::int32_t from, std::int32_t to);
    // Adds a row with a weight of up to 256.
    void Add(std::int32_t y, std::uint32_t weight, const PictureInk&);
    // To be called behind the last row. False when all is zero.
    bool Finish();
    // Adds the columns of a share, each by its weight.
    void AddTo(Total& total, const PictureShare& share) const {
        const std::uint32_t* const ends = &before_[static_cast<std::size_t>(share.first - from_)];
        const auto count = static_cast<std::size_t>(share.end - share.first);
        const std::uint64_t all = ends[count] - ends[0];
        const std::uint64_t first = ends[1] - ends[0];
        const std::uint64_t last = count == 1 ? 0 : ends[count] - ends[count - 1];
        total += 256 * all - (256 - share.firstWeight) * first - (256 - share.lastWeight) * last;
    }

  private:
    static constexpr std::size_t kBytes = kMostColumns / 8 + 1;  // begun bytes at both ends

    const PictureDots& picture_;
    std::int32_t from_ = 0;  // a multiple of 8
    std::size_t bytes_ = 0;
    bool isEmpty_ = true;                                 // so far only eights of bytes of zeros
    std::array<std::uint64_t, kBytes> counts_{};          // a byte a column: rows of weight 256
    std::array<std::uint16_t, 8 * kBytes> weighted_{};    // all rows, in the end
    std::array<std::uint32_t, 8 * kBytes + 1> before_{};  // sums of the columns before
};

// Sums of components.
struct ColourTotal {
    std::uint64_t blue = 0;
    std::uint64_t green = 0;
    std::uint64_t red = 0;
};

// Of any depth: the colours as they look on the paper are added.
class ColourSums {
  public:
    using Total = ColourTotal;
    // Of colours the ink is in the sums.
    struct Inks {
        Inks(const PictureDots&, const PictureInk&) {}
    };

    explicit ColourSums(const PictureDots& picture) : picture_(picture) {}

    void Start(std::int32_t from, std::int32_t to);
    void Add(std::int32_t y, std::uint32_t weight, const PictureInk& ink);
    static bool Finish() { return true; }
    void AddTo(Total& total, const PictureShare& share) const {
        const std::uint32_t* column = &sums_[3 * static_cast<std::size_t>(share.first - from_)];
        AddColumn(total, column, share.firstWeight);
        const std::int32_t count = share.end - share.first;
        if (count == 1) return;
        std::uint32_t blue = 0;
        std::uint32_t green = 0;
        std::uint32_t red = 0;
        for (std::int32_t i = 2; i < count; ++i) {
            column += 3;
            blue += column[0];
            green += column[1];
            red += column[2];
        }
        total.blue += std::uint64_t{blue} * 256;
        total.green += std::uint64_t{green} * 256;
        total.red += std::uint64_t{red} * 256;
        AddColumn(total, column + 3, share.lastWeight);
    }

  private:
    static void AddColumn(Total& total, const std::uint32_t* column, std::uint64_t weight) {
        total.blue += column[0] * weight;
        total.green += column[1] * weight;
        total.red += column[2] * weight;
    }

    const PictureDots& picture_;
    std::int32_t from_ = 0;
    std::int32_t columns_ = 0;
    std::array<std::uint32_t, std::size_t{3} * kMostColumns> sums_{};  // blue, green, red
    std::array<std::uint8_t, std::size_t{3} * kMostColumns> row_{};
};

}  // namespace qm::bitmap
