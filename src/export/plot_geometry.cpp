// See plot_geometry.h.
#include "export/plot_geometry.h"

#include <algorithm>
#include <cmath>

#include "common/units.h"

namespace qm {
namespace {

// Quirk: any crop left of or right of 0 moves the origin, but only a crop below 0 moves it in y: a
// page that starts above 0 keeps its distance from the bottom.
std::int32_t ShiftX(double cropMinX) { return cropMinX != 0 ? TruncateToInt32(-cropMinX) : 0; }
std::int32_t ShiftY(double cropMinY) { return cropMinY < 0 ? TruncateToInt32(-cropMinY) : 0; }

// Quirk: LpiX counts as plotter units to the document unit, the inverse of what UserDPI does.
double ScaleOf(const PageAttributes& page, double userDpi) {
    if (userDpi != 0) return kUnitsPerInch / userDpi / page.originalScaling;
    return page.lpiX != 0 ? page.lpiX / kUnitsPerInch : 1.0;
}

constexpr double kStepDegrees = 6.0;
constexpr double kFullTurn = 360.0;
// A span comes from the host as any number; this bounds the memory that it can ask for.
constexpr int kMaxSteps = 6000;
// Not the cut value of the interpreter: with it the last point of a turn would miss the first.
constexpr double kRadians = 3.14159265358979323846 / 180.0;

}  // namespace

PlotTransform FreezeTransform(PageAttributes& page, double userDpi) {
    PlotTransform transform;
    transform.offsetX = ShiftX(page.cropMinX);
    transform.offsetY = ShiftY(page.cropMinY);
    page.cropMinX += transform.offsetX;
    page.cropMaxX += transform.offsetX;
    page.cropMinY += transform.offsetY;
    page.cropMaxY += transform.offsetY;
    transform.scale = ScaleOf(page, userDpi);
    transform.height = TruncateToInt32(page.cropMaxY);
    return transform;
}

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
