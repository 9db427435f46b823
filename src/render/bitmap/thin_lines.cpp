// See thin_lines.h.
#include "render/bitmap/thin_lines.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

// Places across a line are counted in 1/2^32 dots: over the widest page the error stays far below
// what shows.
constexpr double kFine = 4294967296.0;
constexpr int kFineToPlace = 32 - 7;
// Distances from a limit in 1/2^16 dots.
constexpr double kPart = 65536.0;
constexpr int kPartToStep = 16 - 7;
static_assert(EdgeProfile::kStepsPerDot == 1 << 7);
constexpr std::int32_t kReachPart = 49152;
static_assert(EdgeProfile::kReach * kPart == kReachPart);

// A line that is flatter does not leave its row on any page.
constexpr double kFlat = 1e-6;
double ReachOf(PointD normal) { return (std::abs(normal.x) + std::abs(normal.y)) / 2.0; }

// The first dot whose centre is at or behind `place`; between `low`, not negative, and `high`.
std::int32_t FirstDot(double place, std::int32_t low, std::int32_t high) {
    return TruncateToInt32(std::min(std::max(place + 0.5, double(low)), double(high)));
}

// The part of a dot that a disc covers, by the distance of their centres: mean of so many rows.
std::uint8_t CoverageOfDisc(double radius, double x, double y) {
    constexpr int kRows = 16;
    double sum = 0.0;
    for (int row = 0; row < kRows; ++row) {
        const double away = y + (row + 0.5) / kRows - 0.5;
        const double half = std::sqrt(std::max(0.0, radius * radius - away * away));
        sum += std::max(0.0, std::min(x + 0.5, half) - std::max(x - 0.5, -half));
    }
    return static_cast<std::uint8_t>(RoundToInt32(sum * 255.0 / kRows));
}

}  // namespace

struct ThinLines::Walk {
    PointD at;           // on the line; x is the direction walked in
    double slope = 0.0;  // of y along x
    double half = 0.0;   // up to where the line covers dots, along y
    const Profile* profile = nullptr;
    const Disc* disc = nullptr;
    const std::uint8_t* edge = nullptr;
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
    // The upper or left end of the dots looked at across the line, at the middle of column x.
    double WindowAt(std::int32_t x) const {
        return at.y + (x + 0.5 - at.x) * slope - (profile->across / 2.0 - 0.5);
    }
};

// The state of an end while the dots around it are visited.
struct ThinLines::Limit {
    PointD at;
    PointD inward;
    Cap cap = Cap::kRound;
    double beyond = 0.0;
    std::int32_t step = 0;    // of `inside` from dot to dot
    std::int32_t inside = 0;  // of the dot's centre
    unsigned across = 0;      // distance from `at` of the column, in steps of the disc
    std::int32_t down = 0;    // and of the dot

    Limit(PointD place, PointD direction, Cap kind, double over)
        : at(place),
          inward(direction),
          cap(kind),
          beyond(kind == Cap::kFlat ? over : 0.0),
          step(TruncateToInt32(direction.y * kPart)) {}

    void Start(std::int32_t x, std::int32_t y) {
        const PointD away{x + 0.5 - at.x, y + 0.5 - at.y};
        inside = TruncateToInt32((inward.x * away.x + inward.y * away.y + beyond) * kPart);
        across = static_cast<unsigned>(TruncateToInt32(std::abs(away.x) * kDiscSteps + 0.5));
        down = TruncateToInt32(away.y * kDiscSteps);
    }
    void Next() {
        inside += step;
        down += kDiscSteps;
    }
    // The part of the dot inside, 0 to 255.
    unsigned Part(const Walk& walk) const {
        constexpr std::int32_t kLastStep = 2 * kReachPart >> kPartToStep;
        return walk.edge[std::clamp((inside + kReachPart) >> kPartToStep, 0, kLastStep)];
    }
    unsigned Round(const Walk& walk) const {
        const auto row = static_cast<unsigned>(std::abs(down));
        return across < kDiscSide && row < kDiscSide ? (*walk.disc)[row][across] : 0;
    }
};

