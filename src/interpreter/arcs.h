// Arcs and circles about a centre, drawn natively by the receiver where geometry allows and as
// segments of four degrees otherwise.
//
// Commands AA AR AT RT CI stand in arcs.cpp; WG shares ArcSteps. Tests:
// tests/interpreter/arcs_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "common/geometry.h"

namespace qm {

class HPGLRead;

struct ArcState {
    PointD arcCentre;         // of the last AA or AR, current units
    PointD threePointCentre;  // of the last AT or RT; (1e8, 1e8) for collinear points
};

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

// Draws an arc (current units, radians). With `connect` segments lead from the pen to its start and
// from its end to the end's normalised twin, which is how AA and AR leave the pen. Outside polygon
// mode the pen ends at the exact end.
void TessellateArc(HPGLRead& reader, PointD centre, double radius, double start, double sweep,
                   bool connect);

// The centre of the circle through three points; (1e8, 1e8) when they are collinear. `det` tells
// the turning sense (negative: clockwise).
struct CircleThrough {
    PointD centre;
    double det = 0.0;
};
CircleThrough ThreePointCentre(PointD p0, PointD p1, PointD p2);

}  // namespace qm
