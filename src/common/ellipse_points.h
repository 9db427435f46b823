// EllipsePoints: ellipses as chains of points, as saved plots have them. Pure. Test:
// tests/export/vector_test.cpp.
#pragma once

#include <vector>

#include "common/geometry.h"

namespace qm {

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
std::vector<PointD> EllipsePoints(const EllipseArc& arc);

}  // namespace qm
