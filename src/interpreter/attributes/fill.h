// Area fills: fill types, filled and edged polygons, rectangles, wedges and user patterns.
//
// Commands EP FP FT stand in fill.cpp, RA RR EA ER WG RF AC in shapes.cpp, areas as a plotter fills
// them in area_fill.cpp; the hatch generator in hatch.h. Tests:
// tests/interpreter/attributes/fill_test.cpp, tests/interpreter/reading_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "common/geometry.h"

namespace qm {

struct ArcSteps;
struct CoordinateState;
struct Drawing;
struct Parameters;
struct PenState;

struct FillState {
    // 1, 2 solid; 3 hatch; 4 cross-hatch; 10 shading; 11 user pattern; others solid.
    std::int32_t FillType = 1;
    std::int32_t HatchSpacing = 0;    // plotter units
    std::int32_t HatchAngle = 0;      // degrees
    std::int32_t ShadingLevel = 100;  // percent of ink for type 10
    std::int32_t FillPatternIndex = -1;

    // Of the reading that fills by type (area_fill.cpp).
    double spacing = 0.0;  // plotter units; 0: one percent of the distance of P1 and P2
    double angle = 0.0;    // degrees
    PointD anchor;         // AC, plotter units

    // Rectangles by RA and PE show only their outline for these types.
    bool DrawsRectangleOutline() const { return FillType == 11 || FillType == 22; }
};

// ---------------------------------------------------------------- Areas as a plotter fills them
//
// Every area command by the fill type in force, every sub-polygon closed, everything within the
// window. FP, EP and the rectangles and wedges come here when the reading fills by type
// (reading.h); RA, EA and their likes leave their area in the polygon buffer. Source: HP-GL/2
// reference, "The polygon group" and FT.

// FT's options behind the type: spacing and angle of hatches, the level of shading, the number of a
// pattern. One that is missing is as the type was last given.
void TakeFillOptions(Parameters& in, const CoordinateState& c, FillState& fill);

// Fills what the polygon buffer holds: what its edges wind around, or (not `winding`) what an odd
// number of them encloses. Nothing for a white pen with transparency.
void FillBuffer(Drawing& drawing, const PenState& pens, const FillState& fill, bool winding);

// Draws the edges of the polygon buffer that lie between pen-down points.
void EdgeBuffer(Drawing& drawing);

// Puts the rectangle from the pen to `corner` (current units) into the polygon buffer. False, and
// nothing done, while a polygon is recorded.
bool BufferRectangle(Drawing& drawing, PointD corner);

// Puts a sector about the pen into the polygon buffer, of a whole turn the circle. False, and
// nothing done, while a polygon is recorded or when an angle of the arc was no number.
bool BufferWedge(Drawing& drawing, double radius, const ArcSteps& arc);

}  // namespace qm
