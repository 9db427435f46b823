// Coordinates: the scaling points, user scaling and the soft-clip window; user units to plotter
// units; segment clipping.
//
// Commands IP IR IW SC RO stand in coordinates.cpp, scaling as a plotter does it in
// sheet_points.cpp. Rotation never turns vectors: the raster decoder and the document builder read
// it. Tests: tests/interpreter/coordinates_test.cpp, tests/interpreter/reading_test.cpp.
#pragma once

#include <array>
#include <cstdint>

#include "common/geometry.h"
#include "common/numbers.h"

namespace qm {

struct Drawing;
struct PageState;
struct Parameters;
struct PenMotion;
struct Sheet;

// The soft-clip window in plotter units, min <= max; points on an edge are inside.
struct ClipWindow {
    std::int32_t xMin = 0;
    std::int32_t yMin = 0;
    std::int32_t xMax = 0;
    std::int32_t yMax = 0;
};

// SC as given; only a reading that scales from the sheet keeps it, to make the scale anew when P1
// and P2 move.
struct UserScale {
    std::array<double, 4> range{};  // xmin, xmax, ymin, ymax
    std::int32_t type = 0;
    double left = 50.0;  // percent of the rest beside (and below) an isotropic range
    double bottom = 50.0;
};

struct CoordinateState {
    PointD p1{0.0, 0.0};
    PointD p2{10000.0, 10000.0};
    // |P2 - P1|, made anew by IP but not by IR; relative pen widths read it.
    double p1p2Distance = Length(10000.0, 10000.0);
    bool ipGiven = false;  // the last IP had four numbers; SC types 0 and 1 ask for it
    bool scaleOn = false;
    double userMinX = 0.0;
    double userMaxX = 0.0;
    double userMinY = 0.0;
    double userMaxY = 0.0;
    double scaleX = 1.0;  // plotter units per user unit; can be 0, negative or infinite
    double scaleY = 1.0;
    ClipWindow window;
    bool windowOn = false;
    std::int32_t rotation = 0;  // RO, degrees as given
    std::int32_t turn = 0;      // of a RO within the page, beyond `rotation`: 0, 90, 180 or 270
    UserScale userScale;

    // User units with scaling on, else plotter units, to plotter units without truncation.
    PointD ToPlotterReal(PointD point) const {
        if (!scaleOn) return point;
        return {p1.x + (point.x - userMinX) * scaleX, p1.y + (point.y - userMinY) * scaleY};
    }
    // Current units to plotter units, truncated toward zero; what does not fit in 32 bits becomes
    // -2147483648.
    PointI ToPlotter(PointD point) const {
        const PointD real = ToPlotterReal(point);
        return {TruncateToInt32(real.x), TruncateToInt32(real.y)};
    }
    // The inverse of ToPlotterReal.
    PointD FromPlotter(PointD point) const {
        if (!scaleOn) return point;
        return {(point.x - p1.x) / scaleX + userMinX, (point.y - p1.y) / scaleY + userMinY};
    }
    // True when a circle in current units is a circle in plotter units.
    bool Uniform() const { return !scaleOn || scaleX == scaleY; }
    // Plotter units per current unit, for radii; meaningful when Uniform().
    double RadiusFactor() const { return scaleOn ? scaleX : 1.0; }
};

// Clips the segment a-b to the window in place (Cohen-Sutherland; the first point is moved first,
// intersections are truncated toward zero). True when something is left.
bool ClipSegment(const ClipWindow& window, PointI& a, PointI& b);

// ---------------------------------------------------------------- Scaling as a plotter does it
//
// P1 and P2 lie on the sheet, a scale follows them, and the pen keeps its place on the paper. IP,
// IR, SC, PS and IN come here when the reading scales from the sheet, RO when it turns within pages
// (reading.h).

// P1 (a) and P2 (b) before any IP: the corners of the plot size (PS), the long side along x, else
// the sheet's own; x and y change places while RO 90 or 270 is in force. HP-GL/2, "The IP command".
Box<double> DefaultPoints(const Sheet& sheet, const PageState& page, const CoordinateState& c);

// Moves P1 and P2, and with them the scale that is in force.
void MovePoints(const Box<double>& points, CoordinateState& c, PenMotion& motion);

// IP with `given` numbers in the slots: none brings the default points back, with P1 alone P2 keeps
// its distance.
void PlacePoints(const Parameters& in, int given, const Sheet& sheet, const PageState& page,
                 CoordinateState& c, PenMotion& motion);

// IR: the same in percent of the default points.
void PlacePointsInPercent(const Parameters& in, int given, const Sheet& sheet,
                          const PageState& page, CoordinateState& c, PenMotion& motion);

// RO to `angle`, a multiple of 90 degrees, others change nothing: of a page that is still empty as
// a whole, else of what follows on it. The pen keeps its place on the paper in the second case.
void TurnCoordinates(std::int32_t angle, const PageState& page, Drawing& drawing);

// SC: type 0, 1 (with the rest's shares left and below) or 2; a range or a factor of 0 changes
// nothing.
void ScaleFromPoints(Parameters& in, CoordinateState& c, PenMotion& motion);

}  // namespace qm
