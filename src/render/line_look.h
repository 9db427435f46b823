// How lines and mixing modes look, for all writers alike: dash patterns, line ends, blend modes,
// and which outlines are dots and whole ellipses. Test: tests/render/svg_writer_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "host/display_list_player.h"

namespace qm {

enum class LineCap { kRound, kButt, kSquare };
enum class LineJoin { kRound, kBevel, kMitre };

LineCap CapOf(std::int32_t lineAttributes);
LineJoin JoinOf(std::int32_t lineAttributes);

// Lengths of dash, gap, dash, ... in plotter units, an even number of them; empty for a solid line.
// The predefined styles grow with the pen width, so that the gaps of thick lines stay open; a
// pattern of the plot's own is taken as it is.
std::vector<double> DashesOf(const DrawingStyle& style);

// A pen put down and lifted on the spot: it leaves a dot whatever the line ends are.
bool IsDot(PointSpan points);

// Full turns and more, and angles that are no numbers, show the whole ellipse.
bool IsWholeEllipse(const ArcShape& arc);
// Point of the arc at `degrees`.
PointD PointOnArc(const ArcShape& arc, double degrees);

// What formats know of raster operations. kNone draws nothing.
enum class Blend { kNormal, kDarken, kLighten, kDifference, kNone };

// `drawMode` is a binary raster operation (1 to 16): 9 keeps the darker of pen and paper.
Blend BlendOfDrawMode(std::int32_t drawMode);
// A ternary raster operation (0 to 255) of a picture without pattern. 0 is "none given".
Blend BlendOfPicture(std::int32_t rasterOperation);

}  // namespace qm
