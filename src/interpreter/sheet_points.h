// Scaling as a plotter does it: P1 and P2 lie on the sheet, a scale follows them, and the pen keeps
// its place on the paper.
//
// IP, IR, SC, PS and IN come here when the reading scales from the sheet (reading.h). Tests:
// tests/interpreter/reading_test.cpp.
#pragma once

#include "common/geometry.h"

namespace qm {

struct CoordinateState;
struct PageState;
struct Parameters;
struct PenMotion;
struct Sheet;

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

// SC: type 0, 1 (with the rest's shares left and below) or 2; a range or a factor of 0 changes
// nothing.
void ScaleFromPoints(Parameters& in, CoordinateState& c, PenMotion& motion);

}  // namespace qm
