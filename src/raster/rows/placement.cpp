// See placement.h.
#include "raster/rows/placement.h"

#include <cmath>
#include <utility>

#include "common/numbers.h"
#include "common/units.h"

namespace qm {

namespace {

// Plotter units per decipoint, 1016 / 720.
constexpr double kUnitsPerDecipoint = 1.4111111111111112;
// Quirk: pictures under "destination" draw nothing by definition; those under "not source" are
// left out too, so an inverted picture does not appear.
constexpr std::int32_t kOperationDestination = 170;
constexpr std::int32_t kOperationNotSource = 51;

struct Turn {
    int angle;
    int horizontalSign;
    int verticalSign;
};

Turn TurnOf(const PlacementInput& in) {
    Turn turn{0, 1, 1};
    if (in.plotRotation == 0) {
        if (in.orientation) {
            turn = {270, 1, -1};
        } else if (!in.jobHeader) {
            turn = {180, -1, -1};
        }
    }
    if (in.plotRotation == 90 && !in.orientation) turn = {270, 1, -1};
    // Quirk: the angle changes here but the vertical sign stays, so a landscape plot without RO is
    // turned by 90 degrees and grows upward all the same.
    if (in.turn) turn.angle = 90;
    return turn;
}

bool IsQuarter(int angle) { return angle == 90 || angle == 270; }

struct Extent {
    double width;
    double height;
};

// Size of the picture before its turn, in plotter units.
Extent SizeOf(const PlacementInput& in, double unitsPerDot) {
    if (in.destinationWidth == 0.0) {
        return {unitsPerDot * in.sourceWidth, unitsPerDot * in.rows};
    }
    const double inches = in.sourceWidth / in.resolution;
    const double scale = in.destinationWidth / kDecipointsPerInch / inches;
    const double height = in.destinationHeight != 0.0 ? kUnitsPerDecipoint * in.destinationHeight
                                                      : unitsPerDot * in.rows * scale;
    return {kUnitsPerDecipoint * in.destinationWidth, height};
}

}  // namespace

Placement PlacePicture(const PlacementInput& in) {
    const double unitsPerDot = kUnitsPerInch / in.resolution;
    const Turn turn = TurnOf(in);
    Extent extent = SizeOf(in, unitsPerDot);
    if (IsQuarter(turn.angle)) std::swap(extent.width, extent.height);
    const double horizontal = extent.width * turn.horizontalSign;
    const double vertical = extent.height * turn.verticalSign;

    const double a = in.offsetA;
    const double b = in.offsetB;
    const bool alongPage = in.orientation || in.plotRotation != 90;
    Placement placed;
    placed.angle = turn.angle;
    placed.x0 = RoundToInt32(unitsPerDot * (alongPage ? a : b));
    placed.y0 = RoundToInt32(unitsPerDot * (alongPage ? -b : a) + in.pageOriginY);
    // The 0.9 makes neighbouring strips of one picture touch; it is added behind the sign.
    placed.x1 = RoundToInt32(placed.x0 + horizontal + 0.9);
    placed.y1 = RoundToInt32(placed.y0 - vertical + 0.9);
    placed.visible = in.mergeMode != kOperationDestination && in.mergeMode != kOperationNotSource &&
                     std::fabs(horizontal) > 2.0 && std::fabs(vertical) > 2.0;
    placed.offsetA = in.offsetA;
    placed.offsetB = in.offsetB;
    if (IsQuarter(turn.angle)) {
        placed.offsetA = WrapAdd(in.offsetA, RoundToInt32(horizontal / unitsPerDot));
    } else {
        placed.offsetB = WrapAdd(in.offsetB, RoundToInt32(vertical / unitsPerDot));
    }
    return placed;
}

}  // namespace qm
