// Arcs and circles about a centre, drawn natively by the receiver where geometry allows and as
// segments of four degrees otherwise.
//
// Commands AA AR AT RT CI stand in arcs.cpp; WG shares ArcSteps. Tests:
// tests/interpreter/vectors_test.cpp.
#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace qm {

// An arc's angles in radians, limited to one turn and cut into steps of four degrees.
struct ArcSteps {
    double start = 0.0;
    double sweep = 0.0;      // limited to +-kTwoPi
    double step = 0.0;       // +-kArcStep
    std::int32_t count = 0;  // whole steps in the sweep, 0 to 90
};

// Nothing is drawable when an angle is no number; then `count` is -1.
ArcSteps CutArc(double start, double sweep);

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