std::unique_ptr<ThinLines::Shapes> ThinLines::MakeShapes(double halfWidth) {
    auto shapes = std::make_unique<Shapes>();
    for (int direction = 0; direction < EdgeProfile::kDirections; ++direction) {
        Profile& profile = shapes->profiles[static_cast<std::size_t>(direction)];
        const PointD along = EdgeProfile::DirectionAt(direction);
        const double half = (halfWidth + ReachOf(along)) / along.x;
        profile.across = half <= 2.0 ? 4 : kMostAcross;
        for (int place = 0; place < kPlaces; ++place) {
            const double middle = profile.across / 2.0 - 0.5 + (place + 0.5) / kPlaces;
            for (int dot = 0; dot < profile.across; ++dot) {
                const double away = std::abs(dot + 0.5 - middle) * along.x;
                profile.coverage[static_cast<std::size_t>(place)][static_cast<std::size_t>(dot)] =
                    EdgeProfile::CoverageOfLine(direction, halfWidth, away);
            }
            const auto& c = profile.coverage[static_cast<std::size_t>(place)];
            profile.quads[static_cast<std::size_t>(place)] = {c[0], c[1], c[2], c[3]};
            profile.farQuads[static_cast<std::size_t>(place)] = {c[4], c[5], c[6], c[7]};
        }
    }
    for (std::size_t y = 0; y < kDiscSide; ++y) {
        for (std::size_t x = 0; x <= y; ++x) {
            shapes->disc[y][x] = shapes->disc[x][y] =
                CoverageOfDisc(halfWidth, static_cast<double>(x) / kDiscSteps,
                               static_cast<double>(y) / kDiscSteps);
        }
    }
    return shapes;
}

void ThinLines::SetHalfWidth(double halfWidth) {
    if (halfWidth == halfWidth_) return;
    halfWidth_ = halfWidth;
    const auto last = static_cast<std::int32_t>(kept_.size()) - 1;
    const std::int32_t index = std::clamp(TruncateToInt32((halfWidth - 0.5) * 64.0 + 0.5), 0, last);
    std::unique_ptr<Shapes>& kept = kept_[static_cast<std::size_t>(index)];
    if (!kept) kept = MakeShapes(0.5 + index / 64.0);
    shapes_ = kept.get();
}

void ThinLines::Add(const Line& line) {
    const bool steep = std::abs(line.along.y) > std::abs(line.along.x);
    const auto turned = [&](PointD p) { return steep ? PointD{p.y, p.x} : p; };
    const PointD along = turned(line.along);
    Limit first(turned(line.from), along, line.start, line.beyond);
    Limit second(turned(line.to), {-along.x, -along.y}, line.end, line.beyond);
    if (along.x < 0.0) std::swap(first, second);
    Walk walk;
    const auto width = static_cast<std::ptrdiff_t>(band_.Width());
    walk.stepX = steep ? width : 1;
    walk.stepY = steep ? 1 : width;
    walk.origin = band_.Row(band_.Top()) - band_.Top() * width;
    walk.low = steep ? bounds_.left : bounds_.top;
    walk.high = steep ? bounds_.right : bounds_.bottom;
    walk.at = first.at;
    const double perX = 1.0 / along.x;
    walk.slope = along.y * perX;
    walk.half = (halfWidth_ + ReachOf(along)) * std::abs(perX);
    const auto direction = static_cast<std::size_t>(EdgeProfile::DirectionOf(along.x, along.y));
    walk.profile = &shapes_->profiles[direction];
    walk.disc = &shapes_->disc;
    walk.edge = edges_.Edge(static_cast<int>(direction));
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
    const std::int32_t bodyFrom = before(first.at.x + inward(first));
    const std::int32_t bodyTo = before(second.at.x - inward(second));
    if (bodyFrom >= bodyTo) return AddShort(walk, from, to, first, second);
    AddEnd(walk, from, bodyFrom, first);
    const double across = walk.profile->across + 1.0;
    const double a = walk.WindowAt(bodyFrom);
    const double b = walk.WindowAt(bodyTo);
    if (std::min(a, b) > walk.low + 1.0 && std::max(a, b) + across < walk.high) {
        AddBody<true>(walk, bodyFrom, bodyTo);
    } else {
        AddBody<false>(walk, bodyFrom, bodyTo);
    }
    AddEnd(walk, bodyTo, to, second);
}

