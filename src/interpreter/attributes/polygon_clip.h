// Clips a filled polygon to the soft-clip window.
//
// The work is gpc_polygon_clip's; this file hands it the points and bounds its time. Tests:
// tests/interpreter/attributes/clip_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "common/geometry.h"
#include "interpreter/coordinates.h"

namespace qm {

using Contour = std::vector<PointI>;

// True when any point lies outside the window.
bool ReachesOutside(const Contour& polygon, const ClipWindow& window);

// The parts of the polygon (even-odd) inside the window, each contour truncated to whole plotter
// units; a hole is a contour of its own. Empty when nothing is inside. A polygon whose edges meet
// each other more than kMaxEdgeMeetings times comes out as one self-touching contour of the same
// even-odd area instead, because the clipper's time and memory grow with each meeting.
std::vector<Contour> ClipPolygon(const Contour& polygon, const ClipWindow& window);

inline constexpr std::int64_t kMaxEdgeMeetings = 65536;

}  // namespace qm
