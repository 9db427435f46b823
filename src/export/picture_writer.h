// Writes a picture as an HP-RTL raster graphic inside HP-GL/2: position, raster mode,
// configuration, palette, rows, and back. Tests:
// tests/export/raster_test.cpp, tests/export/picture_row_test.cpp.
#pragma once

#include <objbase.h>

#include <cstddef>
#include <cstdint>

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

// ---------------------------------------------------------------- One row, pure

// Bytes of a row of `width` pixels of 1, 8 or 24 bits.
std::size_t PictureRowBytes(std::int32_t width, int bits);

// Writes PictureRowBytes(width, bits) bytes to `to`: the pixels of the stored row `from` in order,
// or from right to left when `turned`. 24-bit pixels are stored blue, green, red and come out red,
// green, blue. Unused bits of a turned one-bit row are 1, as the turned picture's ground is; those
// of a row in order are copied.
void MakePictureRow(const std::uint8_t* from, std::int32_t width, int bits, bool turned,
                    std::uint8_t* to);

}  // namespace qm
