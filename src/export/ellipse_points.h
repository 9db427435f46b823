// Ellipses and elliptic arcs as chains of points. Pure. Test: tests/export/ellipse_points_test.cpp.
#pragma once

#include <cstddef>
#include <vector>

namespace qm {

struct RealPoint {
    double x = 0;
    double y = 0;
};

// Angles in degrees, counter-clockwise from +x; `rotation` turns the whole ellipse.
struct EllipseArc {
    double centreX = 0;
    double centreY = 0;
    double radiusX = 0;
    double radiusY = 0;
    double rotation = 0;
    double start = 0;
    double span = 360;
};

// The points of the arc, start and end included: trunc(|span| / 6) equal steps, at least 1. A span
// of 0 means a full turn. A full turn ends exactly where it starts. Above a hundred turns the steps
// grow instead of their number. Throws std::bad_alloc.
std::vector<RealPoint> EllipsePoints(const EllipseArc& arc);

}  // namespace qm
