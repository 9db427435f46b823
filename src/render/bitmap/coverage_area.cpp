#include "render/bitmap/coverage_area.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

constexpr std::int32_t kOne = 256;  // places of a dot
// What lies further out is moved here: no page is as large.
constexpr double kFarthest = 4194303.0;

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) {
    const std::int64_t quotient = a / b;
    return quotient * b > a ? quotient - 1 : quotient;
}

}  // namespace

CoverageArea::CoverageArea(std::int32_t width, std::int32_t rows, bool smooth)
    : width_(width),
      smooth_(smooth),
      // One sum behind the last dot, rounded up to whole blocks.
      stride_(static_cast<std::size_t>(width + 2 + kBlock - 1) / kBlock * kBlock),
      blockWords_((stride_ / kBlock + 63) / 64),
      rows_(static_cast<std::size_t>(rows)) {}

void CoverageArea::Start(const DotBox& bounds) {
    // Most pages have no areas.
    sums_.resize(stride_ * rows_);
    blocks_.resize(blockWords_ * rows_);
    bounds_ = bounds;
    firstRow_ = bounds.bottom;
    endRow_ = bounds.top;
}

CoverageArea::FixedPoint CoverageArea::Fixed(PointD point) const {
    return {RoundToInt32(std::clamp(point.x, -kFarthest, kFarthest) * kOne),
            RoundToInt32(std::clamp(point.y, -kFarthest, kFarthest) * kOne)};
}

void CoverageArea::AddEdge(PointD from, PointD to) { AddFixed(Fixed(from), Fixed(to)); }

void CoverageArea::AddRing(const PointD* points, std::size_t count) {
    if (count < 3) return;
    ring_.clear();
    double area = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        ring_.push_back(Fixed(points[i]));
        const PointD& next = points[i + 1 < count ? i + 1 : 0];
        area += (points[i].x - points[0].x) * (next.y - points[0].y) -
                (next.x - points[0].x) * (points[i].y - points[0].y);
    }
    const bool reversed = area > 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const FixedPoint next = ring_[i + 1 < count ? i + 1 : 0];
        if (reversed) {
            AddFixed(next, ring_[i]);
        } else {
            AddFixed(ring_[i], next);
        }
    }
}

void CoverageArea::AddFixed(FixedPoint from, FixedPoint to) {
    if (from.y == to.y) return;
    const bool down = from.y < to.y;
    const FixedPoint upper = down ? from : to;
    const FixedPoint lower = down ? to : from;
    if (lower.y <= bounds_.top * kOne || upper.y >= bounds_.bottom * kOne) return;
    const std::int32_t sign = down ? 1 : -1;
    if (smooth_) {
        AddSmooth(upper, lower, sign);
    } else {
        AddHard(upper, lower, sign);
    }
}

void CoverageArea::Touch(std::int32_t row, std::int32_t first, std::int32_t last) {
    std::uint64_t* const blocks = BlocksOf(row);
    for (std::int32_t block = first >> kBlockShift; block <= last >> kBlockShift; ++block) {
        blocks[block >> 6] |= std::uint64_t{1} << (block & 63);
    }
}

