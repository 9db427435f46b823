// Row decoders: one function a compression method of the raster transfer commands, each turning the
// bytes of one transferred row (or plane of a row) into stored bytes.
//
// All are pure over the memory they are given: they read no byte behind `data`, write none behind
// the row, and take time in proportion to data and row. The formats are the published ones of PCL 5
// and HP-RTL (methods 0 to 3) with the TIFF 6.0 PackBits rules for method 2; method 10 is the
// replacement delta row of 3-byte pixels. Tests: tests/raster/rows/row_decoders_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qm {

// Bytes in somebody else's memory.
struct ByteSpan {
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;
};

// Where a decoded row goes: bytes `offset` onwards of a stored row. `count` is the share of the row
// that belongs to this transfer: the whole row, or one plane. PackBits and the seed copy end with
// the share, the other methods only with the row; offsets behind the row store nothing.
struct RowTarget {
    std::uint8_t* row = nullptr;
    std::size_t size = 0;
    std::size_t offset = 0;
    std::size_t count = 0;

    std::size_t ShareEnd() const {
        if (offset >= size) return size;
        return count < size - offset ? offset + count : size;
    }
};

// Method 0: the bytes as they are.
void DecodeUnencoded(ByteSpan data, const RowTarget& target);

// Method 1: pairs of (count - 1, byte). Stops at the end of the row; an odd byte at the end is
// dropped.
void DecodeRunLength(ByteSpan data, const RowTarget& target);

// Method 2: PackBits. A literal whose bytes are missing gives those that are there.
void DecodePackBits(ByteSpan data, const RowTarget& target);

// Method 3: the seed row with replacements of 1 to 8 bytes. `seed` is the whole seed row of
// `target.size` bytes, which may be the target row itself; null stands for a row of zeros.
void DecodeDeltaRow(ByteSpan data, const std::uint8_t* seed, const RowTarget& target);

// Method 10: the seed row with replacements of 3-byte pixels. `seed` as in DecodeDeltaRow; pixels
// left and right of the row count as zeros. A colour cut off by the end of the data ends the row.
void DecodeReplacementDeltaRow(ByteSpan data, const std::uint8_t* seed, const RowTarget& target);

// How many bytes of a row, or of a plane, the data of methods 0 to 3 reaches over; SIZE_MAX for
// other methods.
std::size_t DecodedSize(ByteSpan data, int method);

}  // namespace qm
