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

struct Turn {
    int angle;
    int horizontalSign;
    int verticalSign;
};

Turn TurnOf(const PageTurn& page) {
    Turn turn{0, 1, 1};
    if (page.rotation == 0) {
        if (page.landscape) {
            turn = {270, 1, -1};
        } else if (!page.jobHeader) {
            turn = {180, -1, -1};
        }
    }
    if (page.rotation == 90 && !page.landscape) turn = {270, 1, -1};
    // Quirk: the angle changes here but the vertical sign stays, so a landscape plot without RO is
    // turned by 90 degrees and grows upward all the same.
    if (page.atEntry) turn.angle = 90;
    return turn;
}

}  // namespace

PointD PictureSize(const PictureFrame& frame, std::int32_t rows) {
    const double unitsPerDot = kUnitsPerInch / frame.resolution;
    if (frame.destinationWidth == 0) {
        return {unitsPerDot * frame.sourceWidth, unitsPerDot * rows};
    }
    const double inches = frame.sourceWidth / static_cast<double>(frame.resolution);
    const double scale = frame.destinationWidth / kDecipointsPerInch / inches;
    const double height = frame.destinationHeight != 0
                              ? kUnitsPerDecipoint * frame.destinationHeight
                              : unitsPerDot * rows * scale;
    return {kUnitsPerDecipoint * frame.destinationWidth, height};
}

Placement PlacePicture(const PictureFrame& frame, std::int32_t rows, RasterCursor cursor,
                       const PageTurn& page) {
    const double unitsPerDot = kUnitsPerInch / frame.resolution;
    const Turn turn = TurnOf(page);
    PointD extent = PictureSize(frame, rows);
    if (IsQuarterTurn(turn.angle)) std::swap(extent.x, extent.y);
    const double horizontal = extent.x * turn.horizontalSign;
    const double vertical = extent.y * turn.verticalSign;

    const double down = cursor.down;
    const double across = cursor.across;
    const bool alongPage = page.landscape || page.rotation != 90;
    Placement placed;
    placed.angle = turn.angle;
    placed.box.a.x = RoundToInt32(unitsPerDot * (alongPage ? down : across));
    placed.box.a.y = RoundToInt32(unitsPerDot * (alongPage ? -across : down));
    // The 0.9 makes neighbouring strips of one picture touch; it is added behind the sign.
    placed.box.b.x = RoundToInt32(placed.box.a.x + horizontal + 0.9);
    placed.box.b.y = RoundToInt32(placed.box.a.y - vertical + 0.9);
    placed.visible = std::fabs(horizontal) > 2.0 && std::fabs(vertical) > 2.0;
    placed.cursor = cursor;
    if (IsQuarterTurn(turn.angle)) {
        placed.cursor.down = WrapAdd(cursor.down, RoundToInt32(horizontal / unitsPerDot));
    } else {
        placed.cursor.across = WrapAdd(cursor.across, RoundToInt32(vertical / unitsPerDot));
    }
    return placed;
}

}  // namespace qm
