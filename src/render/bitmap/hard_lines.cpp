#include "render/bitmap/hard_lines.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

// Dots around a line that are asked one by one; no fewer than the nine around a speck.
constexpr std::int64_t kFewDots = 9;
// Rows beyond the bounds that tell whether a speck shows.
constexpr std::int32_t kBeyond = 3;
// Squares of lengths that are none.
constexpr double kNothing = 1e-40;
// Lines that go down by less of their length have no sides to speak of.
constexpr double kFlattest = 1e-9;
// Rows between the sides alone for which stepping pays.
constexpr std::int32_t kFewestStraight = 3;
// Beyond any page.
constexpr double kFarthestRow = 1e6;
// Places along a row are counted in 1/2^32 dots while they are stepped.
constexpr double kPartsOfDot = 4294967296.0;
constexpr std::int64_t kAlmostDot = 0xFFFFFFFF;

// The first dot whose centre is at or behind `place`, and the one behind the last at or before it;
// from `low` to `high`, also for what is no number.
std::int32_t FirstAt(double place, std::int32_t low, std::int32_t high) {
    const double dot = std::min<double>(high, std::max<double>(low, place - 0.5));
    const std::int32_t whole = TruncateSmall(dot);
    return whole + static_cast<std::int32_t>(whole < dot);
}
std::int32_t EndAt(double place, std::int32_t low, std::int32_t high) {
    const double dot = std::min<double>(high, std::max<double>(low, place + 0.5));
    const std::int32_t whole = TruncateSmall(dot);
    return whole - static_cast<std::int32_t>(whole > dot);
}

// Without a branch, which nobody could predict.
void PutIf(bool drawn, const BandDot& ink, BandDot& dot) {
    std::uint64_t before = 0;
    std::uint64_t after = 0;
    static_assert(sizeof(BandDot) == sizeof before);
    std::memcpy(&before, &dot, sizeof before);
    std::memcpy(&after, &ink, sizeof after);
    before ^= (before ^ after) & (0 - std::uint64_t{drawn});
    std::memcpy(static_cast<void*>(&dot), &before, sizeof before);
}

}  // namespace

struct HardLines::Capsule {
    PointD upper;
    PointD lower;
    double square;  // of the half width
    // By so many rows the left side begins and ends later, the right one sooner.
    double shift = 0.0;
    double slope = 0.0;  // of x along y
    double side = 0.0;   // from the line to its sides, along a row

    Capsule(PointD from, PointD to, double halfWidth)
        : upper(from), lower(to), square(halfWidth * halfWidth) {
        if (upper.y > lower.y) std::swap(upper, lower);
        const PointD way = lower - upper;
        const double length = std::sqrt(way.x * way.x + way.y * way.y);
        if (!(way.y > kFlattest * length)) return;
        shift = way.x / length * halfWidth;
        slope = way.x / way.y;
        side = length / way.y * halfWidth;
    }
    double At(double y) const { return upper.x + (y - upper.y) * slope; }
};

void HardLines::Begin(double halfWidth, std::uint32_t colour) {
    ink_ = {colour, 0};
    if (halfWidth == halfWidth_) return;
    halfWidth_ = halfWidth;
    square_ = halfWidth * halfWidth;
    const double speck = std::max(0.0, 2.0 - 2.0 * halfWidth);
    speck_ = speck * speck;
}

void HardLines::Add(const PointD& from, const PointD& to) const {
    const DotBox box{FirstAt(std::min(from.x, to.x) - halfWidth_, bounds_.left, bounds_.right),
                     FirstAt(std::min(from.y, to.y) - halfWidth_, bounds_.top - kBeyond,
                             bounds_.bottom + kBeyond),
                     EndAt(std::max(from.x, to.x) + halfWidth_, bounds_.left, bounds_.right),
                     EndAt(std::max(from.y, to.y) + halfWidth_, bounds_.top - kBeyond,
                           bounds_.bottom + kBeyond)};
    if ((std::int64_t{box.right} - box.left) * (box.bottom - box.top) <= kFewDots) {
        return AddDots(from, to, box);
    }
    AddRows(from, to, std::max(box.top, bounds_.top), std::min(box.bottom, bounds_.bottom));
}

// ------------------------------------------------------------------------------------- short lines

