// Band: some neighbouring rows of a page while they are drawn, so that a page of any size takes the
// memory of a few bands. Test: tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qm::bitmap {

// One dot of a band.
struct BandDot {
    std::uint32_t colour = 0xFFFFFF;  // 0x00RRGGBB
    // Which stroke covered the dot last and how much of it: number << 8 | coverage. See
    // capsule_strokes.h.
    std::uint32_t mark = 0;
};

// Columns and rows of the page, the ends excluded.
struct DotBox {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
};

class Band {
  public:
    // Room for `rows` rows of `width` dots, both at least 1; none is there before Start. Throws
    // std::bad_alloc.
    Band(std::int32_t width, std::int32_t rows) : width_(width) { dots_.reserve(Dots(rows)); }

    // Makes it the bare rows `top` to `bottom` - 1 of the page, not more than there is room for, on
    // paper of that colour.
    void Start(std::int32_t top, std::int32_t bottom, std::uint32_t paper = 0xFFFFFF) {
        top_ = top;
        bottom_ = bottom;
        dots_.assign(Dots(bottom - top), BandDot{paper, 0});
    }
    // Forgets which strokes covered which dots.
    void ClearMarks() {
        for (BandDot& dot : dots_) dot.mark = 0;
    }

    std::int32_t Width() const { return width_; }
    std::int32_t Top() const { return top_; }
    std::int32_t Bottom() const { return bottom_; }
    DotBox Bounds() const { return {0, top_, width_, bottom_}; }
    // Row `y` of the page, which must lie in the band.
    BandDot* Row(std::int32_t y) { return dots_.data() + Offset(y); }
    const BandDot* Row(std::int32_t y) const { return dots_.data() + Offset(y); }

  private:
    std::size_t Dots(std::int32_t rows) const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(rows);
    }
    std::size_t Offset(std::int32_t y) const {
        return static_cast<std::size_t>(y - top_) * static_cast<std::size_t>(width_);
    }

    std::int32_t width_;
    std::int32_t top_ = 0;
    std::int32_t bottom_ = 0;
    std::vector<BandDot> dots_;
};

}  // namespace qm::bitmap
