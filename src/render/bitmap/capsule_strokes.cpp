#include "render/bitmap/capsule_strokes.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "render/bitmap/edge_profile.h"

namespace qm::bitmap {

namespace {

constexpr double kNoSlope = 1e-9;  // what a direction's part has to exceed
// Lines that are left out together when the bounds do not show them.
constexpr std::size_t kMostAtOnce = 16;
// Points nearer than this to the last one, in dots, do not make a thin line of their own.
constexpr double kNearest = 0.25;
constexpr double kSharpest = -0.1;
// Lines share dots with the lines before them that lie so near, in dots, but not with more of them.
constexpr double kSharedLength = 2.0;
constexpr std::uint32_t kMostShared = 8;

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

double Dot(PointD a, PointD b) { return a.x * b.x + a.y * b.y; }

}  // namespace

CapsuleStrokes::Line::Line(PointD first, PointD second) : from(first), to(second) {
    const PointD way = to - from;
    length = std::sqrt(Dot(way, way));
    if (length > 0.0) along = {way.x / length, way.y / length};
}

void CapsuleStrokes::Begin(double halfWidth, std::uint32_t colour) {
    ink_.Begin(band_, colour);
    halfWidth_ = halfWidth;
    if (!smooth_) return hard_.Begin(halfWidth, colour);
    if (halfWidth <= kThin) thin_.SetHalfWidth(halfWidth);
}

bool CapsuleStrokes::MayShow(const Piece& piece) const {
    const auto [low, high] =
        std::minmax_element(piece.points, piece.points + piece.count,
                            [](const PointD& a, const PointD& b) { return a.y < b.y; });
    const double reach = halfWidth_ + 1.0;
    return high->y >= bounds_.top - reach && low->y <= bounds_.bottom + reach;
}

void CapsuleStrokes::AddLong(const Piece& piece) {
    const std::size_t lines = piece.count - 1;
    for (std::size_t from = 0; from < lines; from += kMostAtOnce) {
        const std::size_t end = std::min(from + kMostAtOnce, lines);
        Piece part = piece;
        part.points = piece.points + from;
        part.count = end - from + 1;
        if (from > 0) part.before = part.points - 1;
        if (end < lines) part.after = part.points + part.count;
        if (MayShow(part)) {
            AddThin(part);
        } else {
            Skip(part.count);
        }
    }
}

void CapsuleStrokes::Add(const Piece& piece) {
    if (smooth_ && halfWidth_ <= kThin) {
        return piece.count > kMostAtOnce + 1 ? AddLong(piece) : AddThin(piece);
    }
    const double top = bounds_.top - halfWidth_ - 1.0;
    const double bottom = bounds_.bottom + halfWidth_ + 1.0;
    for (std::size_t i = piece.count > 1 ? 1 : 0; i < piece.count; ++i) {
        const PointD from = piece.points[std::max<std::size_t>(i, 1) - 1];
        const PointD to = piece.points[i];
        ink_.NextLine(0);
        if (std::max(from.y, to.y) < top || std::min(from.y, to.y) > bottom) continue;
        if (smooth_) {
            AddThick(Line(from, to));
        } else {
            hard_.Add(from, to);
        }
    }
}

// All rows at once: waiting for one after the other takes longer than to draw a letter.
void CapsuleStrokes::Fetch(PointD corner, PointD opposite) const {
    constexpr std::int32_t kMostRows = 64;
    constexpr std::int32_t kDotsAtOnce = 64 / sizeof(BandDot);
    const auto [left, right] = std::minmax(corner.x, opposite.x);
    const auto [top, bottom] = std::minmax(corner.y, opposite.y);
    const std::int32_t first = FirstColumn(left - halfWidth_, bounds_);
    const std::int32_t end = EndColumn(right + halfWidth_, bounds_);
    if (first >= end) return;
    const auto rowAt = [&](double y) {
        return TruncateToInt32(std::min(std::max(y, double(bounds_.top)), double(bounds_.bottom)));
    };
    const std::int32_t firstRow = rowAt(top - halfWidth_);
    const std::int32_t endRow = std::min(rowAt(bottom + halfWidth_ + 1.0), firstRow + kMostRows);
    for (std::int32_t y = firstRow; y < endRow; ++y) {
        const BandDot* const dots = band_.Row(y);
        for (std::int32_t x = first; x < end; x += kDotsAtOnce) __builtin_prefetch(dots + x, 1);
        __builtin_prefetch(dots + end - 1, 1);
    }
}

// -------------------------------------------------------------------------------------- thin lines

void CapsuleStrokes::TakeLines(const Piece& piece) {
    lines_.clear();
    PointD last = piece.points[0];
    const PointD end = piece.points[piece.count - 1];
    for (std::size_t i = 1; i + 1 < piece.count; ++i) {
        const PointD way = piece.points[i] - last;
        if (Dot(way, way) < kNearest * kNearest) continue;
        lines_.emplace_back(last, piece.points[i]);
        last = piece.points[i];
    }
    const PointD way = end - last;
    if (!lines_.empty() && Dot(way, way) < kNearest * kNearest) {
        last = lines_.back().from;
        lines_.pop_back();
    }
    lines_.emplace_back(last, end);
}

void CapsuleStrokes::AddThin(const Piece& piece) {
    using Cap = ThinLines::Cap;
    TakeLines(piece);
    const auto isShared = [](const Line& line, const Line& next) {
        return Dot(line.along, next.along) > kSharpest && line.length > 0.0 && next.length > 0.0;
    };
    const auto reachOf = [&](End end) { return end == End::kSquare ? halfWidth_ : 0.0; };
    const auto capOf = [](End end) { return end == End::kRound ? Cap::kRound : Cap::kFlat; };
    std::uint32_t sharing = 0;
    thin_.Fetch(lines_[0].from, lines_[0].to);
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const Line& line = lines_[i];
        if (i + 1 < lines_.size()) thin_.Fetch(line.to, lines_[i + 1].to);
        ThinLines::Line drawn{line.from, line.to, line.along};
        if (i > 0) {
            if (isShared(lines_[i - 1], line)) {
                drawn.start = Cap::kShared;
            } else {
                sharing = 0;
            }
        } else if (piece.before != nullptr) {
            if (isShared(Line(*piece.before, piece.points[0]), line)) {
                drawn.start = Cap::kShared;
                sharing = kMostShared;
            }
        } else {
            drawn.start = capOf(piece.first);
            drawn.beyond = reachOf(piece.first);
        }
        if (i + 1 == lines_.size() && piece.after == nullptr) {
            drawn.end = capOf(piece.last);
            drawn.beyond = std::max(drawn.beyond, reachOf(piece.last));
        }
        ink_.NextLine(sharing);
        thin_.Add(drawn);
        sharing = line.length < kSharedLength ? std::min(sharing + 1, kMostShared) : 1;
    }
    ink_.Skip(static_cast<std::uint32_t>(piece.count - std::min(lines_.size(), piece.count)));
}

