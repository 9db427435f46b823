// Pictures and fill patterns as Cairo surfaces. Test: tests/render/cairo_test.cpp.
#pragma once

#include "common/packed_bitmap.h"
#include "host/display_list.h"
#include "render/cairo_handles.h"

namespace qm {

struct ReducedPicture {
    CairoSurface surface;
    double width = 0.0;  // dots
    double height = 0.0;
};

// The picture with no side above `limit` dots (and never above what Cairo takes): blocks of dots
// are averaged, so that a reduced picture is as dark as the full one. `whiteIsClear`: pure white is
// transparent. Throws ToolError or std::bad_alloc.
ReducedPicture ReducePicture(const PackedBitmapView& picture, double limit, bool whiteIsClear);

// A drawable pattern, its ink in `colour` (0x00BBGGRR), the rest transparent.
CairoSurface TileOf(const FillPattern& pattern, std::uint32_t colour);

}  // namespace qm
