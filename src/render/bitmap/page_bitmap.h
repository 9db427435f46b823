// DrawBitmap: a page as a packed bitmap of few or many colours, for raster formats. Test:
// tests/render/bitmap/page_bitmap_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "render/page_writers.h"

namespace qm {

// The page at options.dpi, bottom row first as packed bitmaps are. `bits`:
//   24  blue, green, red; edges are smooth
//    8  indices into the page's own colours, or when it has more than 256 the nearest of a cube of
//       6 x 6 x 6
//    1  0 black, 1 white: what is neither comes out as an even mix of dots, as light as it is
// Throws ToolError when the page is too large: more than 32767 dots a side or 268 million in all.
std::vector<std::uint8_t> DrawBitmap(const PageSource& page, const PageOptions& options, int bits);

}  // namespace qm
