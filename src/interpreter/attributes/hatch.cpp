// See hatch.h. Every family is reduced to one case: lines of constant `across`, counted from 0 in
// steps of the spacing; the crossings on a line are sorted by where they lie `along` it.
#include "interpreter/attributes/hatch.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm {

namespace {

constexpr double kTiny = 1e-6;
constexpr double kHalfTurn = kTwoPi / 2.0;

// Quirk: the box starts from these bounds, so an area that lies beyond them altogether gets a box
// that reaches back to them.
constexpr Box<double> kNoBox{{2e7, 2e7}, {-2e7, -2e7}};

Box<double> BoundingBox(const std::vector<PointI>& points) {
    Box<double> box = kNoBox;
    for (const PointI p : points) {
        box.a.x = std::min<double>(box.a.x, p.x);
        box.a.y = std::min<double>(box.a.y, p.y);
        box.b.x = std::max<double>(box.b.x, p.x);
        box.b.y = std::max<double>(box.b.y, p.y);
    }
    return box;
}

bool IsWhole(double value) { return std::fabs(value - std::round(value)) < kTiny; }

// The lines of one family over a box: line k lies where Across() is `first` + k * `step`.
class Lines {
  public:
    Lines(const Box<double>& box, HatchFamily family) : step_(family.spacing) {
        const double halfTurns = family.angle / kHalfTurn;
        if (std::fabs(family.angle) < kTiny || IsWhole(halfTurns)) {
            direction_ = Direction::kHorizontal;
            Spread(box.a.y, box.b.y, family);
        } else if (IsWhole(halfTurns - 0.5)) {
            direction_ = Direction::kVertical;
            Spread(box.a.x, box.b.x, family);
        } else {
            // An oblique line is named by its x at the box's lower edge; the box casts its upper
            // corners along the lines onto that edge.
            direction_ = Direction::kOblique;
            step_ = std::fabs(family.spacing / std::sin(family.angle));
            cotangent_ = std::cos(family.angle) / std::sin(family.angle);
            baseline_ = box.a.y;
            const double cast = (box.b.y - box.a.y) * cotangent_;
            Spread(std::min(box.a.x, box.a.x - cast), std::max(box.b.x, box.b.x - cast), family);
        }
    }

    double Count() const { return count_; }

    // The first line at or beyond `p`, 0 to Count(). An edge crosses the lines from its lower end's
    // to in front of its upper end's, so that joined edges never cross a line both or neither.
    std::int64_t IndexOf(PointI p) const {
        return static_cast<std::int64_t>(
            std::clamp(std::ceil((Across(p) - first_) / step_), 0.0, count_));
    }

    // Where line `index` crosses the edge from `a` to `b`, which it does.
    PointD Crossing(std::int64_t index, PointI a, PointI b) const {
        const double at = first_ + static_cast<double>(index) * step_;
        const double from = Across(a);
        const double width = Across(b) - from;
        const double dx = static_cast<double>(b.x) - a.x;
        const double dy = static_cast<double>(b.y) - a.y;
        PointD crossing{a.x + dx * (at - from) / width, a.y + dy * (at - from) / width};
        if (direction_ == Direction::kHorizontal) crossing.y = at;
        if (direction_ == Direction::kVertical) crossing.x = at;
        return crossing;
    }

    bool Before(PointD a, PointD b) const {
        return direction_ == Direction::kHorizontal ? a.x < b.x : a.y < b.y;
    }

  private:
    enum class Direction { kHorizontal, kVertical, kOblique };

    // The first line stands one step inside, none stands beyond the end; through an anchor they
    // stand where they would anywhere.
    void Spread(double low, double high, const HatchFamily& family) {
        first_ = low + step_;
        count_ = std::max(std::trunc((high - low) / step_), 0.0);
        if (!family.anchor) return;
        const double anchor = Across(*family.anchor);
        first_ = anchor + std::ceil((low - anchor) / step_) * step_;
        count_ = std::max(std::floor((high - first_) / step_) + 1.0, 0.0);
    }

    template <typename Number>
    double Across(Point<Number> p) const {
        if (direction_ == Direction::kHorizontal) return p.y;
        if (direction_ == Direction::kVertical) return p.x;
        return p.x - (p.y - baseline_) * cotangent_;
    }

