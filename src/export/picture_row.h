// One row of a picture as HP-RTL wants it, from a row of a packed bitmap. Pure. Test:
// tests/export/picture_row_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qm {

// Bytes of a row of `width` pixels of 1, 8 or 24 bits.
std::size_t PictureRowBytes(std::int32_t width, int bits);

// Writes PictureRowBytes(width, bits) bytes to `to`: the pixels of the stored row `from` in order,
// or from right to left when `turned`. 24-bit pixels are stored blue, green, red and come out red,
// green, blue. Unused bits of a turned one-bit row are 1, as the turned picture's ground is; those
// of a row in order are copied.
void MakePictureRow(const std::uint8_t* from, std::int32_t width, int bits, bool turned,
                    std::uint8_t* to);

}  // namespace qm
