// AffordablePart: what of a page is drawn as a bitmap when all of it would take too long.
//
// A few bytes can fill a page again and again, or dash lines across it a million times. Before a
// page is drawn, its display list is gone through once and each primitive's work at the page's
// resolution is estimated; when the allowance is spent, the primitives that follow are drawn
// coarser or left out. docs/limits.md explains the numbers. Test:
// tests/render/bitmap/page_work_test.cpp.
#pragma once

#include <optional>

#include "host/display_list.h"
#include "render/bitmap/page_raster.h"

namespace qm::bitmap {

// Work in units of about a nanosecond: a dot that is filled takes one or less, a dot of a thin
// line's length, of a pattern or of a picture more.
inline constexpr double kUnits = 2e8;
inline constexpr double kUnitsPerDot = 8.0;          // of the page
inline constexpr double kUnitsPerByteAndDot = 0.75;  // bytes of the plot's file, dots of both sides
// Dashes, each of which takes some 100 units; further dashed lines are drawn as solid ones.
inline constexpr double kDashes = 1e6;
inline constexpr double kDashesPerByte = 16.0;
// Primitives of so few units, whose bytes have paid for them, are always drawn.
inline constexpr double kCheapUnits = 300.0;

// Nothing when the page can be drawn whole, or page.sourceBytes is 0. Else the part that can, in a
// list of its own; options.note is told.
std::optional<DisplayList> AffordablePart(const PageSource& page, const PageOptions& options,
                                          const PageRaster& raster);

}  // namespace qm::bitmap