void ThinLines::Fetch(PointD from, PointD to) const {
    constexpr double kFewestRows = 4.0;  // for which it pays
    if (std::abs(to.y - from.y) < kFewestRows) return;
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

template <bool kInside>
void ThinLines::AddBody(const Walk& walk, std::int32_t from, std::int32_t end) const {
    const StrokeInk::Line ink = ink_.Current();
    const QuadColour colour = ink.Colour();
    const int across = walk.profile->across;
    const std::ptrdiff_t stepY = walk.stepY;
    std::int64_t window = TruncateToInt64(walk.WindowAt(from) * kFine);
    const std::int64_t step = TruncateToInt64(walk.slope * kFine);
    BandDot* column = walk.origin + from * walk.stepX;
    for (std::int32_t x = from; x < end; ++x, window += step, column += walk.stepX) {
        const auto y = static_cast<std::int32_t>(window >> 32);
        const auto place = static_cast<std::size_t>(window >> kFineToPlace & (kPlaces - 1));
        BandDot* dot = column + y * stepY;
        if (kInside) {
            const Profile& profile = *walk.profile;
            ink.CoverFour(dot, stepY, profile.quads[place], colour);
            if (across > 4) {
                ink.CoverFour(dot + 4 * stepY, stepY, profile.farQuads[place], colour);
            }
            continue;
        }
        const std::uint8_t* const coverage = walk.profile->coverage[place].data();
        for (int i = 0; i < across; ++i, dot += stepY) {
            if (coverage[i] == 0 || y + i < walk.low || y + i >= walk.high) continue;
            ink.Cover(*dot, coverage[i]);
        }
    }
}

void ThinLines::AddEnd(const Walk& walk, std::int32_t from, std::int32_t end,
                       const Limit& given) const {
    Limit limit = given;
    const StrokeInk::Line ink = ink_.Current();
    for (std::int32_t x = from; x < end; ++x) {
        const auto window = TruncateToInt64(walk.WindowAt(x) * kFine);
        const auto y = static_cast<std::int32_t>(window >> 32);
        const auto place = static_cast<std::size_t>(window >> kFineToPlace & (kPlaces - 1));
        const std::uint8_t* const coverage = walk.profile->coverage[place].data();
        limit.Start(x, y);
        BandDot* dot = walk.origin + x * walk.stepX + y * walk.stepY;
        for (int i = 0; i < walk.profile->across; ++i, dot += walk.stepY, limit.Next()) {
            if (coverage[i] == 0 || y + i < walk.low || y + i >= walk.high) continue;
            const unsigned part = limit.Part(walk);
            unsigned sum = coverage[i] * part;
            if (limit.cap == Cap::kRound) {
                sum += limit.Round(walk) * (255 - part);
            } else if (limit.cap == Cap::kShared) {
                sum -= std::min(sum, limit.Round(walk) * part);
            }
            if (sum > 127) ink.Cover(*dot, std::min((sum + 127) / 255, 255U));
        }
    }
}

// Both ends at once.
void ThinLines::AddShort(const Walk& walk, std::int32_t from, std::int32_t end,
                         const Limit& givenFirst, const Limit& givenSecond) const {
    Limit first = givenFirst;
    Limit second = givenSecond;
    const StrokeInk::Line ink = ink_.Current();
    for (std::int32_t x = from; x < end; ++x) {
        const auto window = TruncateToInt64(walk.WindowAt(x) * kFine);
        const auto y = static_cast<std::int32_t>(window >> 32);
        const auto place = static_cast<std::size_t>(window >> kFineToPlace & (kPlaces - 1));
        const std::uint8_t* const coverage = walk.profile->coverage[place].data();
        first.Start(x, y);
        second.Start(x, y);
        BandDot* dot = walk.origin + x * walk.stepX + y * walk.stepY;
        for (int i = 0; i < walk.profile->across;
             ++i, dot += walk.stepY, first.Next(), second.Next()) {
            if (coverage[i] == 0 || y + i < walk.low || y + i >= walk.high) continue;
            const unsigned partFirst = first.Part(walk);
            const unsigned partSecond = second.Part(walk);
            const unsigned both = std::max(partFirst + partSecond, 255U) - 255;
            unsigned sum = coverage[i] * both;
            unsigned covered = 0;
            const auto add = [&](const Limit& limit, unsigned part) {
                if (limit.cap == Cap::kFlat) return;
                const unsigned round = limit.Round(walk);
                sum += round * (255 - part);
                if (limit.cap == Cap::kShared) covered = round * 255;
            };
            add(first, partFirst);
            add(second, partSecond);
            sum -= std::min(sum, covered);
            if (sum > 127) ink.Cover(*dot, std::min((sum + 127) / 255, 255U));
        }
    }
}

}  // namespace qm::bitmap
