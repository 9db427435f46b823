// See arcs.h. Handlers: AA AR AT RT CI CT.
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

double ChordOf(const PenMotion& motion, double number, double radius) {
    constexpr double kRound = 5.0 * kRadiansPerDegree;
    double chord = number * kRadiansPerDegree;
    if (motion.chordByDeviation) {
        chord = 2.0 * std::acos(std::clamp(1.0 - number / std::fabs(radius), -1.0, 1.0));
    }
    return chord > kRound ? std::min(chord, kTwoPi / 2.0) : 0.0;
}

ArcSteps CutArc(double start, double sweep, double chord) {
    ArcSteps arc;
    if (std::isnan(start) || std::isnan(sweep)) {
        arc.count = -1;
        return arc;
    }
    arc.start = start;
    arc.step = sweep >= 0.0 ? kArcStep : -kArcStep;
    arc.sweep = std::clamp(sweep, -kTwoPi, kTwoPi);
    arc.count = TruncateToInt32(arc.sweep / arc.step);
    if (chord > 0.0) {
        constexpr double kRounding = 1e-6;  // of the angles' constants
        const double steps = std::max(std::ceil(std::fabs(arc.sweep) / chord - kRounding), 1.0);
        arc.step = arc.sweep / steps;
        arc.count = TruncateToInt32(steps) - 1;
    }
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
    if (!c.Uniform() || drawing.lines.dashes.adaptive) return false;
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
                   double chord, bool connect) {
    start = std::fmod(start, kTwoPi);
    // Quirk: the end for `connect` comes from the whole sweep although the arc is limited to one
    // turn.
    const ArcSteps arc = CutArc(start, sweep, chord);
    if (arc.count < 0) return;
    const bool limited = drawing.reading.drawsPenDown;
    const double end = std::fmod(start + (limited ? arc.sweep : sweep), kTwoPi);
    if (connect) drawing.DrawTo(PointOnCircle(centre, radius, arc.start));
    if (drawing.polygon.mode) {
        RecordArc(drawing, centre, radius, arc);
    } else {
        if (chord > 0.0 || !DrawNativeArc(drawing, centre, radius, arc)) {
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

// An arc from the pen about `centre`; `chord` is the number that may close the parameters. Quirk:
// drawn whatever the pen state is.
void ArcAbout(Drawing& drawing, PointD centre, double sweepDegrees, double chord) {
    const PointD arm = drawing.motion.penPos - centre;
    if (arm.x == 0.0 && arm.y == 0.0) return;
    if (OnlyMoves(drawing)) return MoveAlongArc(drawing, centre, sweepDegrees);
    const double radius = Length(arm.x, arm.y);
    TessellateArc(drawing, centre, radius, std::atan2(arm.y, arm.x),
                  sweepDegrees * kRadiansPerDegree, ChordOf(drawing.motion, chord, radius), true);
}

// An arc from the pen through p1 to p2; `chord` as above.
void ArcThrough(Drawing& drawing, PointD p1, PointD p2, double chord) {
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
    const double radius = Length(p1.x - centre.x, p1.y - centre.y);
    TessellateArc(drawing, centre, radius, a0, a2 - a0, ChordOf(drawing.motion, chord, radius),
                  false);
    drawing.DrawTo(p2);
}

// A circle as a sub-polygon of its own; the pen ends at the centre.
void RecordCircle(Drawing& drawing, PointD centre, double radius, double chord) {
    drawing.NextSubPolygon();
    drawing.MoveTo({centre.x + radius, centre.y});
    if (chord > 0.0) {
        RecordArc(drawing, centre, radius, CutArc(0.0, kTwoPi, chord));
        drawing.DrawTo({centre.x + radius, centre.y});
        drawing.motion.penPos = centre;
        return drawing.NextSubPolygon();
    }
    double angle = 0.0;
    for (std::int32_t i = 0; i < kFullCircleSteps; ++i) {
        drawing.DrawTo(PointOnCircle(centre, radius, angle));  // the first repeats the start point
        angle += kArcStep;
    }
    drawing.DrawTo(PointOnCircle(centre, radius, 0.0));
    drawing.motion.penPos = centre;
    drawing.NextSubPolygon();
}

void DrawSegmentedCircle(Drawing& drawing, PointD centre, double radius, double chord) {
    ArcPoints points;
    if (chord > 0.0) {
        points.push_back(drawing.coordinates.ToPlotter({centre.x + radius, centre.y}));
        AppendArcPoints(drawing.coordinates, centre, radius, CutArc(0.0, kTwoPi, chord), points);
        return drawing.EmitPolyline(points.size(), points.data());
    }
    double angle = 0.0;
    for (std::int32_t i = 0; i < kFullCircleSteps; ++i) {
        points.push_back(drawing.coordinates.ToPlotter(PointOnCircle(centre, radius, angle)));
        angle += kArcStep;
    }
    points.push_back(drawing.coordinates.ToPlotter(PointOnCircle(centre, radius, 0.0)));
    drawing.EmitPolyline(points.size(), points.data());
}

// The number behind an arc's others; 0 without one.
// Quirk: not read; every arc is as round as the receiver draws it.
double ReadChord(Parameters& in, const Drawing& drawing) {
    double chord = 0.0;
    if (drawing.reading.cutsByChord) in.GetRealParam(chord);
    return chord;
}

}  // namespace

namespace handlers {

// AA x, y, sweep [, chord]
void ArcAbsolute(Parameters& in, Drawing& drawing) {
    if (in.GetParams(3) < 3 || in.slots[2] == 0.0) return;
    const PointD centre = in.PointAt(0);
    ArcAbout(drawing, centre, in.slots[2], ReadChord(in, drawing));
}

// AR dx, dy, sweep [, chord]. Quirk: unlike AA a sweep of 0 is drawn.
void ArcRelative(Parameters& in, Drawing& drawing) {
    if (in.GetParams(3) < 3) return;
    if (drawing.reading.drawsPenDown && in.slots[2] == 0.0) return;
    const PointD centre = drawing.motion.penPos + in.PointAt(0);
    ArcAbout(drawing, centre, in.slots[2], ReadChord(in, drawing));
}

// AT x1, y1, x2, y2 [, chord]: through (x1, y1) to (x2, y2).
void ArcAbsoluteThreePoint(Parameters& in, Drawing& drawing) {
    if (in.GetParams(4) < 4) return;
    ArcThrough(drawing, in.PointAt(0), in.PointAt(2), ReadChord(in, drawing));
}

// RT dx1, dy1, dx2, dy2 [, chord]
void ArcRelativeThreePoint(Parameters& in, Drawing& drawing) {
    if (in.GetParams(4) < 4) return;
    const PointD pen = drawing.motion.penPos;
    ArcThrough(drawing, pen + in.PointAt(0), pen + in.PointAt(2), ReadChord(in, drawing));
}

// CI radius [, chord]; the pen does not move. Quirk: a window does not clip a native circle.
void Circle(Parameters& in, Drawing& drawing) {
    if (in.GetParams(1) < 1) return;
    const double radius = in.slots[0];
    const PointD pen = drawing.motion.penPos;
    const CoordinateState& c = drawing.coordinates;
    const double chord = ChordOf(drawing.motion, ReadChord(in, drawing), radius);
    const bool clipped = c.windowOn && drawing.reading.clipsCircles;
    if (drawing.polygon.mode) {
        RecordCircle(drawing, pen, radius, chord);
    } else if (!c.Uniform() || clipped || chord > 0.0 || drawing.lines.dashes.adaptive) {
        DrawSegmentedCircle(drawing, pen, radius, chord);
    } else {
        drawing.out.Circle(c.ToPlotter(pen), TruncateToInt32(radius * c.RadiusFactor()));
    }
    drawing.out.MarkDrawn();
}

// CT [mode]: chords are angles (0) or deviations (1).
void ChordTolerance(Parameters& in, const Reading& reading, PenMotion& motion) {
    if (!reading.cutsByChord) return;
    motion.chordByDeviation = in.GetShortOr(0) == 1;
}

}  // namespace handlers
}  // namespace qm
