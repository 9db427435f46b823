// From the non-zero winding rule to the even-odd rule, over the Clipper library.
//
// FP1 comes here through interpreter/attributes/polygon.h. Tests:
// tests/interpreter/reading_test.cpp.
#pragma once

#include <vector>

#include "common/geometry.h"

namespace qm {

// Replaces closed contours (whole plotter units) by ones that do not cross and enclose by the
// even-odd rule what the old ones together wind around. They stay as they are when the library
// gives up.
void ResolveWinding(std::vector<std::vector<PointI>>& contours);

}  // namespace qm
