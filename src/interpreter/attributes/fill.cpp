// See fill.h. Handlers: EP FP FT.
#include "interpreter/attributes/fill.h"

#include <algorithm>
#include <vector>

#include "common/numbers.h"
#include "interpreter/attributes/hatch.h"
#include "interpreter/attributes/polygon_clip.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

void EmitFilledPolygon(HPGLRead& reader, std::vector<PointI>& points) {
    const CoordinateState& c = reader.coordinates;
    const auto send = [&reader](std::vector<PointI>& contour) {
        reader.page.pageEmpty = false;
        reader.FilledPolygon(static_cast<std::int32_t>(contour.size()), contour.data());
    };
    if (!c.windowOn || !ReachesOutside(points, c.window)) return send(points);
    for (Contour& contour : ClipPolygon(points, c.window)) send(contour);
}

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

std::uint32_t PenColorOf(const HPGLRead& reader) {
    return reader.pens.Get(reader.pens.CurrentPen).color;
}

// One polygon is clipped to the window; several go out together and are not.
void FillSolid(HPGLRead& reader, PolygonGroups& area) {
    if (area.counts.size() == 1) return EmitFilledPolygon(reader, area.points);
    reader.page.pageEmpty = false;
    reader.FilledPolyPolygon(area.points.data(), area.counts.data(),
                             static_cast<std::int32_t>(area.counts.size()));
}

// Hatch lines are not clipped to the window.
void FillHatched(HPGLRead& reader, const PolygonGroups& area) {
    const FillState& fill = reader.fill;
    const double angle = fill.HatchAngle * kRadiansPerDegree;
    const auto spacing = static_cast<double>(fill.HatchSpacing);
    // Quirk: the second family is the first one mirrored, not turned, so that at 0 degrees every
    // line is drawn twice.
    const HatchFamily second{-angle, fill.FillType == 4 ? spacing : 0.0};
    HatchPolygons(area, {angle, spacing}, second, [&reader](PointI from, PointI to) {
        reader.page.pageEmpty = false;
        reader.Line(from.x, from.y, to.x, to.y);
    });
}

void FillWithPattern(HPGLRead& reader, PolygonGroups& area) {
    const std::int32_t index = reader.fill.FillPatternIndex;
    if (index == -1) return FillSolid(reader, area);
    reader.SetFillType(3, index);
    FillSolid(reader, area);
    reader.SetFillType(0, 0);
}

// Shading of 1 to 99 percent. Quirk: only a black pen is lightened, but the pen's colour is sent
// again whatever it is.
void FillShaded(HPGLRead& reader, PolygonGroups& area) {
    const std::uint32_t color = PenColorOf(reader);
    if (color == 0) {
        const std::int32_t lightness = 255 * (100 - reader.fill.ShadingLevel) / 100;
        reader.SetColor(static_cast<std::uint32_t>(lightness) * 0x010101U);
    }
    FillSolid(reader, area);
    reader.SetColor(color);
}

// Shading of 0 percent. Quirk: one polygon shows its outline; several are painted white, and only
// where white is not transparent.
void FillEmpty(HPGLRead& reader, PolygonGroups& area) {
    if (area.counts.size() == 1) {
        EmitPolyline(reader, area.counts.front(), area.points.data());
    } else if (!reader.pens.Transparency) {
        reader.SetLineWidth(0);
        reader.SetColor(kWhite);
        FillSolid(reader, area);
        reader.SetColor(PenColorOf(reader));
        reader.SetLineWidth(reader.lines.EmittedWidth);
    }
}

void FillArea(HPGLRead& reader, PolygonGroups& area) {
    const FillState& fill = reader.fill;
    if (fill.FillType == 3 || fill.FillType == 4) return FillHatched(reader, area);
    if (fill.FillType == 11) return FillWithPattern(reader, area);
    if (fill.FillType == 10 && fill.ShadingLevel == 0) return FillEmpty(reader, area);
    if (fill.FillType == 10 && fill.ShadingLevel > 0 && fill.ShadingLevel < 100) {
        return FillShaded(reader, area);
    }
    FillSolid(reader, area);
}

using VertexIterator = std::vector<PolygonVertex>::const_iterator;

void SendEdge(HPGLRead& reader, VertexIterator begin, VertexIterator end) {
    std::vector<PointI> points;
    points.reserve(static_cast<std::size_t>(end - begin));
    for (; begin != end; ++begin) {
        points.push_back(reader.coordinates.ToPlotter(begin->point));
    }
    EmitPolyline(reader, static_cast<std::int32_t>(points.size()), points.data());
}

}  // namespace

namespace handlers {

// EP: the outline, one run of pen-down points a sub-polygon; a lone point is joined to the one
// before it. Quirk: a run of several points begins at its first pen-down point, so the edge from
// the pen-up move in front of it is missing; what a sub-polygon draws behind a pen-up move of its
// own is not drawn, and nothing behind it either.
void EdgePolygon(HPGLRead& reader) {
    PolygonBuffer& polygon = reader.polygon;
    if (polygon.mode) polygon.Close(reader.motion.penDown);
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
        if (v != end) SendEdge(reader, lone ? v - 1 : v, end);
        v = std::find_if_not(end, last, isMove);
        next = number + 1;
    }
}

// FP; its fill rule is not read, and nothing is sent for a white pen with transparency.
void FillPolygon(HPGLRead& reader) {
    PolygonBuffer& polygon = reader.polygon;
    if (polygon.mode) polygon.Close(reader.motion.penDown);
    if (polygon.vertices.empty() || reader.pens.WhitePenSuppressed) return;
    reader.SetLineWidth(0);
    PolygonGroups area = GroupVertices(polygon.vertices, reader.coordinates);
    if (!area.counts.empty()) FillArea(reader, area);
    reader.SetLineWidth(reader.lines.EmittedWidth);
}

// FT [type [, spacing, angle | , level | , index [, option]]]
void FillType(HPGLRead& reader) {
    FillState& fill = reader.fill;
    const auto read = [&reader](std::int32_t absent) -> std::int32_t {
        const std::int16_t value = reader.GetShortParam();
        return value == kAbsentShort ? absent : value;
    };
    fill.FillType = read(1);
    fill.ShadingLevel = 100;
    if (fill.FillType == 10) {
        fill.ShadingLevel = read(100);
    } else if (fill.FillType == 3 || fill.FillType == 4) {
        fill.HatchSpacing = read(0);
        const CoordinateState& c = reader.coordinates;
        if (c.scaleOn) fill.HatchSpacing = TruncateToInt32(fill.HatchSpacing * c.scaleY);
        fill.HatchAngle = read(0);
    } else if (fill.FillType == 11) {
        fill.FillPatternIndex = read(-1);
        reader.GetShortParam();
    }
}

}  // namespace handlers
}  // namespace qm