// ------------------------------------------------------------------------------------- thick lines

// Where the row through `y` meets the dots up to `radius` away from the segment.
CapsuleStrokes::Run CapsuleStrokes::RunOf(const Line& s, double radius, double y) {
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
    if (std::abs(s.along.y) > kNoSlope) {
        for (const double side : {-radius, radius}) {
            const double along = (y - s.from.y + s.along.x * side) / s.along.y;
            if (along >= 0.0 && along <= s.length) {
                add(s.from.x + s.along.x * along + s.along.y * side, 0.0);
            }
        }
    }
    return {low, high};
}

unsigned CapsuleStrokes::CoverageAt(const Line& s, double x, double y) const {
    const EdgeProfile& profile = EdgeProfile::Known();
    const double rightward = x - s.from.x;
    const double downward = y - s.from.y;
    const double along = rightward * s.along.x + downward * s.along.y;
    if (along >= 0.0 && along <= s.length) {
        const double away = std::abs(rightward * s.along.y - downward * s.along.x);
        return profile.Coverage(EdgeProfile::DirectionOf(s.along.x, s.along.y), halfWidth_ - away);
    }
    const PointD& end = along < 0.0 ? s.from : s.to;
    const double away = Length(x - end.x, y - end.y);
    return profile.Coverage(EdgeProfile::DirectionOf((x - end.x) / away, (y - end.y) / away),
                            halfWidth_ - away);
}

void CapsuleStrokes::AddThick(const Line& s) {
    const StrokeInk::Line ink = ink_.Current();
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
                if (coverage != 0) ink.Cover(row[column], coverage);
            }
        };
        edges(from, std::min(solidFrom, end));
        ink.Fill(row + solidFrom, row + solidEnd);
        edges(solidEnd, end);
    }
}

}  // namespace qm::bitmap
