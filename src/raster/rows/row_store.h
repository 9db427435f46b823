// The rows of a picture while it is being received: equal rows of zeros until written, kept in
// blocks of about a megabyte that are allocated when a row in them is first touched.
//
// Blocks instead of one growing array: nothing is copied when the picture grows, a picture that
// claims many empty rows costs nothing, and the blocks can be released one by one while the bitmap
// is being filled, so that picture and bitmap together stay near the size of one of them. Tests:
// tests/raster/rows/rtl_raster_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace qm {

// Neighbouring rows in one piece of memory. A null `data` stands for rows of zeros.
struct RowBand {
    std::uint8_t* data = nullptr;
    std::size_t stride = 0;
    std::int64_t first = 0;
    std::int64_t count = 0;

    const std::uint8_t* Row(std::int64_t inBand) const {
        return data + static_cast<std::size_t>(inBand) * stride;
    }
};

class RowStore {
  public:
    // `stride`: bytes of one row; 0 makes a store that holds no row.
    explicit RowStore(std::int64_t stride);

    std::size_t Stride() const { return stride_; }
    // Rows that fit into 2 GiB; every row from this number on counts as a failed allocation.
    std::int64_t RowLimit() const { return rowLimit_; }

    // The row for writing; null when it is out of bounds or memory ran out.
    std::uint8_t* Touch(std::int64_t row);
    // The row for reading; null stands for a row of zeros.
    const std::uint8_t* Find(std::int64_t row) const;
    // Sets rows first to first + count - 1 to zeros without allocating any.
    void Clear(std::int64_t first, std::int64_t count);
    // Sets them to copies of row `source`; false when memory ran out on the way.
    bool Repeat(std::int64_t source, std::int64_t first, std::int64_t count);

    // The blocks that hold rows 0 to rowCount - 1, in order.
    std::size_t BandCount(std::int64_t rowCount) const;
    RowBand Band(std::size_t index, std::int64_t rowCount) const;
    void ReleaseBand(std::size_t index);
    void ReleaseAll() { blocks_.clear(); }

  private:
    struct Freer {
        void operator()(std::uint8_t* block) const { std::free(block); }
    };
    using Block = std::unique_ptr<std::uint8_t[], Freer>;

    std::uint8_t* TouchBlock(std::size_t index);

    std::size_t stride_ = 0;
    std::int64_t rowLimit_ = 0;
    std::int64_t blockRows_ = 1;
    std::vector<Block> blocks_;
};

}  // namespace qm
