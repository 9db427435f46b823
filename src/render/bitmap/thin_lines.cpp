// See thin_lines.h.
#include "render/bitmap/thin_lines.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/numbers.h"
#include "render/bitmap/half_planes.h"

namespace qm::bitmap {

namespace {

// Places across a line are counted in 1/2^32 dots: over the widest page the error stays far below
// what shows.
constexpr double kFine = 4294967296.0;
constexpr float kFineDot = 1.0F / 4294967296.0F;
constexpr std::uint32_t kFinePlace = (std::uint32_t{1} << 31) / (LineCoverages::kPlaces / 2);

constexpr QuadFloats kFirstFour{0.0F, 1.0F, 2.0F, 3.0F};
// Lines up to this length, in dots, are drawn row by row.
constexpr double kShort = 2.5;

// A line that is flatter does not leave its row on any page.
constexpr double kFlat = 1e-6;
double ReachOf(PointD normal) { return (std::abs(normal.x) + std::abs(normal.y)) / 2.0; }

// The first dot whose centre is at or behind `place`; between `low`, not negative, and `high`.
std::int32_t FirstDot(double place, std::int32_t low, std::int32_t high) {
    return TruncateSmall(std::min<double>(high, std::max<double>(low, place + 0.5)));
}

}  // namespace

struct ThinLines::Walk {
    PointD at;           // on the line; x is the direction walked in
    double slope = 0.0;  // of y along x
    double half = 0.0;   // up to where the line covers dots, along y
    HalfPlanes planes;
    float across = 0.0F;  // distance from the line of neighbouring dots in a column
    float halfWidth = 0.0F;
    int quads = 1;             // in a column
    std::int64_t anchor = 0;   // a column,
    std::int64_t window = 0;   // what WindowAt is there,
    std::int64_t step = 0;     // and how it changes from column to column
    std::ptrdiff_t stepX = 0;  // in dots of the band
    std::ptrdiff_t stepY = 0;
    BandDot* origin = nullptr;  // of dot (0, 0) of the page if it were in the band
    std::int32_t low = 0;       // bounds across
    std::int32_t high = 0;

    // Leaves of the columns `from` to `end` - 1 those in which the line meets the bounds across.
    void ClipColumns(std::int32_t& from, std::int32_t& end) const {
        const double above = low - at.y - half - 1.0;
        const double below = high - at.y + half + 1.0;
        if (std::abs(slope) < kFlat) {
            if (above > 0.0 || below < 0.0) end = from;
            return;
        }
        const double a = at.x + above / slope;
        const double b = at.x + below / slope;
        from = FirstDot(std::min(a, b), from, end);
        end = FirstDot(std::max(a, b), from, end);
    }
    // The upper or left end of the dots looked at across the line, at the middle of column x, in
    // small parts of a dot; the same whatever the bounds are.
    std::int64_t WindowAt(std::int32_t x) const { return window + (x - anchor) * step; }
    void SetWindow() {
        constexpr double kFarthest = 65536.0;  // beyond any page
        anchor = TruncateToInt32(std::clamp(at.x, -kFarthest, kFarthest));
        const double middle = at.y + (static_cast<double>(anchor) + 0.5 - at.x) * slope;
        window = TruncateToInt64((middle - (2 * quads - 0.5)) * kFine);
        step = TruncateToInt64(slope * kFine);
    }
    // The dots y to y + 3 of a column.
    void Cover(const StrokeInk::Line& ink, const QuadColour& colour, BandDot* column,
               std::int32_t y, QuadLongs coverages) const {
        BandDot* const dot = column + y * stepY;
        if (y < low || y + 4 > high) return CoverSome(ink, dot, y, coverages);
        ink.CoverFour(DotQuad(dot, stepY), coverages, colour);
    }
    void CoverSome(const StrokeInk::Line& ink, BandDot* dot, std::int32_t y,
                   QuadLongs coverages) const;
    // What the endless line covers of the dots of a quad in a column where WindowAt is `place`.
    QuadFloats Covered(std::int64_t place, int quad) const {
        const float beyond = static_cast<float>(static_cast<std::uint32_t>(place)) * kFineDot;
        const float first = static_cast<float>(4 * quad + 1 - 2 * quads) - beyond;
        const QuadFloats away = Absolute((AllFour(first) + kFirstFour) * across);
        return planes.Inside(halfWidth - away) - planes.Beyond(halfWidth + away);
    }
};

// What a line's end adds for its roundness.
struct ThinLines::Roundness {
    QuadFloats whole;  // part of the disc that is added
    QuadFloats less;   // and how much less of it inside the end
    DiscTable::Disc disc;

