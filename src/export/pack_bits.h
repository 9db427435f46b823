// PackBits: the row compression of the raster export (TIFF 6.0 compression 32773, method 2 of
// HP-RTL). The decoder is raster/rows/row_decoders.h. Test: tests/export/pack_bits_test.cpp, speed:
// bench/export_bench.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qm {

// Room for the packed form of any row of `size` bytes.
constexpr std::size_t PackBitsBound(std::size_t size) { return 2 * size; }

// Packs the `size` bytes of `row` to `packed` (PackBitsBound(size) bytes) and returns how many it
// wrote. Runs of 2 to 128 become (1 - n, byte), longer ones are cut into pieces of 128; the rest
// gathers in literals of up to 128, (n - 1, bytes). A run of 2 behind a literal of up to 126 bytes
// joins it, and what follows goes on in the same literal: two bytes more, but no new count bytes.
std::size_t PackBits(const std::uint8_t* row, std::size_t size, std::uint8_t* packed);

}  // namespace qm