    Direction direction_ = Direction::kHorizontal;
    double first_ = 0.0;
    double step_;
    double count_ = 0.0;
    double cotangent_ = 0.0;
    double baseline_ = 0.0;
};

// An edge and the lines that cross it: from `begin` to in front of `end`.
struct Edge {
    std::int64_t begin;
    std::int64_t end;
    PointI a;
    PointI b;
};

// The edges that any line crosses, in the order in which the lines meet them.
std::vector<Edge> CrossedEdges(const PolygonGroups& area, const Lines& lines) {
    std::vector<Edge> edges;
    edges.reserve(area.points.size());
    std::size_t start = 0;
    for (const std::int32_t count : area.counts) {
        const std::size_t end = start + static_cast<std::size_t>(count);
        for (std::size_t i = start; i + 1 < end; ++i) {
            const PointI a = area.points[i];
            const PointI b = area.points[i + 1];
            const std::int64_t indexA = lines.IndexOf(a);
            const std::int64_t indexB = lines.IndexOf(b);
            if (indexA == indexB) continue;
            edges.push_back({std::min(indexA, indexB), std::max(indexA, indexB), a, b});
        }
        start = end;
    }
    std::sort(edges.begin(), edges.end(),
              [](const Edge& l, const Edge& r) { return l.begin < r.begin; });
    return edges;
}

void SendPairs(const std::vector<PointD>& crossings, const SegmentSink& sink) {
    const auto truncate = [](PointD p) {
        return PointI{TruncateToInt32(p.x), TruncateToInt32(p.y)};
    };
    for (std::size_t i = 1; i < crossings.size(); i += 2) {
        sink(truncate(crossings[i - 1]), truncate(crossings[i]));
    }
}

// Of a line with so many crossings; sorting many takes longer.
std::int64_t UnitsOf(std::size_t crossings) {
    constexpr std::size_t kFew = 64;
    return 1 + static_cast<std::int64_t>(crossings <= kFew ? crossings : 3 * crossings);
}

// Walks the lines in order and keeps the edges that the current one crosses. False when the budget
// is spent.
bool Sweep(const Lines& lines, const std::vector<Edge>& edges, const SegmentSink& sink,
           WorkBudget& budget) {
    std::vector<Edge> active;
    std::vector<PointD> crossings;
    auto next = edges.begin();
    std::int64_t index = 0;
    while (next != edges.end() || !active.empty()) {
        if (active.empty()) index = next->begin;
        for (; next != edges.end() && next->begin <= index; ++next) active.push_back(*next);
        if (!budget.Take(UnitsOf(active.size()))) return false;
        crossings.clear();
        for (const Edge& edge : active) crossings.push_back(lines.Crossing(index, edge.a, edge.b));
        std::sort(crossings.begin(), crossings.end(),
                  [&lines](PointD a, PointD b) { return lines.Before(a, b); });
        SendPairs(crossings, sink);
        ++index;
        active.erase(std::remove_if(active.begin(), active.end(),
                                    [index](const Edge& edge) { return edge.end <= index; }),
                     active.end());
    }
    return true;
}

}  // namespace

HatchResult HatchPolygons(const PolygonGroups& area, HatchFamily first, HatchFamily second,
                          const SegmentSink& sink, WorkBudget* budget) {
    WorkBudget unlimited;
    WorkBudget& work = budget != nullptr ? *budget : unlimited;
    if (area.points.empty()) return HatchResult::kInvalidArgument;
    const Box<double> box = BoundingBox(area.points);
    const auto edgeCount = static_cast<double>(area.points.size() - area.counts.size());
    for (const HatchFamily family : {first, second}) {
        if (family.spacing < kTiny) continue;
        const Lines lines(box, family);
        if (lines.Count() * edgeCount > static_cast<double>(kMaxHatchWork)) {
            work.Meet();
            return HatchResult::kOutOfMemory;
        }
        if (!Sweep(lines, CrossedEdges(area, lines), sink, work)) return HatchResult::kOutOfMemory;
    }
    return HatchResult::kDone;
}

}  // namespace qm
