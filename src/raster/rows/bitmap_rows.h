// From stored rows to the rows of a packed bitmap: upright or turned, and bit planes merged into
// palette indexes first.
//
// The rows may come in several bands, so that the picture can give its memory back while the bitmap
// fills. All functions are pure over the memory they are given. Tests:
// tests/raster/rows/bitmap_rows_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "raster/rows/row_store.h"

namespace qm {

// A picture of w x h pixels and the zero-filled rows of the bitmap that it is written to.
struct BitmapTarget {
    std::uint8_t* rows = nullptr;  // the first stored row, the bottom one of the image
    std::int32_t width = 0;        // of the source, in pixels
    std::int32_t height = 0;       // of the source, in rows
    int bits = 0;                  // per pixel
};

// Copies source row r to stored row h - 1 - r, so the image stands upright. Padding of the bitmap
// stays zero whatever the source row holds there; 24-bit pixels change from red, green, blue to
// blue, green, red. A band without data writes nothing.
void CopyUpright(const BitmapTarget& target, const RowBand& band);

// Turns the band's rows into the bitmap, which has h x w pixels for 90 and 270 degrees and w x h
// for 180. The angles are the ones of existing results, not geometric turns: see the .cpp. Returns
// 0 when there is no bitmap or the angle is none of the three; depths other than 1, 4, 8 and 24
// write nothing and return 1. Bands of a multiple of 8 rows are fastest; any will do.
int RotateRows(const BitmapTarget& target, const RowBand& band, int angle);

// Which planes of a row are merged: the kinds of picture by their plane formats.
enum PlaneKind : int { kNoPlanes = 0, kEightPlanes = 1, kThreePlanes = 3, kFourPlanes = 4 };

// Bytes of one plane of a row.
std::int64_t PlaneBytes(std::int32_t width);

// Replaces the planes of one row by `width` palette indexes, a byte a pixel. `planes` is a copy of
// the row; `row` and `planes` hold at least `width` bytes and all planes in use.
void MergePlaneRow(const std::uint8_t* planes, std::uint8_t* row, std::int32_t width, int kind);

}  // namespace qm
