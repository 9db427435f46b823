// DrawPage: a page drawn on white with Cairo, for the writers of dots. Test:
// tests/render/cairo_test.cpp.
#pragma once

#include <cstdint>
#include <utility>

#include "render/cairo_handles.h"
#include "render/page_writers.h"

namespace qm {

struct ImageLook {
    const char* format = "a PNG";  // of the file, for the message that the page is too large
    bool smooth = true;            // edges blend into the paper; else every dot has a pure colour
};

class PageImage {
  public:
    PageImage(CairoSurface surface, int width, int height)
        : surface_(std::move(surface)), width_(width), height_(height) {}

    int Width() const { return width_; }
    int Height() const { return height_; }
    // Row `y` from the top: Width() dots of 32 bits in the machine's order, 0x00RRGGBB.
    const std::uint8_t* Row(int y) const;

  private:
    CairoSurface surface_;
    int width_;
    int height_;
};

// At most 32767 dots a side and 268 million in all, 4 bytes each. Throws ToolError with a message
// that names the resolution that fits.
PageImage DrawPage(const PageSource& page, const PageOptions& options, const ImageLook& look = {});

}  // namespace qm
