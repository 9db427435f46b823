// See arcs.h. Handlers: AA AR AT RT CI.
#include "interpreter/arcs.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

PointD PointOnCircle(PointD centre, double radius, double angle) {
    return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

ArcSteps CutArc(double start, double sweep) {
    ArcSteps arc;
    if (std::isnan(start) || std::isnan(sweep)) {
        arc.count = -1;
        return arc;
    }
    arc.start = start;
    arc.step = sweep >= 0.0 ? kArcStep : -kArcStep;
    arc.sweep = std::clamp(sweep, -kTwoPi, kTwoPi);
    arc.count = TruncateToInt32(arc.sweep / arc.step);
    return arc;
}

CircleThrough ThreePointCentre(PointD p0, PointD p1, PointD p2) {
    constexpr double kFarAway = 1e8;
    const auto square = [](PointD p) { return p.x * p.x + p.y * p.y; };
    const double d1 = (square(p0) - square(p1)) / 2.0;
    const double d2 = (square(p0) - square(p2)) / 2.0;
    const PointD a = p0 - p1;
    const PointD b = p0 - p2;
    const double det = a.x * b.y - a.y * b.x;
    const double nx = d1 * b.y - a.y * d2;
    const double ny = a.x * d2 - d1 * b.x;
    if ((std::fabs(nx) + std::fabs(ny)) / kFarAway >= std::fabs(det)) {
        return {{kFarAway, kFarAway}, det};
    }
    return {{nx / det, ny / det}, det};
}

namespace {

constexpr std::int32_t kFullCircleSteps = 90;
using ArcPoints = std::vector<PointI>;

// The stepped points of an arc and its exact end in plotter units. The angle is accumulated, as arc
// points in existing documents are.
void AppendArcPoints(const CoordinateState& c, PointD centre, double radius, const ArcSteps& arc,
                     ArcPoints& points) {
    double angle = arc.start;
    for (std::int32_t i = 0; i < arc.count; ++i) {
        angle += arc.step;
        points.push_back(c.ToPlotter(PointOnCircle(centre, radius, angle)));
    }
    points.push_back(c.ToPlotter(PointOnCircle(centre, radius, arc.start + arc.sweep)));
}

bool StrictlyInside(const ClipWindow& window, const ArcPoints& points) {
    return std::all_of(points.begin(), points.end(), [&window](PointI p) {
        return p.x > window.xMin && p.x < window.xMax && p.y > window.yMin && p.y < window.yMax;
    });
}

// Hands the arc to the receiver whole where it stays circular and inside the window. False: draw
// segments.
bool DrawNativeArc(HPGLRead& reader, PointD centre, double radius, const ArcSteps& arc) {
    const CoordinateState& c = reader.coordinates;
    if (!c.Uniform()) return false;
    if (c.windowOn) {
        ArcPoints points{c.ToPlotter(PointOnCircle(centre, radius, arc.start))};
        AppendArcPoints(c, centre, radius, arc, points);
        if (!StrictlyInside(c.window, points)) return false;
    }
    const PointI middle = c.ToPlotter(centre);
    const std::int32_t units = TruncateToInt32(radius * c.RadiusFactor());
    return reader.Arc(middle.x, middle.y, units, arc.start, arc.sweep) != 0;
}

void DrawSegmentedArc(HPGLRead& reader, PointD centre, double radius, const ArcSteps& arc) {
    ArcPoints points{reader.coordinates.ToPlotter(reader.motion.penPos)};
    AppendArcPoints(reader.coordinates, centre, radius, arc, points);
    EmitPolyline(reader, static_cast<std::int32_t>(points.size()), points.data());
}

void RecordArc(HPGLRead& reader, PointD centre, double radius, const ArcSteps& arc) {
    double angle = arc.start;
    for (std::int32_t i = 0; i < arc.count; ++i) {
        angle += arc.step;
        DrawTo(reader, PointOnCircle(centre, radius, angle));
    }
}

}  // namespace

void TessellateArc(HPGLRead& reader, PointD centre, double radius, double start, double sweep,
                   bool connect) {
    start = std::fmod(start, kTwoPi);
    // Quirk: the end for `connect` comes from the whole sweep although the arc is limited to one
    // turn.
    const double end = std::fmod(start + sweep, kTwoPi);
    const ArcSteps arc = CutArc(start, sweep);
    if (arc.count < 0) return;
    if (connect) DrawTo(reader, PointOnCircle(centre, radius, arc.start));
    if (reader.polygon.mode) {
        RecordArc(reader, centre, radius, arc);
    } else {
        if (!DrawNativeArc(reader, centre, radius, arc)) {
            DrawSegmentedArc(reader, centre, radius, arc);
        }
        reader.motion.penPos = PointOnCircle(centre, radius, arc.start + arc.sweep);
    }
    if (connect) DrawTo(reader, PointOnCircle(centre, radius, end));
    reader.page.pageEmpty = false;
}

namespace {

// An arc from the pen about `centre`. Quirk: drawn whatever the pen state is.
void ArcAbout(HPGLRead& reader, PointD centre, double sweepDegrees) {
    const PointD arm = reader.motion.penPos - centre;
    if (arm.x == 0.0 && arm.y == 0.0) return;
    reader.arcs.arcCentre = centre;
    TessellateArc(reader, centre, Length(arm.x, arm.y), std::atan2(arm.y, arm.x),
                  sweepDegrees * kRadiansPerDegree, true);
}

// An arc from the pen through p1 to p2.
void ArcThrough(HPGLRead& reader, PointD p1, PointD p2) {
    const PointD p0 = reader.motion.penPos;
    const CircleThrough circle = ThreePointCentre(p0, p1, p2);
    const PointD centre = circle.centre;
    reader.arcs.threePointCentre = centre;
    double a0 = std::atan2(p0.y - centre.y, p0.x - centre.x);
    double a2 = std::atan2(p2.y - centre.y, p2.x - centre.x);
    if (circle.det < 0.0) {
        while (a2 > a0) a0 += kTwoPi;
    } else {
        while (a0 > a2) a2 += kTwoPi;
    }
    TessellateArc(reader, centre, Length(p1.x - centre.x, p1.y - centre.y), a0, a2 - a0, false);
    DrawTo(reader, p2);
}

// A circle as a sub-polygon of its own; the pen ends at the centre.
void RecordCircle(HPGLRead& reader, PointD centre, double radius) {
    NextSubPolygon(reader);
    MoveTo(reader, {centre.x + radius, centre.y});
    double angle = 0.0;
    for (std::int32_t i = 0; i < kFullCircleSteps; ++i) {
        DrawTo(reader, PointOnCircle(centre, radius, angle));  // the first repeats the start point
        angle += kArcStep;
    }
    DrawTo(reader, PointOnCircle(centre, radius, 0.0));
    reader.motion.penPos = centre;
    NextSubPolygon(reader);
}

void DrawSegmentedCircle(HPGLRead& reader, PointD centre, double radius) {
    ArcPoints points;
    double angle = 0.0;
    for (std::int32_t i = 0; i < kFullCircleSteps; ++i) {
        points.push_back(reader.coordinates.ToPlotter(PointOnCircle(centre, radius, angle)));
        angle += kArcStep;
    }
    points.push_back(reader.coordinates.ToPlotter(PointOnCircle(centre, radius, 0.0)));
    EmitPolyline(reader, static_cast<std::int32_t>(points.size()), points.data());
}

}  // namespace

namespace handlers {

// AA x, y, sweep [, chord]; the chord tolerance is not read.
void ArcAbsolute(HPGLRead& reader) {
    if (reader.GetParams(3) < 3 || reader.params[2] == 0.0) return;
    ArcAbout(reader, {reader.params[0], reader.params[1]}, reader.params[2]);
}

// AR dx, dy, sweep [, chord]. Quirk: unlike AA a sweep of 0 is drawn.
void ArcRelative(HPGLRead& reader) {
    if (reader.GetParams(3) < 3) return;
    const PointD offset{reader.params[0], reader.params[1]};
    ArcAbout(reader, reader.motion.penPos + offset, reader.params[2]);
}

// AT x1, y1, x2, y2 [, chord]: through (x1, y1) to (x2, y2).
void ArcAbsoluteThreePoint(HPGLRead& reader) {
    if (reader.GetParams(4) < 4) return;
    const auto& v = reader.params;
    ArcThrough(reader, {v[0], v[1]}, {v[2], v[3]});
}

// RT dx1, dy1, dx2, dy2 [, chord]
void ArcRelativeThreePoint(HPGLRead& reader) {
    if (reader.GetParams(4) < 4) return;
    const auto& v = reader.params;
    const PointD pen = reader.motion.penPos;
    ArcThrough(reader, pen + PointD{v[0], v[1]}, pen + PointD{v[2], v[3]});
}

// CI radius [, chord]; the pen does not move. A window does not clip a native circle.
void Circle(HPGLRead& reader) {
    if (reader.GetParams(1) < 1) return;
    const double radius = reader.params[0];
    const PointD pen = reader.motion.penPos;
    const CoordinateState& c = reader.coordinates;
    if (reader.polygon.mode) {
        RecordCircle(reader, pen, radius);
    } else if (!c.Uniform()) {
        DrawSegmentedCircle(reader, pen, radius);
    } else {
        const PointI centre = c.ToPlotter(pen);
        reader.Circle(centre.x, centre.y, TruncateToInt32(radius * c.RadiusFactor()));
    }
    reader.page.pageEmpty = false;
}

}  // namespace handlers
}  // namespace qm
