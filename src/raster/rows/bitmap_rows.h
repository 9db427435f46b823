// The rows of a picture while it is being received, and their way to the rows of a packed bitmap:
// upright or turned, bit planes merged into palette indexes first.
//
// The store gives its memory back band by band while the bitmap fills, so that picture and bitmap
// together stay near the size of one of them. Tests: tests/raster/rows/rtl_raster_test.cpp (the
// store), tests/raster/rows/bitmap_rows_test.cpp.
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

// Equal rows of zeros until written, kept in blocks of about a megabyte that are allocated when a
// row in them is first touched. Blocks instead of one growing array: nothing is copied when the
// picture grows, and a picture that claims many empty rows costs nothing.
class RowStore {
  public:
    // `stride`: bytes of one row; 0 makes a store that holds no row. `room`: bytes of all rows, of
    // which no more than 2 GiB count.
    explicit RowStore(std::int64_t stride, std::int64_t room = INT64_MAX);

    std::size_t Stride() const { return stride_; }
    // Rows that fit into the room; every row from this number on counts as a failed allocation.
    std::int64_t RowLimit() const { return rowLimit_; }

    // The row for writing; null when it is out of bounds. Throws std::bad_alloc.
    std::uint8_t* Touch(std::int64_t row);
    // The row for reading; null stands for a row of zeros.
    const std::uint8_t* Find(std::int64_t row) const;
    // Sets rows first to first + count - 1 to zeros without allocating any.
    void Clear(std::int64_t first, std::int64_t count);
    // Sets them to copies of row `source`; false when they end out of bounds. Throws
    // std::bad_alloc.
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

// ---------------------------------------------------------------- To the bitmap, pure
//
// The rows may come in several bands. All functions work on the memory that they are given.

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
enum PlaneKind : int {
    kNoPlanes = 0,
    kEightPlanes = 1,
    kAllFourPlanes = 2,
    kThreePlanes = 3,
    kFourPlanes = 4  // of which three are merged
};

// Bytes of one plane of a row.
std::int64_t PlaneBytes(std::int32_t width);

// Replaces the planes of one row by `width` palette indexes, a byte a pixel. `planes` is a copy of
// the row; `row` and `planes` hold at least `width` bytes and all planes in use.
void MergePlaneRow(const std::uint8_t* planes, std::uint8_t* row, std::int32_t width, int kind);

}  // namespace qm
