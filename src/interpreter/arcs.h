// Arcs and circles about a centre, drawn natively by the receiver where geometry allows and as
// segments of four degrees otherwise.
//
// Commands AA AR AT RT CI CT stand in arcs.cpp; WG shares ArcSteps. Tests:
// tests/interpreter/vectors_test.cpp.
#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace qm {

struct PenMotion;

// An arc's angles in radians, limited to one turn and cut into steps of four degrees.
struct ArcSteps {
    double start = 0.0;
    double sweep = 0.0;      // limited to +-kTwoPi
    double step = 0.0;       // +-kArcStep
    std::int32_t count = 0;  // whole steps in the sweep, 0 to 90
};

// Nothing is drawable when an angle is no number; then `count` is -1. With a `chord` (radians)
// above 0 the arc is cut into the fewest equal steps that are no longer.
ArcSteps CutArc(double start, double sweep, double chord = 0.0);

// The chord, radians, by which the number that may close an arc's parameters cuts an arc of
// `radius`: degrees, 0.5 to 180, or with CT1 how far the middle of the chord lies off the arc
// (current units). 0 for chords of 5 degrees and less, which no eye tells from the arc.
double ChordOf(const PenMotion& motion, double number, double radius);

// The point at `angle` (radians) on a circle.
PointD PointOnCircle(PointD centre, double radius, double angle);

// The centre of the circle through three points; (1e8, 1e8) when they are collinear. `det` tells
// the turning sense (negative: clockwise).
struct CircleThrough {
    PointD centre;
    double det = 0.0;
};
CircleThrough ThreePointCentre(PointD p0, PointD p1, PointD p2);

}  // namespace qm
