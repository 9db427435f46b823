// Writes a picture as an HP-RTL raster graphic inside HP-GL/2: position, raster mode,
// configuration, palette, rows, and back. Test: tests/export/raster_test.cpp.
#pragma once

#include <objbase.h>

#include "common/packed_bitmap.h"
#include "export/plot_output.h"

namespace qm {

struct PicturePlacement {
    // Dots per inch, above 0.
    int dpi = 0;
    // Wider than high. Any other picture is turned by 180 degrees.
    bool landscape = false;
};

// Status of the last write; S_FALSE for depths other than 1, 8 and 24, of which no rows are
// written. Throws std::bad_alloc.
HRESULT WritePicture(const PlotOutput& output, const PackedBitmapView& picture,
                     const PicturePlacement& placement);

}  // namespace qm
