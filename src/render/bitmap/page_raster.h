// PageRaster: the dots of a page at a resolution, and what is too large to be drawn. Test:
// tests/render/bitmap/png_page_test.cpp.
#pragma once

#include <cstdint>

#include "render/page_frame.h"
#include "render/page_writers.h"

namespace qm::bitmap {

struct PageRaster {
    PageFrame frame;
    std::int32_t width = 0;  // dots, at least 1
    std::int32_t height = 0;
    double dotsPerUnit = 1.0;
    double hairline = 1.0;  // width of pens of width 0 in dots, at least 1

    // From the drawing to the raster's dots, y down.
    Matrix ToDots() const;
};

// Throws ToolError when a side has more than 32767 dots, with a message that names `format`
// ("a PNG") and the resolution that fits.
PageRaster RasterOf(const PageSource& page, const PageOptions& options, const char* format);
// The same, or when options.budget has no more dots for the page, at fewer dots per inch, which
// `options` then tell; the page's user is told by options.note.
PageRaster FittingRaster(const PageSource& page, PageOptions& options, const char* format);

}  // namespace qm::bitmap
