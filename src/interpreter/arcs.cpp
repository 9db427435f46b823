// See arcs.h. Handlers: AA AR AT RT CI.
#include "interpreter/arcs.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "common/numbers.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

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
bool DrawNativeArc(Drawing& drawing, PointD centre, double radius, const ArcSteps& arc) {
    const CoordinateState& c = drawing.coordinates;
    if (!c.Uniform()) return false;
    if (c.windowOn) {
        ArcPoints points{c.ToPlotter(PointOnCircle(centre, radius, arc.start))};
        AppendArcPoints(c, centre, radius, arc, points);
        if (!StrictlyInside(c.window, points)) return false;
    }
    const std::int32_t units = TruncateToInt32(radius * c.RadiusFactor());
    return drawing.out.Arc(c.ToPlotter(centre), units, arc.start, arc.sweep);
}

void DrawSegmentedArc(Drawing& drawing, PointD centre, double radius, const ArcSteps& arc) {
    ArcPoints points{drawing.coordinates.ToPlotter(drawing.motion.penPos)};
    AppendArcPoints(drawing.coordinates, centre, radius, arc, points);
    drawing.EmitPolyline(points.size(), points.data());
}

void RecordArc(Drawing& drawing, PointD centre, double radius, const ArcSteps& arc) {
    double angle = arc.start;
    for (std::int32_t i = 0; i < arc.count; ++i) {
        angle += arc.step;
        drawing.DrawTo(PointOnCircle(centre, radius, angle));
    }
}

// Draws an arc (current units, radians). With `connect` segments lead from the pen to its start and
// from its end to the end's normalised twin, which is how AA and AR leave the pen. Outside polygon
// mode the pen ends at the exact end.
void TessellateArc(Drawing& drawing, PointD centre, double radius, double start, double sweep,
                   bool connect) {
    start = std::fmod(start, kTwoPi);
    // Quirk: the end for `connect` comes from the whole sweep although the arc is limited to one
    // turn.
    const ArcSteps arc = CutArc(start, sweep);
    if (arc.count < 0) return;
    const bool limited = drawing.reading.drawsPenDown;
    const double end = std::fmod(start + (limited ? arc.sweep : sweep), kTwoPi);
    if (connect) drawing.DrawTo(PointOnCircle(centre, radius, arc.start));
    if (drawing.polygon.mode) {
        RecordArc(drawing, centre, radius, arc);
    } else {
        if (!DrawNativeArc(drawing, centre, radius, arc)) {
            DrawSegmentedArc(drawing, centre, radius, arc);
        }
        drawing.motion.penPos = PointOnCircle(centre, radius, arc.start + arc.sweep);
    }
    if (connect) drawing.DrawTo(PointOnCircle(centre, radius, end));
    drawing.out.MarkDrawn();
}

// With the pen up a plotter only goes where the arc ends.
bool OnlyMoves(const Drawing& drawing) {
    return drawing.reading.drawsPenDown && !drawing.motion.penDown && !drawing.polygon.mode;
}

void MoveAlongArc(Drawing& drawing, PointD centre, double sweepDegrees) {
    const PointD arm = drawing.motion.penPos - centre;
    drawing.MoveTo(PointOnCircle(centre, Length(arm.x, arm.y),
                                 std::atan2(arm.y, arm.x) + sweepDegrees * kRadiansPerDegree));
}

// An arc from the pen about `centre`. Quirk: drawn whatever the pen state is.
void ArcAbout(Drawing& drawing, PointD centre, double sweepDegrees) {
    const PointD arm = drawing.motion.penPos - centre;
    if (arm.x == 0.0 && arm.y == 0.0) return;
    if (OnlyMoves(drawing)) return MoveAlongArc(drawing, centre, sweepDegrees);
    TessellateArc(drawing, centre, Length(arm.x, arm.y), std::atan2(arm.y, arm.x),
                  sweepDegrees * kRadiansPerDegree, true);
}

