// DrawBands: a page drawn band by band, on several threads if wanted, and handed on in order. Test:
// tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <cstddef>
#include <functional>

#include "render/bitmap/band.h"
#include "render/bitmap/page_raster.h"

namespace qm::bitmap {

// Memory that the dots of a band should take, at most 24 MB; fills take half as much again.
std::size_t BandBytesFor(const PageSource& page, const PageOptions& options,
                         const PageRaster& raster);

// Calls take(band) for each band from the top of the page down, one call at a time but not all from
// one thread; so are checkpoint and progress of `options`. Each dot comes out the same whatever
// options.threads and `bandBytes` are. Without a background (kNone) a dot's mark is its opacity, 0
// to 255. What a callback throws ends the drawing and passes through.
void DrawBands(const PageSource& page, const PageOptions& options, const PageRaster& raster,
               const std::function<void(const Band&)>& take, std::size_t bandBytes);

}  // namespace qm::bitmap
