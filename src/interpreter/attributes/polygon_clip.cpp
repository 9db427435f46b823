// Clips a filled polygon to the soft-clip window; see polygon.h.
#include "interpreter/attributes/polygon.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "clipping/winding.h"
#include "common/numbers.h"

extern "C" {
#include <gpc.h>
}

namespace qm {

namespace {

using Vertices = std::vector<gpc_vertex>;

Vertices ToVertices(const Contour& points) {
    Vertices vertices;
    vertices.reserve(points.size());
    for (const PointI p : points) {
        vertices.push_back({static_cast<double>(p.x), static_cast<double>(p.y)});
    }
    return vertices;
}

template <typename Iterator>
Contour Truncated(Iterator begin, Iterator end) {
    Contour points;
    points.reserve(static_cast<std::size_t>(end - begin));
    std::transform(begin, end, std::back_inserter(points), [](gpc_vertex v) {
        return PointI{TruncateToInt32(v.x), TruncateToInt32(v.y)};
    });
    return points;
}

// A polygon of one contour, lent to the clipper.
class OneContour {
  public:
    explicit OneContour(Vertices vertices)
        : vertices_(std::move(vertices)),
          contour_{static_cast<int>(vertices_.size()), vertices_.data()} {}
    OneContour(const OneContour&) = delete;
    OneContour& operator=(const OneContour&) = delete;

    gpc_polygon* Get() { return &polygon_; }

  private:
    Vertices vertices_;
    gpc_vertex_list contour_;
    int hole_ = 0;
    gpc_polygon polygon_{1, &hole_, &contour_};
};

// A polygon that the clipper made.
struct ClipResult {
    ClipResult() = default;
    ~ClipResult() { gpc_free_polygon(&polygon); }
    ClipResult(const ClipResult&) = delete;
    ClipResult& operator=(const ClipResult&) = delete;

    gpc_polygon polygon{};
};

std::vector<Contour> ClipExactly(Vertices polygon, const ClipWindow& window) {
    OneContour subject(std::move(polygon));
    OneContour clip(ToVertices({{window.xMin, window.yMin},
                                {window.xMax, window.yMin},
                                {window.xMax, window.yMax},
                                {window.xMin, window.yMax},
                                {window.xMin, window.yMin}}));
    ClipResult result;
    gpc_polygon_clip(GPC_INT, subject.Get(), clip.Get(), &result.polygon);
    std::vector<Contour> contours;
    for (int i = 0; i < result.polygon.num_contours; ++i) {
        const gpc_vertex_list& contour = result.polygon.contour[i];
        contours.push_back(Truncated(contour.vertex, contour.vertex + contour.num_vertices));
    }
    return contours;
}

// --- Polygons that meet themselves too often ----------------------------------------------------

struct BoxedEdge {
    gpc_vertex a;
    gpc_vertex b;
    double xMin;
    double xMax;
};

// Positive when `p` lies left of the edge. Rounded, which is good enough for counting.
double Side(const BoxedEdge& edge, gpc_vertex p) {
    return (edge.b.x - edge.a.x) * (p.y - edge.a.y) - (edge.b.y - edge.a.y) * (p.x - edge.a.x);
}

bool Meet(const BoxedEdge& l, const BoxedEdge& r) {
    return std::max(l.a.y, l.b.y) >= std::min(r.a.y, r.b.y) &&
           std::max(r.a.y, r.b.y) >= std::min(l.a.y, l.b.y) &&
           !(Side(l, r.a) * Side(l, r.b) > 0.0) && !(Side(r, l.a) * Side(r, l.b) > 0.0);
}

void AddEdges(const Vertices& polygon, std::vector<BoxedEdge>& edges) {
    if (polygon.empty()) return;
    gpc_vertex previous = polygon.back();
    for (const gpc_vertex v : polygon) {
        edges.push_back({previous, v, std::min(previous.x, v.x), std::max(previous.x, v.x)});
        previous = v;
    }
}

// Whether more than kMaxEdgeMeetings pairs of edges touch or cross, neighbours counted, or
// comparing them is more than the budget has. So few vertices that comparing them costs next to
// nothing are taken for free.
bool MeetTooOften(const std::vector<Vertices>& polygons, WorkBudget* budget) {
    constexpr std::size_t kFewVertices = 64;
    std::size_t count = 0;
    for (const Vertices& polygon : polygons) count += polygon.size();
    if (count <= kFewVertices) return false;
    std::vector<BoxedEdge> edges;
    edges.reserve(count);
    for (const Vertices& polygon : polygons) AddEdges(polygon, edges);
    std::sort(edges.begin(), edges.end(),
              [](const BoxedEdge& l, const BoxedEdge& r) { return l.xMin < r.xMin; });
    std::int64_t meetings = 0;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const std::int64_t before = meetings;
        std::size_t k = i + 1;
        for (; k < edges.size() && edges[k].xMin <= edges[i].xMax; ++k) {
            if (Meet(edges[i], edges[k])) ++meetings;
        }
        const auto pairs = static_cast<std::int64_t>(k - i);
        const std::int64_t units = pairs + (meetings - before) * kMeetingCost;
        if (budget != nullptr && !budget->Take(units)) return true;
        if (meetings > kMaxEdgeMeetings) return true;
    }
    return false;
}

// One side of the window: the vertices v with sign * (v.*along - edge) <= 0 stay.
struct HalfPlane {
    double gpc_vertex::*along;
    double gpc_vertex::*across;
    double edge;
    double sign;

