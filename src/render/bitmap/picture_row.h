// What a dot of the page takes in of a picture: which columns and rows lie under it, the dots of a
// row, and what they look like on the paper. Test: tests/render/bitmap/picture_sampler_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/packed_bitmap.h"
#include "render/bitmap/blending.h"

namespace qm::bitmap {

// The picture's columns (or rows) under one column (or row) of the page: all of them weigh 256 but
// the first and the last, of which a part may lie outside.
struct PictureShare {
    std::int32_t first = 0;
    std::int32_t end = 0;
    std::uint32_t firstWeight = 256;
    std::uint32_t lastWeight = 256;
    std::uint32_t weight = 0;  // of all of them
    std::uint32_t whole = 0;   // what all would weigh if the page's dot were covered whole

    bool IsEmpty() const { return first >= end; }
    std::uint32_t WeightOf(std::int32_t index) const {
        if (index == first) return firstWeight;
        return index == end - 1 ? lastWeight : 256;
    }
    // Those from `from` to `to` - 1, of which there must be one; `whole` stays.
    PictureShare Within(std::int32_t from, std::int32_t to) const;
};

// From the page's columns to the picture's: page dot x reaches from perDot * x + offset to
// perDot * (x + 1) + offset, in either direction.
class PictureAxis {
  public:
    PictureAxis(double perDot, double offset, std::int32_t size)
        : perDot_(perDot), offset_(offset), size_(size) {}
    PictureShare ShareOf(std::int32_t x) const;

  private:
    double perDot_;
    double offset_;
    std::int32_t size_;
};

// Single dots of a picture, 0x00RRGGBB, of any depth that RowToRgb knows; others are white. Reads
// them where they lie.
class PictureDots {
  public:
    explicit PictureDots(const PackedBitmapView& picture);

    std::int32_t Width() const { return picture_.Width(); }
    std::int32_t Height() const { return picture_.Height(); }
    int Bits() const { return picture_.Bits(); }
    // The colours of a picture of up to 8 bits.
    const std::uint32_t* Colours() const { return colours_.data(); }
    const std::uint8_t* Row(std::int32_t y) const { return picture_.RowFromTop(y); }
    std::uint32_t At(std::int32_t x, std::int32_t y) const;
    // Calls use(dotAt), of which dotAt(x) is a dot of row `y`: a loop over the depths met most asks
    // for the depth once.
    template <class Use>
    void WithRow(std::int32_t y, Use use) const {
        const std::uint8_t* const row = Row(y);
        const std::uint32_t* const colours = colours_.data();
        switch (Bits()) {
            case 1:
                return use([=](std::int32_t x) { return colours[row[x >> 3] >> (~x & 7) & 1]; });
            case 4:
                return use(
                    [=](std::int32_t x) { return colours[row[x >> 1] >> (~x & 1) * 4 & 15]; });
            case 8:
                return use([=](std::int32_t x) { return colours[row[x]]; });
            case 24:
                return use([=](std::int32_t x) { return ColourAt(row + std::ptrdiff_t{3} * x); });
            default:
                return use([=](std::int32_t x) { return At(x, y); });
        }
    }

  private:
    static std::uint32_t ColourAt(const std::uint8_t* dot) {
        return std::uint32_t{dot[2]} << 16 | std::uint32_t{dot[1]} << 8 | dot[0];
    }

    const PackedBitmapView& picture_;
    std::array<std::uint32_t, 256> colours_{};
};

// What the dots of a picture look like on paper of one colour: combined with it bit by bit, white
// left out where it is clear.
class PictureInk {
  public:
    PictureInk(unsigned operation, bool whiteIsClear, std::uint32_t paper)
        : flipped_(Combine(operation, 0, paper)),
          kept_(flipped_ ^ Combine(operation, 0xFFFFFF, paper)),
          white_(whiteIsClear ? paper : flipped_ ^ kept_) {}

    std::uint32_t Of(std::uint32_t dot) const {
        return dot == 0xFFFFFF ? white_ : (dot & kept_) ^ flipped_;
    }
    // Whether all dots look like themselves.
    bool IsPlain() const { return flipped_ == 0 && kept_ == 0xFFFFFF && white_ == 0xFFFFFF; }

  private:
    std::uint32_t flipped_;
    std::uint32_t kept_;
    std::uint32_t white_;
};

}  // namespace qm::bitmap
