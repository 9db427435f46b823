// PatternInk: how much ink of an endlessly repeated fill pattern lies in a rectangle, in the same
// time for any pattern and any rectangle. Test: tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/display_list.h"

namespace qm::bitmap {

class PatternInk {
  public:
    // `pattern` is drawable (fill_pattern.h); its bits must outlive this.
    explicit PatternInk(const FillPattern& pattern);

    // Whether the pattern's dot at (x, y) is ink, y down.
    bool At(double x, double y) const;
    // Coverage 0 to 255 of the rectangle between (x, y) and (x + width, y + height), in the
    // pattern's dots; the sides are above 0.
    unsigned Coverage(double x, double y, double width, double height) const;

  private:
    // Ink between the origin and (x, y).
    double InkUpTo(double x, double y) const;
    double SumAt(std::int32_t x, std::int32_t y) const {
        return sums_[static_cast<std::size_t>(y) * static_cast<std::size_t>(pattern_.width + 1) +
                     static_cast<std::size_t>(x)];
    }

    FillPattern pattern_;
    // Dots of ink left of and above each corner of a dot.
    std::vector<double> sums_;
};

}  // namespace qm::bitmap