    bool Inside(gpc_vertex v) const { return sign * (v.*along - edge) <= 0.0; }
    gpc_vertex Crossing(gpc_vertex a, gpc_vertex b) const {
        gpc_vertex crossing{};
        crossing.*along = edge;
        crossing.*across =
            a.*across + (b.*across - a.*across) * (edge - a.*along) / (b.*along - a.*along);
        return crossing;
    }
};

// Cuts a contour at one side; pieces stay joined along it, where their edges cover no area.
Vertices CutAt(const HalfPlane& side, const Vertices& polygon) {
    Vertices kept;
    if (polygon.empty()) return kept;
    gpc_vertex previous = polygon.back();
    for (const gpc_vertex v : polygon) {
        if (side.Inside(v) != side.Inside(previous)) kept.push_back(side.Crossing(previous, v));
        if (side.Inside(v)) kept.push_back(v);
        previous = v;
    }
    return kept;
}

std::vector<Contour> ClipJoined(Vertices polygon, const ClipWindow& window) {
    const std::array<HalfPlane, 4> sides{{
        {&gpc_vertex::x, &gpc_vertex::y, static_cast<double>(window.xMin), -1.0},
        {&gpc_vertex::x, &gpc_vertex::y, static_cast<double>(window.xMax), 1.0},
        {&gpc_vertex::y, &gpc_vertex::x, static_cast<double>(window.yMin), -1.0},
        {&gpc_vertex::y, &gpc_vertex::x, static_cast<double>(window.yMax), 1.0},
    }};
    for (const HalfPlane& side : sides) polygon = CutAt(side, polygon);
    if (polygon.empty()) return {};
    return {Truncated(polygon.begin(), polygon.end())};
}

}  // namespace

bool ReachesOutside(const Contour& polygon, const ClipWindow& window) {
    return std::any_of(polygon.begin(), polygon.end(), [&window](PointI p) {
        return p.x < window.xMin || p.x > window.xMax || p.y < window.yMin || p.y > window.yMax;
    });
}

std::vector<Contour> ClipPolygon(const Contour& polygon, const ClipWindow& window,
                                 WorkBudget* budget) {
    std::vector<Vertices> polygons{ToVertices(polygon)};
    const bool joined = MeetTooOften(polygons, budget);
    Vertices& vertices = polygons.front();
    return joined ? ClipJoined(std::move(vertices), window)
                  : ClipExactly(std::move(vertices), window);
}

std::vector<Contour> WoundAround(std::vector<Contour> contours, WorkBudget* budget) {
    std::vector<Vertices> polygons;
    std::transform(contours.begin(), contours.end(), std::back_inserter(polygons), ToVertices);
    if (!MeetTooOften(polygons, budget)) ResolveWinding(contours);
    return contours;
}

}  // namespace qm
