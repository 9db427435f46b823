// Pictures as image objects, in their own depth, row by row. Test:
// tests/render/pdf/picture_test.cpp.
#pragma once

#include <functional>
#include <optional>

#include "common/packed_bitmap.h"
#include "render/pdf/pdf_file.h"

namespace qm::pdf {

// How a page shows a picture that was written.
struct PictureObject {
    ObjectNumber object = 0;
    // Set for a stencil: its dots are painted in this colour (0x00BBGGRR), the others left out.
    std::optional<std::uint32_t> stencil;
};

// 1, 2, 4 and 8 bits a dot stay indexed; all other depths become 8-bit red, green, blue. White dots
// that are clear are masked out: of one-bit pictures by making them stencils. `checkpoint` is
// called now and then; what it throws passes through.
PictureObject WritePicture(const PackedBitmapView& picture, bool whiteIsClear,
                           const std::function<void()>& checkpoint, PdfFile& file);

}  // namespace qm::pdf