// An arc from the pen through p1 to p2.
void ArcThrough(Drawing& drawing, PointD p1, PointD p2) {
    if (OnlyMoves(drawing)) return drawing.MoveTo(p2);
    const PointD p0 = drawing.motion.penPos;
    const CircleThrough circle = ThreePointCentre(p0, p1, p2);
    const PointD centre = circle.centre;
    double a0 = std::atan2(p0.y - centre.y, p0.x - centre.x);
    double a2 = std::atan2(p2.y - centre.y, p2.x - centre.x);
    if (circle.det < 0.0) {
        while (a2 > a0) a0 += kTwoPi;
    } else {
        while (a0 > a2) a2 += kTwoPi;
    }
    TessellateArc(drawing, centre, Length(p1.x - centre.x, p1.y - centre.y), a0, a2 - a0, false);
    drawing.DrawTo(p2);
}

// A circle as a sub-polygon of its own; the pen ends at the centre.
void RecordCircle(Drawing& drawing, PointD centre, double radius) {
    drawing.NextSubPolygon();
    drawing.MoveTo({centre.x + radius, centre.y});
    double angle = 0.0;
    for (std::int32_t i = 0; i < kFullCircleSteps; ++i) {
        drawing.DrawTo(PointOnCircle(centre, radius, angle));  // the first repeats the start point
        angle += kArcStep;
    }
    drawing.DrawTo(PointOnCircle(centre, radius, 0.0));
    drawing.motion.penPos = centre;
    drawing.NextSubPolygon();
}

void DrawSegmentedCircle(Drawing& drawing, PointD centre, double radius) {
    ArcPoints points;
    double angle = 0.0;
    for (std::int32_t i = 0; i < kFullCircleSteps; ++i) {
        points.push_back(drawing.coordinates.ToPlotter(PointOnCircle(centre, radius, angle)));
        angle += kArcStep;
    }
    points.push_back(drawing.coordinates.ToPlotter(PointOnCircle(centre, radius, 0.0)));
    drawing.EmitPolyline(points.size(), points.data());
}

}  // namespace

namespace handlers {

// AA x, y, sweep [, chord]; the chord tolerance is not read.
void ArcAbsolute(Parameters& in, Drawing& drawing) {
    if (in.GetParams(3) < 3 || in.slots[2] == 0.0) return;
    ArcAbout(drawing, in.PointAt(0), in.slots[2]);
}

// AR dx, dy, sweep [, chord]. Quirk: unlike AA a sweep of 0 is drawn.
void ArcRelative(Parameters& in, Drawing& drawing) {
    if (in.GetParams(3) < 3) return;
    if (drawing.reading.drawsPenDown && in.slots[2] == 0.0) return;
    ArcAbout(drawing, drawing.motion.penPos + in.PointAt(0), in.slots[2]);
}

// AT x1, y1, x2, y2 [, chord]: through (x1, y1) to (x2, y2).
void ArcAbsoluteThreePoint(Parameters& in, Drawing& drawing) {
    if (in.GetParams(4) < 4) return;
    ArcThrough(drawing, in.PointAt(0), in.PointAt(2));
}

// RT dx1, dy1, dx2, dy2 [, chord]
void ArcRelativeThreePoint(Parameters& in, Drawing& drawing) {
    if (in.GetParams(4) < 4) return;
    const PointD pen = drawing.motion.penPos;
    ArcThrough(drawing, pen + in.PointAt(0), pen + in.PointAt(2));
}

// CI radius [, chord]; the pen does not move. Quirk: a window does not clip a native circle.
void Circle(Parameters& in, Drawing& drawing) {
    if (in.GetParams(1) < 1) return;
    const double radius = in.slots[0];
    const PointD pen = drawing.motion.penPos;
    const CoordinateState& c = drawing.coordinates;
    if (drawing.polygon.mode) {
        RecordCircle(drawing, pen, radius);
    } else if (!c.Uniform() || (c.windowOn && drawing.reading.clipsCircles)) {
        DrawSegmentedCircle(drawing, pen, radius);
    } else {
        drawing.out.Circle(c.ToPlotter(pen), TruncateToInt32(radius * c.RadiusFactor()));
    }
    drawing.out.MarkDrawn();
}

}  // namespace handlers
}  // namespace qm