    // Turned: x of the centre is y of the page.
    Roundness(Cap cap, const DiscTable& discs, PointD place)
        : whole(AllFour(cap == Cap::kRound ? 1.0F : 0.0F)),
          less(AllFour(cap == Cap::kFlat ? 0.0F : 1.0F)),
          disc(discs.Around({place.y, place.x})) {}
    QuadFloats Of(const DiscTable::Disc::Row& dots, std::int32_t row, QuadFloats inside) const {
        return AsFloats(Unpacked(dots.At(row))) * (whole - less * inside);
    }
};

// An end of a line and what it makes of the dots around it.
struct ThinLines::Limit {
    PointD at;
    PointD inward;
    Cap cap;
    double beyond;
    float whole;  // part of the disc that is added
    float less;   // and how much less of it inside the end
    DiscTable::Disc disc;

    Limit(PointD place, PointD direction, Cap kind, double over, const DiscTable& discs)
        : at(place),
          inward(direction),
          cap(kind),
          beyond(kind == Cap::kFlat ? over : 0.0),
          whole(kind == Cap::kRound ? 1.0F : 0.0F),
          less(kind == Cap::kFlat ? 0.0F : 1.0F),
          disc(discs.Around(place)) {}

    // The parts of four dots in front of the end.
    QuadFloats Inside(const Walk& walk, std::int32_t x, std::int32_t y) const {
        const double first = inward.x * (x + 0.5 - at.x) + inward.y * (y + 0.5 - at.y) + beyond;
        const auto step = static_cast<float>(inward.y);
        return walk.planes.Inside(AllFour(static_cast<float>(first)) + kFirstFour * step);
    }
    // What is added for its roundness, by those parts.
    QuadFloats Round(std::int32_t x, std::int32_t y, QuadFloats inside) const {
        return AsFloats(Unpacked(disc.At(x, y))) * (whole - less * inside);
    }
};

void ThinLines::SetHalfWidth(double halfWidth) {
    if (halfWidth == halfWidth_) return;
    halfWidth_ = halfWidth;
    discs_ = &DiscTable::For(halfWidth);
    coverages_.SetHalfWidth(halfWidth);
}

// Row by row: what a short line takes is mostly getting ready for it.
void ThinLines::AddShort(const Line& line) const {
    const double reach = halfWidth_ + 0.5 + 2.0 * line.beyond;
    const auto [leftmost, rightmost] = std::minmax(line.from.x, line.to.x);
    const auto [upper, lower] = std::minmax(line.from.y, line.to.y);
    const std::int32_t fromX = FirstDot(leftmost - reach, bounds_.left, bounds_.right);
    const std::int32_t endX = FirstDot(rightmost + reach, bounds_.left, bounds_.right);
    const std::int32_t fromY = FirstDot(upper - reach, bounds_.top, bounds_.bottom);
    const std::int32_t endY = FirstDot(lower + reach, bounds_.top, bounds_.bottom);
    if (fromX >= endX || fromY >= endY) return;
    const HalfPlanes planes(line.along.x, line.along.y);
    const Roundness start(line.start, *discs_, line.from);
    const Roundness end(line.end, *discs_, line.to);
    const PointD length = line.to - line.from;
    const auto whole = static_cast<float>(length.x * line.along.x + length.y * line.along.y);
    const auto flat = static_cast<float>(line.beyond);
    const QuadFloats beyond = AllFour(line.start == Cap::kFlat ? flat : 0.0F);
    const QuadFloats beyondEnd = AllFour(whole + (line.end == Cap::kFlat ? flat : 0.0F));
    const auto x = static_cast<float>(line.along.x);
    const auto y = static_cast<float>(line.along.y);
    const QuadFloats halfWidth = AllFour(static_cast<float>(halfWidth_));
    const StrokeInk::Line ink = ink_.Current();
    const QuadColour colour = ink.Colour();
    const std::ptrdiff_t width = band_.Width();
    const double above = 0.5 - line.from.y;
    const std::int32_t boundsEnd = bounds_.right;
    for (std::int32_t column = fromX; column < endX; column += 4) {
        const auto startDots = start.disc.From(column);
        const auto endDots = end.disc.From(column);
        const QuadFloats right =
            AllFour(static_cast<float>(column + 0.5 - line.from.x)) + kFirstFour;
        const QuadFloats rightAway = right * y;
        const QuadFloats rightInside = right * x;
        BandDot* dots = band_.Row(fromY) + column;
        for (std::int32_t row = fromY; row < endY; ++row, dots += width) {
            const auto down = static_cast<float>(row + above);
            // From the line and, along it, from its start.
            const QuadFloats distance = Absolute(rightAway - down * x);
            const QuadFloats inside = rightInside + down * y;
            const QuadFloats endless =
                planes.Inside(halfWidth - distance) - planes.Beyond(halfWidth + distance);
            const QuadFloats inStart = planes.Inside(inside + beyond);
            const QuadFloats inEnd = planes.Inside(beyondEnd - inside);
            const QuadFloats both = AtLeast(inStart + inEnd - 1.0F, 0.0F);
            const QuadFloats covered = endless * both * 255.0F + start.Of(startDots, row, inStart) +
                                       end.Of(endDots, row, inEnd) + 0.5F;
            const QuadLongs coverages = AsLongs(AtMost(AtLeast(covered, 0.0F), 255.0F));
            if (column + 4 <= boundsEnd) {
                ink.CoverFour(DotRun(dots), coverages, colour);
                continue;
            }
            for (int i = 0; column + i < boundsEnd; ++i) {
                if (coverages[i] != 0) ink.Cover(dots[i], coverages[i]);
            }
        }
    }
}

void ThinLines::Add(const Line& line) {
    const PointD way = line.to - line.from;
    if (way.x * way.x + way.y * way.y < kShort * kShort) return AddShort(line);
    const bool steep = std::abs(line.along.y) > std::abs(line.along.x);
    const auto turned = [&](PointD p) { return steep ? PointD{p.y, p.x} : p; };
    const PointD along = turned(line.along);
    Limit first(turned(line.from), along, line.start, line.beyond, *discs_);
    Limit second(turned(line.to), {-along.x, -along.y}, line.end, line.beyond, *discs_);
    if (along.x < 0.0) std::swap(first, second);
    const auto width = static_cast<std::ptrdiff_t>(band_.Width());
    const double perX = 1.0 / along.x;
    Walk walk{first.at, along.y * perX, (halfWidth_ + ReachOf(along)) * std::abs(perX),
              HalfPlanes(along.x, along.y)};
    walk.across = static_cast<float>(std::abs(along.x));
    walk.halfWidth = static_cast<float>(halfWidth_);
    walk.quads = walk.half <= 2.0 ? 1 : 2;
    walk.stepX = steep ? width : 1;
    walk.stepY = steep ? 1 : width;
    walk.origin = band_.Row(band_.Top()) - band_.Top() * width;
    walk.low = steep ? bounds_.left : bounds_.top;
    walk.high = steep ? bounds_.right : bounds_.bottom;
    walk.SetWindow();
    std::int32_t left = steep ? bounds_.top : bounds_.left;
    std::int32_t right = steep ? bounds_.bottom : bounds_.right;
    walk.ClipColumns(left, right);
    // Columns from the end outwards and inwards up to which its dots are not just left alone or
    // covered like those of an endless line.
    const double flat = std::abs(along.x);
    const double margin = ReachOf(along) + std::abs(along.y) * walk.half;
    const double round = halfWidth_ + 0.5;
    const auto outward = [&](const Limit& end) {
        return end.cap == Cap::kRound ? round : (margin + end.beyond) * flat;
    };
    const auto inward = [&](const Limit& end) {
        const double straight = (margin - end.beyond) * flat;
        return end.cap == Cap::kShared ? std::max(round, straight) : straight;
    };
    const auto before = [&](double place) { return FirstDot(place, left, right); };
    const std::int32_t from = before(first.at.x - outward(first));
    const std::int32_t to = before(second.at.x + outward(second));
    const double straightFrom = first.at.x + inward(first);
    const double straightTo = second.at.x - inward(second);
    if (straightFrom > straightTo) return AddEnd<true>(walk, from, to, first, second);
    const std::int32_t bodyFrom = before(straightFrom);
    const std::int32_t bodyTo = before(straightTo);
    AddEnd<false>(walk, from, bodyFrom, first, second);
    AddEnd<false>(walk, bodyTo, to, second, first);
    AddBody(walk, bodyFrom, bodyTo);
}

void ThinLines::Fetch(PointD from, PointD to) const {
    constexpr double kFewestRows = 4.0;  // for which each is worth a look
    if (std::abs(to.y - from.y) < kFewestRows) {
        const std::int32_t y = FirstDot(to.y, bounds_.top, bounds_.bottom);
        if (to.x < bounds_.left + 2.0 || to.x > bounds_.right - 4.0) return;
        if (y < bounds_.top + 2 || y + 2 > bounds_.bottom) return;
        const BandDot* const dot = band_.Row(y) + TruncateToInt32(to.x);
        for (std::ptrdiff_t row = -2; row < 2; ++row) {
            __builtin_prefetch(dot + row * band_.Width(), 1);
        }
        return;
    }
    if (from.y > to.y) std::swap(from, to);
    const double slope = (to.x - from.x) / (to.y - from.y);
    const std::int32_t first = FirstDot(from.y, bounds_.top, bounds_.bottom);
    const std::int32_t end = FirstDot(to.y, first, bounds_.bottom);
    for (std::int32_t y = first; y < end; ++y) {
        const double x = from.x + (y + 0.5 - from.y) * slope;
        if (x < bounds_.left + 2.0 || x > bounds_.right - 4.0) continue;
        const BandDot* const dot = band_.Row(y) + TruncateToInt32(x);
        __builtin_prefetch(dot - 2, 1);
        __builtin_prefetch(dot + 2, 1);
    }
}

void ThinLines::Walk::CoverSome(const StrokeInk::Line& ink, BandDot* dot, std::int32_t y,
                                QuadLongs coverages) const {
    for (int i = 0; i < 4; ++i) {
        if (y + i < low || y + i >= high || coverages[i] == 0) continue;
        ink.Cover(dot[i * stepY], coverages[i]);
    }
}

// `coverages`: of a column's four dots, by its window.
template <typename Coverages>
void ThinLines::AddColumns(const Walk& given, std::int32_t from, std::int32_t end,
                           const Coverages& coverages) const {
    const Walk walk = given;  // nothing written to dots can change it
    const StrokeInk::Line ink = ink_.Current();
    const QuadColour colour = ink.Colour();
    std::int64_t window = walk.WindowAt(from);
    BandDot* column = walk.origin + from * walk.stepX;
    for (std::int32_t x = from; x < end; ++x, window += walk.step, column += walk.stepX) {
        walk.Cover(ink, colour, column, static_cast<std::int32_t>(window >> 32), coverages(window));
    }
}

void ThinLines::AddBody(const Walk& walk, std::int32_t from, std::int32_t end) {
    if (from >= end) return;
    if (walk.quads > 1) {
        for (int quad = 0; quad < walk.quads; ++quad) {
            Walk part = walk;
            part.window += (std::int64_t{4} * quad) << 32;
            AddColumns(part, from, end, [walk, quad](std::int64_t window) {
                // Of a window only the place between two dots counts.
                return AsLongs(walk.Covered(window, quad) * 255.0F + 0.5F);
            });
        }
        return;
    }
    const auto placeOf = [](std::int64_t window) {
        return static_cast<std::size_t>(static_cast<std::uint32_t>(window) / kFinePlace);
    };
    const std::size_t slope = LineCoverages::NumberOf(walk.slope);
    if (const auto* const table = coverages_.TableFor(slope, end - from)) {
        return AddColumns(walk, from, end, [table, placeOf](std::int64_t window) {
            return Unpacked((*table)[placeOf(window)]);
        });
    }
    AddColumns(walk, from, end, [line = coverages_.Of(slope), placeOf](std::int64_t window) {
        return line.Covered(placeOf(window));
    });
}

template <bool kBothEnds>
void ThinLines::AddEnd(const Walk& walk, std::int32_t from, std::int32_t end, const Limit& limit,
                       const Limit& other) const {
    const StrokeInk::Line ink = ink_.Current();
    const QuadColour colour = ink.Colour();
    for (std::int32_t x = from; x < end; ++x) {
        const std::int64_t window = walk.WindowAt(x);
        for (int quad = 0; quad < walk.quads; ++quad) {
            const auto y = static_cast<std::int32_t>(window >> 32) + 4 * quad;
            QuadFloats inside = limit.Inside(walk, x, y);
            QuadFloats round = limit.Round(x, y, inside);
            if (kBothEnds) {
                const QuadFloats insideOther = other.Inside(walk, x, y);
                round += other.Round(x, y, insideOther);
                inside = AtLeast(inside + insideOther - 1.0F, 0.0F);
            }
            const QuadFloats covered = walk.Covered(window, quad) * inside * 255.0F + round + 0.5F;
            walk.Cover(ink, colour, walk.origin + x * walk.stepX, y,
                       AsLongs(AtMost(AtLeast(covered, 0.0F), 255.0F)));
        }
    }
}

}  // namespace qm::bitmap
