// PictureSink: where a picture goes row by row while it is drawn, so that nobody needs to hold all
// of it. Test: tests/render/bitmap/page_bitmap_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "common/packed_bitmap.h"

namespace qm {

struct PictureHead {
    std::int32_t width = 0;  // dots, at least 1
    std::int32_t height = 0;
    int bits = 0;          // a dot, as in packed bitmaps
    std::int32_t dpi = 0;  // dots per inch, at least 1
    // PackedColourCount(bits) entries.
    std::vector<PaletteEntry> palette;
};

class PictureSink {
  public:
    virtual ~PictureSink() = default;
    // Comes once, before the rows.
    virtual void Begin(const PictureHead& head) = 0;
    // Each row from the top down, PackedRowBytes(width, bits) bytes that stay the caller's. Unused
    // bits are 0 or whatever the picture's own rows have there.
    virtual void Row(const std::uint8_t* row) = 0;
};

}  // namespace qm
