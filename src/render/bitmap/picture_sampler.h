// PictureSampler: a packed bitmap drawn into a band. Each dot of the page becomes the average of
// what the picture's dots under it give, combined with the paper bit by bit first; enlarged
// pictures keep hard edges. No copy of the picture is made. Test:
// tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "common/packed_bitmap.h"
#include "render/bitmap/band.h"
#include "render/page_frame.h"

namespace qm::bitmap {

struct PictureLook {
    unsigned operation = 12;  // of source and paper, see blending.h
    bool whiteIsClear = false;
};

// Draws the picture into the dots of `band` inside `bounds`. `toPicture` leads from the page's dots
// (y down) to the picture's (x to the right, y down from the top row).
void DrawPicture(const PackedBitmapView& picture, const Matrix& toPicture, const PictureLook& look,
                 Band& band, const DotBox& bounds);

}  // namespace qm::bitmap
