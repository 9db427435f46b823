// DrawBitmap: a page as a picture of few or many colours, for raster formats. Test:
// tests/render/bitmap/page_bitmap_test.cpp.
#pragma once

#include "common/picture_sink.h"
#include "render/page_writers.h"

namespace qm {

// Draws the page at options.dpi into `sink`, of which `bits`:
//   24  blue, green, red; edges are smooth
//    8  indices into the page's own colours, or when it has more than 256 the nearest of a cube of
//       6 x 6 x 6
//    1  0 black, 1 white: what is neither comes out as an even mix of dots, as light as it is
// Rows go on as soon as their band is drawn, but those of 8 bits, whose colours are known at the
// end, are kept packed until then. Throws ToolError when the page is too large: more than 32767
// dots a side. The sink gets options.dpi, rounded, or less when options.budget is met.
void DrawBitmap(const PageSource& page, const PageOptions& options, int bits, PictureSink& sink);

}  // namespace qm