void HardLines::AddDots(const PointD& from, const PointD& to, const DotBox& box) const {
    PointD way = to - from;
    const double length = way.x * way.x + way.y * way.y;  // everything is times the length
    double extent = length;
    double most = length * square_;
    if (!(length > kNothing)) {
        way = {1.0, 0.0};
        extent = 0.0;
        most = square_;
    }
    const BandDot ink = ink_;
    const double firstRight = box.left + 0.5 - from.x;
    bool shown = false;
    for (std::int32_t row = box.top; row < box.bottom; ++row) {
        const double down = row + 0.5 - from.y;
        const double downAlong = down * way.y;
        const double downAcross = down * way.x;
        const auto isDrawn = [=](double right) {
            const double along = right * way.x + downAlong;
            const double across = right * way.y - downAcross;
            const double beyond = along - std::min(extent, std::max(0.0, along));
            return across * across + beyond * beyond <= most;
        };
        double right = firstRight;
        if (row < bounds_.top || row >= bounds_.bottom) {
            for (std::int32_t x = box.left; x < box.right; ++x, right += 1.0) {
                shown = shown || isDrawn(right);
            }
            continue;
        }
        BandDot* const dots = band_.Row(row);
        for (std::int32_t x = box.left; x < box.right; ++x, right += 1.0) {
            const bool drawn = isDrawn(right);
            PutIf(drawn, ink, dots[x]);
            shown |= drawn;
        }
    }
    if (!shown && length < speck_) AddSpeck({(from.x + to.x) / 2.0, (from.y + to.y) / 2.0});
}

void HardLines::AddSpeck(PointD middle) const {
    if (!(middle.x >= bounds_.left && middle.x < bounds_.right && middle.y >= bounds_.top &&
          middle.y < bounds_.bottom)) {
        return;
    }
    band_.Row(TruncateSmall(middle.y))[TruncateSmall(middle.x)] = ink_;
}

// -------------------------------------------------------------------------------------- long lines

void HardLines::AddRows(const PointD& from, const PointD& to, std::int32_t top,
                        std::int32_t bottom) const {
    const Capsule line(from, to, halfWidth_);
    const double straightTop = line.upper.y + std::abs(line.shift);
    const double straightBottom = line.lower.y - std::abs(line.shift);
    const auto [left, right] = std::minmax(from.x, to.x);
    if (!(left - halfWidth_ >= bounds_.left && right + halfWidth_ <= bounds_.right &&
          straightBottom - straightTop >= kFewestStraight && line.upper.y > -kFarthestRow &&
          line.lower.y < kFarthestRow)) {
        return AddRoundRows(line, top, bottom);
    }
    constexpr auto kMost = static_cast<std::int32_t>(kFarthestRow);
    const std::int32_t first = FirstAt(straightTop, -kMost, kMost);
    const std::int32_t straightFrom = std::clamp(first, top, std::max(top, bottom));
    const std::int32_t straightEnd =
        std::clamp(EndAt(straightBottom, -kMost, kMost), straightFrom, std::max(top, bottom));
    AddRoundRows(line, top, straightFrom);
    AddStraightRows(line, first, straightFrom, straightEnd);
    AddRoundRows(line, straightEnd, bottom);
}

void HardLines::AddRoundRows(const Capsule& line, std::int32_t top, std::int32_t bottom) const {
    for (std::int32_t row = top; row < bottom; ++row) {
        const double middle = row + 0.5;
        double low = kPartsOfDot;
        double high = -kPartsOfDot;
        for (const PointD& end : {line.upper, line.lower}) {
            const double away = middle - end.y;
            const double square = line.square - away * away;
            if (!(square >= 0.0)) continue;
            const double half = std::sqrt(square);
            low = std::min(low, end.x - half);
            high = std::max(high, end.x + half);
        }
        const double at = line.At(middle);
        const auto isBeside = [&](double shift) {
            return middle >= line.upper.y + shift && middle <= line.lower.y + shift;
        };
        if (isBeside(line.shift)) low = std::min(low, at - line.side);
        if (isBeside(-line.shift)) high = std::max(high, at + line.side);
        if (!(low <= high)) continue;
        BandDot* const dots = band_.Row(row);
        const std::int32_t end = EndAt(high, bounds_.left, bounds_.right);
        for (std::int32_t x = FirstAt(low, bounds_.left, bounds_.right); x < end; ++x) {
            dots[x] = ink_;
        }
    }
}

// Places are those of the row `first` and so many steps, whatever the bounds are.
void HardLines::AddStraightRows(const Capsule& line, std::int32_t first, std::int32_t top,
                                std::int32_t bottom) const {
    if (top >= bottom) return;
    const double at = line.At(first + 0.5);
    const double low = (at - line.side - 0.5) * kPartsOfDot;
    const std::int64_t step = TruncateToInt64(line.slope * kPartsOfDot);
    const std::int64_t moved = step * (top - first);
    std::int64_t from = TruncateToInt64(low);
    if (static_cast<double>(from) < low) ++from;
    from += moved + kAlmostDot;
    std::int64_t end = TruncateToInt64((at + line.side + 0.5) * kPartsOfDot) + moved;
    const BandDot ink = ink_;
    const std::ptrdiff_t width = band_.Width();
    BandDot* dots = band_.Row(top);
    for (std::int32_t row = top; row < bottom; ++row, from += step, end += step, dots += width) {
        const BandDot* const last = dots + (end >> 32);
        for (BandDot* dot = dots + (from >> 32); dot < last; ++dot) *dot = ink;
    }
}

}  // namespace qm::bitmap
