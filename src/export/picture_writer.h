// PictureWriter: writes a picture as an HP-RTL raster graphic inside HP-GL/2: position, raster
// mode, configuration, palette, rows, and back. Tests: tests/export/raster_test.cpp,
// tests/export/picture_row_test.cpp.
#pragma once

#include <objbase.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/picture_sink.h"
#include "export/plot_output.h"

namespace qm {

struct PicturePlacement {
    // Dots per inch, above 0.
    int dpi = 0;
    // Wider than high. Any other picture is turned by 180 degrees.
    bool landscape = false;
};

// Writes one picture as its rows come. After a failed write the rest is not written.
class PictureWriter {
  public:
    // `head`: its dpi is not used, that of `placement` is. Writes nothing. Throws std::bad_alloc.
    PictureWriter(const PlotOutput& output, const PictureHead& head,
                  const PicturePlacement& placement);
    PictureWriter(const PictureWriter&) = delete;
    PictureWriter& operator=(const PictureWriter&) = delete;

    // What stands before the rows. Each method returns the status of the last write, Begin and End
    // S_FALSE for depths other than 1, 8 and 24, of which nothing further is written.
    HRESULT Begin() noexcept;
    // The rows of the picture from the top, of one that is turned from the bottom.
    HRESULT AddRow(const std::uint8_t* row) noexcept;
    HRESULT End() noexcept;

    // Whether HP-RTL gets pictures of that depth.
    static bool Takes(int bits) noexcept;

  private:
    PlotOutput output_;
    TextSequence texts_{output_};
    PictureHead head_;
    PicturePlacement placement_;
    std::vector<std::uint8_t> row_;
    std::vector<std::uint8_t> packed_;
};

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
