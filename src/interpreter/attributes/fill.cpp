// See fill.h. Handlers: EP FP FT.
#include "interpreter/attributes/fill.h"

#include <algorithm>
#include <vector>

#include "common/numbers.h"
#include "interpreter/attributes/hatch.h"
#include "interpreter/attributes/pens.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

namespace qm {

namespace {

// The sub-polygons with more than two vertices, pen-up moves included, in plotter units.
PolygonGroups GroupVertices(const std::vector<PolygonVertex>& vertices, const CoordinateState& c) {
    PolygonGroups area;
    area.points.reserve(vertices.size());
    for (auto begin = vertices.begin(); begin != vertices.end();) {
        const auto end = std::find_if(begin, vertices.end(), [begin](const PolygonVertex& v) {
            return v.subPolygon != begin->subPolygon;
        });
        if (end - begin > 2) {
            for (auto v = begin; v != end; ++v) area.points.push_back(c.ToPlotter(v->point));
            area.counts.push_back(static_cast<std::int32_t>(end - begin));
        }
        begin = end;
    }
    return area;
}

std::uint32_t CurrentColour(const PenState& pens) { return pens.Get(pens.CurrentPen).colour; }

// One polygon is clipped to the window; several go out together and are not.
void FillSolid(Drawing& drawing, PolygonGroups& area) {
    if (area.counts.size() == 1) return drawing.EmitFilledPolygon(area.points);
    drawing.out.FilledPolyPolygon(area.points, area.counts);
}

// Hatch lines are not clipped to the window.
void FillHatched(Drawing& drawing, const FillState& fill, const PolygonGroups& area) {
    const double angle = fill.HatchAngle * kRadiansPerDegree;
    const auto spacing = static_cast<double>(fill.HatchSpacing);
    // Quirk: the second family is the first one mirrored, not turned, so that at 0 degrees every
    // line is drawn twice.
    const HatchFamily second{-angle, fill.FillType == 4 ? spacing : 0.0};
    HatchPolygons(
        area, {angle, spacing}, second,
        [&drawing](PointI from, PointI to) { drawing.out.Line(from, to); },
        &drawing.work.crossings);
}

void FillWithPattern(Drawing& drawing, std::int32_t index, PolygonGroups& area) {
    if (index == -1) return FillSolid(drawing, area);
    drawing.out.SetFillType(3, index);
    FillSolid(drawing, area);
    drawing.out.SetFillType(0, 0);
}

// Shading of 1 to 99 percent. Quirk: only a black pen is lightened, but the pen's colour is sent
// again whatever it is.
void FillShaded(Drawing& drawing, std::uint32_t penColour, std::int32_t level,
                PolygonGroups& area) {
    if (penColour == 0) {
        const auto grey = static_cast<std::uint8_t>(255 * (100 - level) / 100);
        drawing.out.SetColor(Colour{grey, grey, grey}.ToBgr());
    }
    FillSolid(drawing, area);
    drawing.out.SetColor(penColour);
}

// Shading of 0 percent. Quirk: one polygon shows its outline; several are painted white, and only
// where white is not transparent.
void FillEmpty(Drawing& drawing, const PenState& pens, PolygonGroups& area) {
    Output& out = drawing.out;
    if (area.counts.size() == 1) {
        drawing.EmitPolyline(area.points.size(), area.points.data());
    } else if (!pens.Transparency) {
        out.SetLineWidth(0);
        out.SetColor(kWhite);
        FillSolid(drawing, area);
        out.SetColor(CurrentColour(pens));
        out.SetLineWidth(drawing.lines.EmittedWidth);
    }
}

void FillArea(Drawing& drawing, const PenState& pens, const FillState& fill, PolygonGroups& area) {
    const std::int32_t type = fill.FillType;
    const std::int32_t level = fill.ShadingLevel;
    if (type == 3 || type == 4) return FillHatched(drawing, fill, area);
    if (type == 11) return FillWithPattern(drawing, fill.FillPatternIndex, area);
    if (type == 10 && level == 0) return FillEmpty(drawing, pens, area);
    if (type == 10 && level > 0 && level < 100) {
        return FillShaded(drawing, CurrentColour(pens), level, area);
    }
    FillSolid(drawing, area);
}

using VertexIterator = std::vector<PolygonVertex>::const_iterator;

void SendEdge(Drawing& drawing, VertexIterator begin, VertexIterator end) {
    std::vector<PointI> points;
    points.reserve(static_cast<std::size_t>(end - begin));
    for (; begin != end; ++begin) {
        points.push_back(drawing.coordinates.ToPlotter(begin->point));
    }
    drawing.EmitPolyline(points.size(), points.data());
}

// False: the polygon was drawn too often (PlotWork).
bool TakeVertices(Drawing& drawing) {
    return drawing.work.vertices.Take(static_cast<std::int64_t>(drawing.polygon.vertices.size()));
}

}  // namespace

namespace handlers {

// EP: the outline, one run of pen-down points a sub-polygon; a lone point is joined to the one
// before it. Quirk: a run of several points begins at its first pen-down point, so the edge from
// the pen-up move in front of it is missing; what a sub-polygon draws behind a pen-up move of its
// own is not drawn, and nothing behind it either.
void EdgePolygon(Drawing& drawing) {
    PolygonBuffer& polygon = drawing.polygon;
    if (polygon.mode) polygon.Close(drawing.motion.penDown, drawing.reading);
    if (!TakeVertices(drawing)) return;
    if (drawing.reading.edgesWhole) return EdgeBuffer(drawing);
    if (polygon.vertices.size() < 3) return;
    const VertexIterator first = polygon.vertices.cbegin();
    const VertexIterator last = polygon.vertices.cend();
    const auto isMove = [](const PolygonVertex& v) { return !v.drawn; };
    VertexIterator v = first;
    std::int32_t next = 0;  // the lowest sub-polygon that may still be drawn
    while (v != last && v->subPolygon >= next) {
        const std::int32_t number = v->subPolygon;
        const VertexIterator end = std::find_if(v, last, [number](const PolygonVertex& w) {
            return !w.drawn || w.subPolygon != number;
        });
        const bool lone = end - v == 1 && v != first;
        if (v != end) SendEdge(drawing, lone ? v - 1 : v, end);
        v = std::find_if_not(end, last, isMove);
        next = number + 1;
    }
}

// FP [rule]: 0 even-odd, 1 non-zero winding; nothing is sent for a white pen with transparency.
// Quirk: the rule is not read.
void FillPolygon(Parameters& in, Drawing& drawing, const PenState& pens, const FillState& fill) {
    PolygonBuffer& polygon = drawing.polygon;
    if (polygon.mode) polygon.Close(drawing.motion.penDown, drawing.reading);
    const bool winding = drawing.reading.fillsByType && in.GetShortOr(0) == 1;
    if (!TakeVertices(drawing)) return;
    if (drawing.reading.fillsByType) return FillBuffer(drawing, pens, fill, winding);
    if (polygon.vertices.empty() || pens.WhitePenSuppressed) return;
    drawing.out.SetLineWidth(0);
    PolygonGroups area = GroupVertices(polygon.vertices, drawing.coordinates);
    if (!area.counts.empty()) FillArea(drawing, pens, fill, area);
    drawing.out.SetLineWidth(drawing.lines.EmittedWidth);
}

// FT [type [, spacing, angle | , level | , index [, option]]]
void FillType(Parameters& in, const Reading& reading, const CoordinateState& c, FillState& fill) {
    fill.FillType = in.GetShortOr(1);
    if (reading.fillsByType) return TakeFillOptions(in, c, fill);
    if (fill.FillType == 10) {
        fill.ShadingLevel = in.GetShortOr(100);
    } else if (fill.FillType == 3 || fill.FillType == 4) {
        fill.HatchSpacing = in.GetShortOr(0);
        if (c.scaleOn) fill.HatchSpacing = TruncateToInt32(fill.HatchSpacing * c.scaleY);
        fill.HatchAngle = in.GetShortOr(0);
    } else if (fill.FillType == 11) {
        fill.FillPatternIndex = in.GetShortOr(-1);
        in.GetShortParam();
    }
}

}  // namespace handlers
}  // namespace qm
