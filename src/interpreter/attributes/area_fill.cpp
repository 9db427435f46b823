// Areas as a plotter fills and edges them; see fill.h.

#include <algorithm>
#include <cmath>

#include "common/colour.h"
#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/arcs.h"
#include "interpreter/attributes/fill.h"
#include "interpreter/attributes/hatch.h"
#include "interpreter/attributes/pens.h"
#include "interpreter/attributes/polygon.h"
#include "interpreter/lexer.h"
#include "interpreter/pen_motion.h"

namespace qm {

namespace {

// The fill types of FT.
constexpr std::int32_t kHatched = 3;
constexpr std::int32_t kCrossHatched = 4;
constexpr std::int32_t kShaded = 10;
constexpr std::int32_t kUserPattern = 11;
constexpr std::int32_t kLinePattern = 21;

// Calls take(begin, end) for the vertices of each sub-polygon.
template <typename Take>
void ForEachSubPolygon(const std::vector<PolygonVertex>& vertices, Take take) {
    for (auto begin = vertices.begin(); begin != vertices.end();) {
        const auto end = std::find_if(begin, vertices.end(), [begin](const PolygonVertex& v) {
            return v.subPolygon != begin->subPolygon;
        });
        take(begin, end);
        begin = end;
    }
}

// Which area of the buffer is meant.
struct Area {
    bool winding = false;  // what the edges wind around, not what an odd number of them encloses
    bool clipped = false;  // to the window
};

void AppendGroup(PolygonGroups& area, std::vector<PointI> ring) {
    if (ring.size() < 3) return;
    if (!(ring.front() == ring.back())) ring.push_back(ring.front());
    area.points.insert(area.points.end(), ring.begin(), ring.end());
    area.counts.push_back(static_cast<std::int32_t>(ring.size()));
}

// The buffer's sub-polygons in plotter units.
std::vector<Contour> ContoursOfBuffer(const Drawing& drawing) {
    const CoordinateState& c = drawing.coordinates;
    std::vector<Contour> contours;
    ForEachSubPolygon(drawing.polygon.vertices, [&](auto begin, auto end) {
        Contour& contour = contours.emplace_back();
        std::transform(begin, end, std::back_inserter(contour),
                       [&c](const PolygonVertex& v) { return c.ToPlotter(v.point); });
    });
    return contours;
}

// What is to be filled of the buffer, by the even-odd rule. Each contour is clipped for itself:
// what an even number of them covers stays so.
PolygonGroups AreaOfBuffer(Drawing& drawing, Area area) {
    const CoordinateState& c = drawing.coordinates;
    std::vector<Contour> contours = ContoursOfBuffer(drawing);
    if (area.winding) contours = WoundAround(std::move(contours), &drawing.work.edgePairs);
    PolygonGroups groups;
    for (Contour& contour : contours) {
        if (!area.clipped || !c.windowOn || !ReachesOutside(contour, c.window)) {
            AppendGroup(groups, std::move(contour));
        } else if (contour.size() > 2) {
            for (Contour& part : ClipPolygon(contour, c.window, &drawing.work.edgePairs)) {
                AppendGroup(groups, std::move(part));
            }
        }
    }
    return groups;
}

void SendSolid(Drawing& drawing, PolygonGroups& area) {
    Output& out = drawing.out;
    if (area.counts.empty()) return;
    out.SetLineWidth(0);
    if (area.counts.size() == 1) {
        out.FilledPolygon(area.points);
    } else {
        out.FilledPolyPolygon(area.points, area.counts);
    }
    out.SetLineWidth(drawing.lines.EmittedWidth);
}

// Lines through the anchor corner, with the pen's width and line type.
void HatchBuffer(Drawing& drawing, const FillState& fill, bool winding, double angle,
                 double spacing, bool crossed) {
    const PolygonGroups area = AreaOfBuffer(drawing, {winding, false});
    if (area.counts.empty()) return;
    const double radians = angle * kRadiansPerDegree;
    const HatchFamily first{radians, spacing, fill.anchor};
    const HatchFamily second{radians + kTwoPi / 4.0, crossed ? spacing : 0.0, fill.anchor};
    HatchPolygons(
        area, first, second, [&drawing](PointI from, PointI to) { drawing.EmitSegment(from, to); },
        &drawing.work.crossings);
}

// FT21: horizontal, vertical, two diagonals, crossed, crossed diagonals, 16 dots at 300 dots per
// inch apart (PCL 5, "Cross-hatch patterns").
void HatchByNumber(Drawing& drawing, const FillState& fill, bool winding) {
    constexpr double kSpacing = 16.0 * kUnitsPerInch / 300.0;
    constexpr double kAngles[] = {0.0, 90.0, 45.0, 135.0, 0.0, 45.0};
    const std::int32_t number = std::clamp(fill.FillPatternIndex, 1, 6);
    HatchBuffer(drawing, fill, winding, kAngles[number - 1], kSpacing, number > 4);
}

// `level` percent of the colour, the rest paper.
std::uint32_t Shade(std::uint32_t colour, std::int32_t level) {
    const auto [red, green, blue] = Colour::FromBgr(colour);
    const auto mixed = [level](std::uint8_t component) {
        return static_cast<std::uint8_t>(255 - (255 - component) * level / 100);
    };
    return Colour{mixed(red), mixed(green), mixed(blue)}.ToBgr();
}

void FillShadedBuffer(Drawing& drawing, const PenState& pens, std::int32_t level, bool winding) {
    level = std::clamp(level, 0, 100);
    if (level == 0 && pens.Transparency) return;
    const std::uint32_t colour = pens.Get(pens.CurrentPen).colour;
    PolygonGroups area = AreaOfBuffer(drawing, {winding, true});
    drawing.out.SetColor(Shade(colour, level));
    SendSolid(drawing, area);
    drawing.out.SetColor(colour);
}

void SendEdge(Drawing& drawing, std::vector<PointI>& points) {
    if (points.size() > 1) drawing.EmitPolyline(points.size(), points.data());
    points.clear();
}

// The buffer holds one closed ring from now on.
void BufferRing(PolygonBuffer& polygon, const std::vector<PointD>& ring) {
    polygon.Clear();
    for (const PointD point : ring) polygon.vertices.push_back({point, 0, true});
    polygon.vertices.push_back({ring.front(), 0, true});
}

}  // namespace

void TakeFillOptions(Parameters& in, const CoordinateState& c, FillState& fill) {
    double first = 0.0;
    double second = 0.0;
    const bool one = in.GetRealParam(first);
    const bool two = one && in.GetRealParam(second);
    const std::int32_t type = fill.FillType;
    if (type == kHatched || type == kCrossHatched) {
        if (one) fill.spacing = first * (c.scaleOn ? std::fabs(c.scaleX) : 1.0);
        if (two) fill.angle = second;
    } else if (type == kShaded) {
        fill.ShadingLevel = one ? TruncateToInt32(first) : 50;
    } else if (type == kUserPattern || type == kLinePattern) {
        fill.FillPatternIndex = one ? TruncateToInt32(first) : 1;
    }
}

void FillBuffer(Drawing& drawing, const PenState& pens, const FillState& fill, bool winding) {
    if (pens.WhitePenSuppressed) return;
    const std::int32_t type = fill.FillType;
    if (type == kHatched || type == kCrossHatched) {
        constexpr double kDefaultSpacing = 0.01;  // of the distance of P1 and P2
        const double spacing =
            fill.spacing > 0.0 ? fill.spacing : kDefaultSpacing * drawing.coordinates.p1p2Distance;
        return HatchBuffer(drawing, fill, winding, fill.angle, spacing, type == kCrossHatched);
    }
    if (type == kLinePattern) return HatchByNumber(drawing, fill, winding);
    if (type == kShaded) return FillShadedBuffer(drawing, pens, fill.ShadingLevel, winding);
    PolygonGroups area = AreaOfBuffer(drawing, {winding, true});
    if (type == kUserPattern) drawing.out.SetFillType(3, fill.FillPatternIndex);
    SendSolid(drawing, area);
    if (type == kUserPattern) drawing.out.SetFillType(0, 0);
}

void EdgeBuffer(Drawing& drawing) {
    ForEachSubPolygon(drawing.polygon.vertices, [&drawing](auto begin, auto end) {
        std::vector<PointI> points;
        for (auto v = begin; v != end; ++v) {
            if (v != begin && !v->drawn) SendEdge(drawing, points);
            points.push_back(drawing.coordinates.ToPlotter(v->point));
        }
        SendEdge(drawing, points);
    });
}

bool BufferRectangle(Drawing& drawing, PointD corner) {
    if (drawing.polygon.mode) return false;
    const PointD pen = drawing.motion.penPos;
    BufferRing(drawing.polygon, {pen, {corner.x, pen.y}, corner, {pen.x, corner.y}});
    return true;
}

bool BufferWedge(Drawing& drawing, double radius, const ArcSteps& arc) {
    if (drawing.polygon.mode || arc.count < 0) return false;
    const PointD centre = drawing.motion.penPos;
    std::vector<PointD> ring;
    if (std::fabs(arc.sweep) < kTwoPi) ring.push_back(centre);
    for (std::int32_t i = 0; i <= arc.count; ++i) {
        ring.push_back(PointOnCircle(centre, radius, arc.start + i * arc.step));
    }
    ring.push_back(PointOnCircle(centre, radius, arc.start + arc.sweep));
    BufferRing(drawing.polygon, ring);
    return true;
}

}  // namespace qm
