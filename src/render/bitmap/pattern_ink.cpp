#include "render/bitmap/pattern_ink.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "render/fill_pattern.h"

namespace qm::bitmap {

namespace {

// The place of `value` inside its repetition of `side` dots.
double Inside(double value, std::int32_t side) {
    return std::clamp(value - std::floor(value / side) * side, 0.0, double(side));
}

}  // namespace

PatternInk::PatternInk(const FillPattern& pattern)
    : pattern_(pattern),
      sums_((static_cast<std::size_t>(pattern.width) + 1) *
            (static_cast<std::size_t>(pattern.height) + 1)) {
    const auto stride = static_cast<std::size_t>(pattern.width) + 1;
    for (std::int32_t y = 0; y < pattern.height; ++y) {
        double row = 0.0;
        for (std::int32_t x = 0; x < pattern.width; ++x) {
            row += IsInk(pattern, x, y) ? 1.0 : 0.0;
            sums_[static_cast<std::size_t>(y + 1) * stride + static_cast<std::size_t>(x + 1)] =
                SumAt(x + 1, y) + row;
        }
    }
}

bool PatternInk::At(double x, double y) const {
    const auto column = TruncateToInt32(Inside(x, pattern_.width));
    const auto row = TruncateToInt32(Inside(y, pattern_.height));
    return IsInk(pattern_, std::min(column, pattern_.width - 1),
                 std::min(row, pattern_.height - 1));
}

double PatternInk::InkUpTo(double x, double y) const {
    const double columns = std::floor(x / pattern_.width);
    const double rows = std::floor(y / pattern_.height);
    // Within one repetition the sum is linear between the corners of dots.
    const auto within = [&](double u, double v) {
        const std::int32_t column = std::min(TruncateToInt32(u), pattern_.width - 1);
        const std::int32_t row = std::min(TruncateToInt32(v), pattern_.height - 1);
        const double right = u - column;
        const double down = v - row;
        return (SumAt(column, row) * (1.0 - right) + SumAt(column + 1, row) * right) *
                   (1.0 - down) +
               (SumAt(column, row + 1) * (1.0 - right) + SumAt(column + 1, row + 1) * right) * down;
    };
    const double width = pattern_.width;
    const double height = pattern_.height;
    const double u = Inside(x, pattern_.width);
    const double v = Inside(y, pattern_.height);
    return columns * rows * SumAt(pattern_.width, pattern_.height) + columns * within(width, v) +
           rows * within(u, height) + within(u, v);
}

unsigned PatternInk::Coverage(double x, double y, double width, double height) const {
    // Counted from the repetition that holds the corner, where sums are small and exact.
    const double left = Inside(x, pattern_.width);
    const double top = Inside(y, pattern_.height);
    const double ink = InkUpTo(left + width, top + height) - InkUpTo(left, top + height) -
                       InkUpTo(left + width, top) + InkUpTo(left, top);
    return static_cast<unsigned>(std::clamp(RoundToInt32(ink / (width * height) * 255.0), 0, 255));
}

}  // namespace qm::bitmap
