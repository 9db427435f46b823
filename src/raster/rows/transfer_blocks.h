// Transfers that carry many rows in one counted block of data: method 4 (plain rows behind their
// width) and method 5 (adaptive: rows in methods of their own, empty rows, repeated rows).
//
// Both read the block piece by piece, so a block of any claimed size needs memory for one row only,
// and both consume exactly the counted bytes unless the input ends first. Tests:
// tests/raster/raster_pictures_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "raster/rows/rtl_raster.h"

namespace qm {

// Where the bytes of a transfer come from: the interpreter's reader, or memory.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    // Fills `to` with up to `size` bytes; fewer only when the input has ended or was aborted.
    virtual std::size_t Read(std::uint8_t* to, std::size_t size) = 0;
};

class SpanSource : public ByteSource {
  public:
    explicit SpanSource(ByteSpan span) : span_(span) {}
    std::size_t Read(std::uint8_t* to, std::size_t size) override;
    std::size_t Left() const { return span_.size - at_; }

  private:
    ByteSpan span_;
    std::size_t at_ = 0;
};

// Reads up to `count` bytes into `buffer`, which becomes as long as what was read. It grows with
// the bytes that arrive, not with the claim. False when the input ended before `count`.
bool ReadCounted(ByteSource& source, std::int64_t count, std::vector<std::uint8_t>& buffer);

// Reads and drops `count` bytes. False when the input ended before.
bool SkipCounted(ByteSource& source, std::int64_t count);

// The share of a stored row that a transfer fills; see CRTLRaster::AddRow.
struct RowShare {
    std::size_t offset = 0;
    std::size_t count = 0;
};

// Method 5. Stores the rows of a block of `blockBytes` bytes from row `row` on and returns the
// number of the row behind them (at most 2147483647). A row that cannot be stored still counts.
std::int32_t AddAdaptiveBlock(ByteSource& source, std::int64_t blockBytes, CRTLRaster& raster,
                              std::int32_t row, RowShare share);

struct PlainBlockResult {
    std::int32_t nextRow = 0;
    // Rows that the block announced: its size divided by its row bytes.
    std::int32_t rows = 0;
    // False when the block has no usable row width; it stored nothing then.
    bool valid = false;
};

// Method 4: four bytes of pixel width, most significant first, then rows of (width + 7) / 8 bytes,
// stored unencoded from row `row` on. Made for pictures of one bit per pixel.
PlainBlockResult AddPlainBlock(ByteSource& source, std::int64_t blockBytes, CRTLRaster& raster,
                               std::int32_t row, RowShare share);

}  // namespace qm
