#include "render/bitmap/capsule_strokes.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "render/bitmap/blending.h"

namespace qm::bitmap {

namespace {

constexpr std::uint32_t kLastStroke = 0xFFFFFF00U;
// Steps along and across a line are counted in 1/2^32 dots: over the widest page the error stays
// far below what shows.
constexpr double kFine = 4294967296.0;
constexpr int kFineToStep = 32 - 7;
static_assert(EdgeProfile::kStepsPerDot == 1 << 7);
// A round end of a thin line covers as much as a flat one that reaches so far beyond the point.
constexpr double kRoundReach = 0.785398;
constexpr double kFlat = 1e-9;  // what a direction's part has to exceed

// The first column whose centre is at or behind x, and the one behind the last at or before x.
// Bounds are not negative, so that truncation rounds down.
std::int32_t FirstColumn(double x, const DotBox& bounds) {
    const double place = std::min(std::max(x - 0.5, double(bounds.left)), double(bounds.right));
    const std::int32_t column = TruncateToInt32(place);
    return column < place ? column + 1 : column;
}
std::int32_t EndColumn(double x, const DotBox& bounds) {
    return TruncateToInt32(std::min(std::max(x + 0.5, double(bounds.left)), double(bounds.right)));
}

}  // namespace

struct CapsuleStrokes::Segment {
    Segment(PointD first, PointD second)
        : from(first), to(second), length(Length(second.x - first.x, second.y - first.y)) {
        if (length > 0.0) {
            alongX = (to.x - from.x) / length;
            alongY = (to.y - from.y) / length;
        }
    }

