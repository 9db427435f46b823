// See ellipse_points.h.
#include "common/ellipse_points.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm {

namespace {

constexpr double kStepDegrees = 6.0;
constexpr double kFullTurn = 360.0;
// A span comes from the host as any number; this bounds the memory that it can ask for.
constexpr int kMaxSteps = 6000;
// Not the cut value of the interpreter: with it the last point of a turn would miss the first.
constexpr double kRadians = 3.14159265358979323846 / 180.0;

}  // namespace

std::vector<PointD> EllipsePoints(const EllipseArc& arc) {
    const double span = arc.span == 0 ? kFullTurn : arc.span;
    const int steps =
        std::clamp(TruncateToInt32(std::min(std::abs(span) / kStepDegrees, 1e6)), 1, kMaxSteps);
    const double cosine = std::cos(arc.rotation * kRadians);
    const double sine = std::sin(arc.rotation * kRadians);
    std::vector<PointD> points;
    points.reserve(static_cast<std::size_t>(steps) + 1);
    for (int i = 0; i <= steps; ++i) {
        const double angle = (arc.start + span * i / steps) * kRadians;
        const double x = arc.radiusX * std::cos(angle);
        const double y = arc.radiusY * std::sin(angle);
        points.push_back(
            {arc.centreX + x * cosine - y * sine, arc.centreY + x * sine + y * cosine});
    }
    if (std::abs(span) == kFullTurn) points.back() = points.front();
    return points;
}

}  // namespace qm
