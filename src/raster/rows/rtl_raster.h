// CRTLRaster: one raster picture from its first transferred row to the packed bitmap.
//
// The raster-mode loop makes one at the first transfer of a picture, feeds it with AddRow and the
// block operations, and turns it into a bitmap when the picture is complete. Row numbers beyond
// what 2 GiB hold fail like an allocation; a picture that claims to be huge costs nothing until its
// rows arrive. Tests: tests/raster/rows/rtl_raster_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "common/packed_bitmap.h"
#include "platform/global_block.h"
#include "raster/rows/bitmap_rows.h"
#include "raster/rows/palette.h"
#include "raster/rows/row_decoders.h"

namespace qm {

// How many bytes of pictures one plot may have made. A few bytes of a plot can ask for gigabytes (a
// row repeated 65535 times, a row of 2 GiB), and can ask again and again. Each picture is bounded,
// the budget bounds them all together; what goes beyond counts as a failed allocation.
class WorkBudget {
  public:
    // For a plot of `plotBytes` bytes: enough for one picture of the largest size (its rows and its
    // bitmap), and for files whose every five bytes stand for a blank row of a very large page.
    static WorkBudget ForPlot(std::uint32_t plotBytes) {
        return WorkBudget(kBase + kPerPlotByte * plotBytes);
    }
    explicit WorkBudget(std::int64_t bytes = INT64_MAX) : left_(bytes) {}

    // False, and nothing taken, when less is left.
    bool Take(std::int64_t bytes) {
        if (bytes > left_) return false;
        left_ -= bytes;
        return true;
    }
    // For `rows` rows of `bytes` bytes; short rows cost more than their bytes.
    bool TakeRows(std::int64_t rows, std::size_t bytes) {
        return Take(rows * (static_cast<std::int64_t>(bytes) + kPerRow));
    }

  private:
    static constexpr std::int64_t kBase = std::int64_t{1} << 32;
    static constexpr std::int64_t kPerPlotByte = 65536;
    static constexpr std::int64_t kPerRow = 64;

    std::int64_t left_;
};

class CRTLRaster {
  public:
    // Pixels per row (below 1: no row can be stored), rows (only kept; 0 = open-ended), bits per
    // pixel of the result (0 to 255), and the kind of planes in which rows arrive. Rows and bitmap
    // are taken from `budget`, which must outlive the picture; null: from none.
    CRTLRaster(std::int32_t width, std::int32_t height, int bitsPerPixel, PlaneKind planeKind,
               WorkBudget* budget = nullptr);

    std::int32_t Width() const { return width_; }
    std::int32_t Height() const { return height_; }
    // A block of plain rows brings its own number of rows.
    void SetHeight(std::int32_t rows) { height_ = rows; }
    int BitsPerPixel() const { return bitsPerPixel_; }
    PlaneKind Planes() const { return planeKind_; }
    // Bytes of a stored row: the longer of the padded bitmap row and the planes side by side.
    std::size_t RowBytes() const { return rows_.Stride(); }
    // Rows stored so far: the highest row written + 1. MakeBitmap adds one of its own.
    std::int32_t RowCount() const { return rowCount_; }
    bool HasRows() const { return hasRows_; }

    // Decodes one row, or one plane of it, into row `row` at byte `offset`. `count`: the bytes of
    // the row that the transfer stands for, 0 = the full row. With `advanceSeed` the row becomes
    // the seed of the next one. Methods 0 to 3 and 10. Returns 1, or 0 when the method is none of
    // them, the row has no bytes, or it cannot be stored.
    int AddRow(std::int32_t row, ByteSpan data, int method, std::size_t offset, std::size_t count,
               bool advanceSeed);

    // Stores `count` rows of zeros, or copies of the seed row, from `row` on; the last one becomes
    // the seed. Rows out of bounds are dropped without cost.
    void AddEmptyRows(std::int32_t row, std::int32_t count);
    void AddSeedCopies(std::int32_t row, std::int32_t count);

    // From now on the picture shows as many pixels of its rows as the widest one brings.
    void MeasureRows() { measuring_ = true; }
    // The pixels per row that the bitmap shows.
    std::int32_t ShownWidth() const;

    // The colour table of the bitmap; black until set.
    void SetColours(const std::array<PaletteEntry, kPaletteEntries>& colours) {
        colours_ = colours;
    }

    // The packed bitmap of the picture, turned by `angle` degrees (0, 90, 180, 270; with any other
    // its rows stay zero), in a movable block that the caller owns. Frees the rows on the way.
    // Empty when no row was stored, and when the bitmap would exceed 2 GiB: the rows then stay.
    // Throws std::bad_alloc. Every call counts one more row, so make one bitmap a picture.
    GlobalBlock MakeBitmap(int angle);

    // The same in two steps for a caller with memory of its own: the bytes that the bitmap takes,
    // if there can be one, and its writing into that many zeroed bytes.
    std::optional<std::size_t> PrepareBitmap(int angle);
    void FillBitmap(std::uint8_t* zeroed, int angle);

  private:
    bool GrowTo(std::int32_t row);
    bool Afford(std::int64_t rows, std::size_t bytes) {
        return budget_ == nullptr || budget_->TakeRows(rows, bytes);
    }
    const std::uint8_t* Seed() const { return seedRow_ < 0 ? nullptr : rows_.Find(seedRow_); }
    std::int32_t StorableRows(std::int32_t row, std::int32_t count) const;
    void MergePlanes();

    std::int32_t width_;
    std::int32_t height_;
    int bitsPerPixel_;
    PlaneKind planeKind_;
    WorkBudget* budget_;
    RowStore rows_;
    std::int64_t capacity_ = 0;  // rows
    std::int64_t seedRow_ = -1;  // below 0: a row of zeros
    std::int32_t rowCount_ = 0;
    std::int32_t bitmapRows_ = 0;  // of the bitmap being made
    bool hasRows_ = false;
    bool measuring_ = false;
    std::size_t widestRow_ = 0;  // bytes of a row or of a plane
    std::array<PaletteEntry, kPaletteEntries> colours_{};
};

}  // namespace qm