    PointD from;
    PointD to;
    double length;
    double alongX = 1.0;
    double alongY = 0.0;
};

void CapsuleStrokes::Begin(double halfWidth, std::uint32_t colour) {
    if (stroke_ == kLastStroke) {
        band_.ClearMarks();
        stroke_ = 0;
    }
    stroke_ += 0x100;
    colour_ = colour;
    if (halfWidth == halfWidth_ && line_ != nullptr) return;
    halfWidth_ = halfWidth;
    line_ = &profile_.LineOf(halfWidth);
}

void CapsuleStrokes::Add(PointD from, PointD to, End fromEnd, End toEnd) {
    const double reach = halfWidth_ + 1.0;
    if (std::max(from.y, to.y) < bounds_.top - reach ||
        std::min(from.y, to.y) > bounds_.bottom + reach) {
        return;
    }
    const Segment segment(from, to);
    if (!smooth_) return AddHard(segment);
    if (halfWidth_ <= kThin) return AddThin(segment, fromEnd, toEnd);
    AddThick(segment);
}

inline void CapsuleStrokes::Cover(BandDot& dot, unsigned coverage) const {
    unsigned part = coverage;
    if (dot.mark >> 8 == stroke_ >> 8) {
        const unsigned before = dot.mark & 255;
        if (coverage <= before) return;
        part = ((coverage - before) * 255 + (255 - before) / 2) / (255 - before);
    }
    dot.mark = stroke_ | coverage;
    dot.colour = part == 255 ? colour_ : Mix(dot.colour, colour_, part);
}

void CapsuleStrokes::Fill(BandDot* row, std::int32_t first, std::int32_t end) const {
    const BandDot dot{colour_, stroke_ | 255};
    std::fill(row + first, row + std::max(first, end), dot);
}

double CapsuleStrokes::ExtensionOf(End end) const {
    if (end == End::kButt) return 0.0;
    return end == End::kSquare ? halfWidth_ : halfWidth_ * kRoundReach;
}

// -------------------------------------------------------------------------------------- thin lines

// Coverage is that across the line times that along it.
void CapsuleStrokes::AddThin(const Segment& s, End fromEnd, End toEnd) {
    const double reach = (std::abs(s.alongX) + std::abs(s.alongY)) / 2.0;
    const double across = halfWidth_ + reach;
    const bool isPoint = s.length == 0.0;
    const double before = isPoint ? ExtensionOf(End::kRound) : ExtensionOf(fromEnd);
    const double behind = s.length + (isPoint ? ExtensionOf(End::kRound) : ExtensionOf(toEnd));
    const double first = -before - reach;
    const double last = behind + reach;
    const double low = s.from.y + std::min(first * s.alongY, last * s.alongY);
    const double high = s.from.y + std::max(first * s.alongY, last * s.alongY);
    const double tilt = across * std::abs(s.alongX);
    const double top = std::max(low - tilt, double(bounds_.top));
    const double bottom = std::min(high + tilt, double(bounds_.bottom));
    const int direction = EdgeProfile::DirectionOf(s.alongX, s.alongY);
    const std::uint8_t* const profile = line_->coverage[static_cast<std::size_t>(direction)].data();
    const bool steep = std::abs(s.alongY) > kFlat;
    const bool sloped = std::abs(s.alongX) > kFlat;
    const double perY = steep ? 1.0 / s.alongY : 0.0;
    const double perX = sloped ? 1.0 / s.alongX : 0.0;
    const std::int64_t stepAcross = TruncateToInt64(s.alongY * kFine);
    const std::int64_t stepAlong = TruncateToInt64(s.alongX * kFine);
    // Between these the ends do not show.
    const std::int64_t clearFrom = TruncateToInt64((reach - before) * kFine);
    const std::int64_t clearTo = TruncateToInt64((behind - reach) * kFine);
    const std::int32_t endRow =
        std::min(TruncateToInt32(std::max(bottom, 0.0)) + 1, bounds_.bottom);
    for (std::int32_t y = std::max(TruncateToInt32(top), bounds_.top); y < endRow; ++y) {
        const double down = y + 0.5 - s.from.y;
        double left = bounds_.left;
        double right = bounds_.right;
        if (steep) {
            const double middle = s.from.x + down * s.alongX * perY;
            const double half = std::abs(across * perY);
            left = std::max(left, middle - half);
            right = std::min(right, middle + half);
        }
        if (sloped) {
            const double a = s.from.x + (first - down * s.alongY) * perX;
            const double b = s.from.x + (last - down * s.alongY) * perX;
            left = std::max(left, std::min(a, b));
            right = std::min(right, std::max(a, b));
        }
        if (!(left < right)) continue;
        const std::int32_t from = FirstColumn(left, bounds_);
        const std::int32_t end = EndColumn(right, bounds_);
        const double x = from + 0.5 - s.from.x;
        std::int64_t awayFine = TruncateToInt64((x * s.alongY - down * s.alongX) * kFine);
        std::int64_t alongFine = TruncateToInt64((x * s.alongX + down * s.alongY) * kFine);
        BandDot* const row = band_.Row(y);
        for (std::int32_t column = from; column < end; ++column) {
            const auto step = static_cast<std::uint64_t>(std::abs(awayFine)) >> kFineToStep;
            if (step < EdgeProfile::Line::kSteps) {
                unsigned coverage = profile[step];
                if (alongFine < clearFrom || alongFine > clearTo) {
                    const double along = static_cast<double>(alongFine) / kFine;
                    const unsigned part = profile_.Coverage(direction, along + before) +
                                          profile_.Coverage(direction, behind - along);
                    coverage = part > 255 ? (coverage * (part - 255) + 127) / 255 : 0;
                }
                if (coverage != 0) Cover(row[column], coverage);
            }
            awayFine += stepAcross;
            alongFine += stepAlong;
        }
    }
}

// ------------------------------------------------------------------------------------- thick lines

// Where the row through `y` meets the dots up to `radius` away from the segment.
CapsuleStrokes::Run CapsuleStrokes::RunOf(const Segment& s, double radius, double y) {
    if (radius <= 0.0) return {};
    double low = 1e18;
    double high = -1e18;
    const auto add = [&](double x, double half) {
        low = std::min(low, x - half);
        high = std::max(high, x + half);
    };
    for (const PointD& end : {s.from, s.to}) {
        const double away = y - end.y;
        if (std::abs(away) <= radius) add(end.x, std::sqrt(radius * radius - away * away));
    }
    if (std::abs(s.alongY) > kFlat) {
        for (const double side : {-radius, radius}) {
            const double along = (y - s.from.y + s.alongX * side) / s.alongY;
            if (along >= 0.0 && along <= s.length) {
                add(s.from.x + s.alongX * along + s.alongY * side, 0.0);
            }
        }
    }
    return {low, high};
}

unsigned CapsuleStrokes::CoverageAt(const Segment& s, double x, double y) const {
    const double rightward = x - s.from.x;
    const double downward = y - s.from.y;
    const double along = rightward * s.alongX + downward * s.alongY;
    if (along >= 0.0 && along <= s.length) {
        const double away = std::abs(rightward * s.alongY - downward * s.alongX);
        return profile_.Coverage(EdgeProfile::DirectionOf(s.alongX, s.alongY), halfWidth_ - away);
    }
    const PointD& end = along < 0.0 ? s.from : s.to;
    const double away = Length(x - end.x, y - end.y);
    return profile_.Coverage(EdgeProfile::DirectionOf((x - end.x) / away, (y - end.y) / away),
                             halfWidth_ - away);
}

void CapsuleStrokes::AddThick(const Segment& s) {
    const double outer = halfWidth_ + EdgeProfile::kReach;
    const double top = std::max(std::min(s.from.y, s.to.y) - outer, double(bounds_.top));
    const double bottom = std::min(std::max(s.from.y, s.to.y) + outer, double(bounds_.bottom));
    const std::int32_t endRow = std::min(TruncateToInt32(bottom) + 1, bounds_.bottom);
    for (std::int32_t y = TruncateToInt32(top); y < endRow; ++y) {
        const double middle = y + 0.5;
        const Run all = RunOf(s, outer, middle);
        if (!(all.low < all.high)) continue;
        const std::int32_t from = FirstColumn(all.low, bounds_);
        const std::int32_t end = EndColumn(all.high, bounds_);
        const Run solid = RunOf(s, halfWidth_ - EdgeProfile::kReach, middle);
        std::int32_t solidFrom = end;
        std::int32_t solidEnd = end;
        if (solid.low <= solid.high) {
            solidFrom = FirstColumn(solid.low, bounds_);
            solidEnd = std::max(EndColumn(solid.high, bounds_), solidFrom);
        }
        BandDot* const row = band_.Row(y);
        const auto edges = [&](std::int32_t first, std::int32_t last) {
            for (std::int32_t column = first; column < last; ++column) {
                const unsigned coverage = CoverageAt(s, column + 0.5, middle);
                if (coverage != 0) Cover(row[column], coverage);
            }
        };
        edges(from, std::min(solidFrom, end));
        Fill(row, solidFrom, solidEnd);
        edges(solidEnd, end);
    }
}

// -------------------------------------------------------------------------------------- hard edges

void CapsuleStrokes::AddHard(const Segment& s) {
    const double low = std::min(s.from.y, s.to.y) - halfWidth_;
    const double high = std::max(s.from.y, s.to.y) + halfWidth_;
    const auto fill = [&](std::int32_t y) {
        const Run run = RunOf(s, halfWidth_, y + 0.5);
        if (!(run.low <= run.high)) return false;
        const std::int32_t first = FirstColumn(run.low, bounds_);
        const std::int32_t end = EndColumn(run.high, bounds_);
        if (y >= bounds_.top && y < bounds_.bottom) Fill(band_.Row(y), first, end);
        return first < end;
    };
    // A speck between the centres of dots would vanish.
    if (s.length + 2.0 * halfWidth_ < 2.0) {
        bool shown = false;
        for (std::int32_t y = TruncateToInt32(std::floor(low)); y <= high; ++y) {
            shown = fill(y) || shown;
        }
        if (shown) return;
        const std::int32_t column = TruncateToInt32(std::floor((s.from.x + s.to.x) / 2.0));
        const std::int32_t y = TruncateToInt32(std::floor((s.from.y + s.to.y) / 2.0));
        if (column < bounds_.left || column >= bounds_.right || y < bounds_.top ||
            y >= bounds_.bottom) {
            return;
        }
        return Fill(band_.Row(y), column, column + 1);
    }
    const std::int32_t endRow = std::min(TruncateToInt32(std::max(high, 0.0)) + 1, bounds_.bottom);
    for (std::int32_t y = std::max(TruncateToInt32(std::max(low, 0.0)), bounds_.top); y < endRow;
         ++y) {
        fill(y);
    }
}

}  // namespace qm::bitmap
