// AffordablePart: what of a page is drawn as a bitmap when all of it would take too long.
//
// A few bytes can fill a page again and again, or dash lines across it a million times. Before a
// page is drawn, its display list is gone through once and each primitive's work at the page's
// resolution is estimated; when the allowance is spent, the primitives that follow are drawn
// coarser or left out. docs/limits.md explains the numbers. Test:
// tests/render/bitmap/page_work_test.cpp.
#pragma once

#include <cstdint>
#include <optional>

#include "host/display_list.h"
#include "render/bitmap/page_raster.h"

namespace qm::bitmap {

// Work in units of about a nanosecond of a busy machine. Of a plot, together, at up to 100 dots per
// inch; more in proportion to the dots of an area at more, or of a length per byte.
inline constexpr double kUnits = 3e8;
inline constexpr double kUnitsPerByte = 4000.0;  // of the plot's file
// Part of it that dashes may take; further dashed lines are drawn as solid ones.
inline constexpr double kPartOfDashes = 0.5;
// Primitives of so few units are drawn when nothing is left for others, as far as the bytes of the
// plot pay for them.
inline constexpr double kCheapUnits = 1500.0;
inline constexpr double kCheapUnitsPerByte = 500.0;

// Nothing when the page can be drawn whole, or page.sourceBytes is 0. Else the part that can, in a
// list of its own; options.note is told. `bandRows`: what is drawn of the page at a time, for
// polygons and arcs are taken up by each band. What it takes is taken from options.budget.
std::optional<DisplayList> AffordablePart(const PageSource& page, const PageOptions& options,
                                          const PageRaster& raster, std::int32_t bandRows);

}  // namespace qm::bitmap
