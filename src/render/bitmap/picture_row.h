// Rows of a packed bitmap as sums: which of a picture's dots a dot of the page takes in, and what
// they add up to. Test: tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/packed_bitmap.h"

namespace qm::bitmap {

// The picture's columns (or rows) under one column (or row) of the page: all of them weigh 256 but
// the first and the last, of which a part may lie outside.
struct PictureShare {
    std::int32_t first = 0;
    std::int32_t end = 0;
    std::uint32_t firstWeight = 256;
    std::uint32_t lastWeight = 256;
    std::uint32_t whole = 0;  // what all would weigh if the page's dot were covered whole

    bool IsEmpty() const { return first >= end; }
    std::uint32_t WeightOf(std::int32_t index) const {
        if (index == first) return firstWeight;
        return index == end - 1 ? lastWeight : 256;
    }
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

// Single dots of a picture, 0x00RRGGBB, of any depth that RowToRgb knows.
class PictureDots {
  public:
    std::uint32_t Dot(const PackedBitmapView& picture, std::int32_t x, std::int32_t y);
    // The colours of a picture of up to 8 bits.
    const std::uint32_t* Colours(const PackedBitmapView& picture);

  private:
    std::array<std::uint32_t, 256> colours_{};
    bool hasColours_ = false;
};

struct RowSum {
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
    std::uint64_t weight = 0;  // of the dots that are not clear
};

// One row of a picture, read where it lies.
class PictureRow {
  public:
    PictureRow(const PackedBitmapView& picture, std::int32_t y, PictureDots& dots)
        : picture_(picture), y_(y), row_(picture.RowFromTop(y)), dots_(dots) {
        if (picture.Bits() <= 8) colours_ = dots.Colours(picture);
    }

    std::uint32_t Dot(std::int32_t x) const { return dots_.Dot(picture_, x, y_); }
    RowSum Add(const PictureShare& share, bool whiteIsClear) const {
        if (picture_.Bits() == 1) return AddBits(share, whiteIsClear);
        if (picture_.Bits() == 24) return AddColours(share, whiteIsClear);
        return AddDots(share, whiteIsClear);
    }

  private:
    RowSum AddBits(const PictureShare& share, bool whiteIsClear) const;
    RowSum AddColours(const PictureShare& share, bool whiteIsClear) const;
    RowSum AddDots(const PictureShare& share, bool whiteIsClear) const;

    const PackedBitmapView& picture_;
    std::int32_t y_;
    const std::uint8_t* row_;
    PictureDots& dots_;
    const std::uint32_t* colours_ = nullptr;
};

}  // namespace qm::bitmap