void CoverageArea::AddSmooth(FixedPoint from, FixedPoint to, std::int32_t sign) {
    const std::int64_t width = std::int64_t{to.x} - from.x;
    const std::int64_t height = std::int64_t{to.y} - from.y;
    const std::int32_t firstRow = std::max(from.y >> 8, bounds_.top);
    const std::int32_t lastRow = std::min((to.y - 1) >> 8, bounds_.bottom - 1);
    firstRow_ = std::min(firstRow_, firstRow);
    endRow_ = std::max(endRow_, lastRow + 1);
    // x where the edge enters the row, rounded down; the remainder is carried from row to row, so
    // that each x is what a division would give.
    std::int32_t y = std::max(from.y, firstRow * kOne);
    std::int64_t scaled = width * (std::int64_t{y} - from.y);
    std::int64_t offset = FloorDivide(scaled, height);
    std::int64_t remainder = scaled - offset * height;
    const std::int64_t step = FloorDivide(width * kOne, height);
    const std::int64_t stepRemainder = width * kOne - step * height;
    for (std::int32_t row = firstRow; row <= lastRow; ++row) {
        const std::int32_t end = std::min((row + 1) * kOne, to.y);
        const auto x = static_cast<std::int32_t>(from.x + offset);
        if (end == to.y) {
            offset = width;
        } else if (end - y == kOne) {
            offset += step;
            remainder += stepRemainder;
            if (remainder >= height) {
                ++offset;
                remainder -= height;
            }
        } else {
            scaled = width * (std::int64_t{end} - from.y);
            offset = FloorDivide(scaled, height);
            remainder = scaled - offset * height;
        }
        AddInRow(row, x, static_cast<std::int32_t>(from.x + offset), y & 255, end - row * kOne,
                 sign);
        y = end;
    }
}

void CoverageArea::AddInRow(std::int32_t row, std::int32_t fromX, std::int32_t toX,
                            std::int32_t fromY, std::int32_t toY, std::int32_t sign) {
    // What is left of the page covers its dots all the same; what is right of it covers none.
    fromX = std::clamp(fromX, 0, width_ * kOne);
    toX = std::clamp(toX, 0, width_ * kOne);
    std::int32_t* const sums = SumsOf(row);
    const std::int32_t height = toY - fromY;
    const std::int32_t first = std::min(fromX, toX) >> 8;
    const std::int32_t last = std::max(fromX, toX) >> 8;
    Touch(row, first, last + 1);
    if (first == last) {
        return AddCell(sums, first, sign * height, (fromX & 255) + (toX & 255));
    }
    // From left to right: the direction does not change what lies to the right of the edge.
    const std::int32_t left = std::min(fromX, toX);
    const std::int32_t right = std::max(fromX, toX);
    const auto width = static_cast<std::uint64_t>(std::max(right - left, 1));
    const std::uint64_t slope = (static_cast<std::uint64_t>(height) << 32) / width;
    std::int32_t x = left;
    std::int32_t done = 0;
    for (std::int32_t column = first; column <= last; ++column) {
        const std::int32_t end = std::min((column + 1) * kOne, right);
        const std::int32_t upTo =
            end == right
                ? height
                : static_cast<std::int32_t>((static_cast<std::uint64_t>(end - left) * slope) >> 32);
        AddCell(sums, column, sign * (upTo - done), (x - column * kOne) + (end - column * kOne));
        done = upTo;
        x = end;
    }
}

void CoverageArea::AddHard(FixedPoint from, FixedPoint to, std::int32_t sign) {
    const std::int64_t width = std::int64_t{to.x} - from.x;
    const std::int64_t height = std::int64_t{to.y} - from.y;
    // Rows whose centres lie at or below the upper end and above the lower end.
    const std::int32_t firstRow = std::max((from.y + 127) >> 8, bounds_.top);
    const std::int32_t endRow = std::min((to.y + 127) >> 8, bounds_.bottom);
    if (firstRow >= endRow) return;
    firstRow_ = std::min(firstRow_, firstRow);
    endRow_ = std::max(endRow_, endRow);
    for (std::int32_t row = firstRow; row < endRow; ++row) {
        const std::int64_t below = std::int64_t{row} * kOne + kOne / 2 - from.y;
        const std::int64_t x = from.x + FloorDivide(width * below, height);
        const auto column = static_cast<std::int32_t>(
            std::clamp<std::int64_t>((x + 127) >> 8, 0, std::int64_t{width_}));
        std::int32_t& sum = SumsOf(row)[column];
        sum = Sum(sum, sign * kWhole);
        Touch(row, column, column);
    }
}

}  // namespace qm::bitmap
