// Areas as a plotter fills and edges them: every area command by the fill type in force, every
// sub-polygon closed, everything within the window.
//
// FP, EP and the rectangles and wedges come here when the reading fills by type (reading.h); RA,
// EA and their likes leave their area in the polygon buffer. Source: HP-GL/2 reference, "The
// polygon group" and FT. Tests: tests/interpreter/reading_test.cpp.
#pragma once

#include <vector>

#include "common/geometry.h"

namespace qm {

struct CoordinateState;
struct Drawing;
struct FillState;
struct Parameters;
struct PenState;

// FT's options behind the type: spacing and angle of hatches, the level of shading, the number of a
// pattern. One that is missing is as the type was last given.
void TakeFillOptions(Parameters& in, const CoordinateState& c, FillState& fill);

// Fills what the polygon buffer holds. Nothing for a white pen with transparency.
void FillBuffer(Drawing& drawing, const PenState& pens, const FillState& fill);

// Draws the edges of the polygon buffer that lie between pen-down points.
void EdgeBuffer(Drawing& drawing);

// Puts the rectangle from the pen to `corner` (current units) into the polygon buffer. False, and
// nothing done, while a polygon is recorded.
bool BufferRectangle(Drawing& drawing, PointD corner);

// Puts a sector about the pen into the polygon buffer, of a whole turn or more the circle; angles
// in radians. False, and nothing done, while a polygon is recorded or when an angle is no number.
bool BufferWedge(Drawing& drawing, double radius, double start, double sweep);

}  // namespace qm
