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
#include "common/work_budget.h"
#include "platform/global_block.h"
#include "raster/rows/bitmap_rows.h"
#include "raster/rows/palette.h"
#include "raster/rows/row_decoders.h"

namespace qm {

// How many bytes the pictures of one plot may have written and may keep. A few bytes of a plot can
// ask for gigabytes (a row repeated 65535 times, a row of 2 GiB), and can ask again and again; what
// goes beyond the budget counts as a failed allocation (docs/limits.md).
class PictureBudget {
  public:
    // For a plot of `plotBytes` bytes: enough for an A0 sheet of 600 dots per inch and one bit a
    // dot in any file, and for files whose every five bytes stand for a blank row of a large page.
    static PictureBudget ForPlot(std::uint32_t plotBytes) {
        return {WorkBudget::For(kWork, kWorkPerByte, plotBytes),
                WorkBudget::For(kMemory, kMemoryPerByte, plotBytes)};
    }
    PictureBudget() = default;
    PictureBudget(WorkBudget work, WorkBudget memory) : work_(work), memory_(memory) {}

    // For writing `rows` rows of `bytes` bytes; short rows cost more than their bytes.
    bool TakeRows(std::int64_t rows, std::size_t bytes) {
        return work_.Take(rows * (static_cast<std::int64_t>(bytes) + kPerRow));
    }
    // For a bitmap that stays in the document.
    bool TakeBitmap(std::size_t bytes) {
        return TakeRows(1, bytes) && memory_.Take(static_cast<std::int64_t>(bytes));
    }
    // Bytes of rows that a picture may hold before it becomes a bitmap.
    std::int64_t Room() const { return memory_.Left(); }
    // A row did not find room.
    void Meet() { memory_.Meet(); }
    bool Met() const { return work_.Met() || memory_.Met(); }

    static constexpr std::int64_t kWork = std::int64_t{1} << 30;
    static constexpr std::int64_t kWorkPerByte = 8192;
    static constexpr std::int64_t kPerRow = 64;
    static constexpr std::int64_t kMemory = std::int64_t{64} << 20;
    static constexpr std::int64_t kMemoryPerByte = 256;

  private:
    WorkBudget work_;
    WorkBudget memory_;
};

class CRTLRaster {
  public:
    // Pixels per row (below 1: no row can be stored), rows (only kept; 0 = open-ended), bits per
    // pixel of the result (0 to 255), and the kind of planes in which rows arrive. Rows and bitmap
    // are taken from `budget`, which must outlive the picture; null: from none.
    CRTLRaster(std::int32_t width, std::int32_t height, int bitsPerPixel, PlaneKind planeKind,
               PictureBudget* budget = nullptr);

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
    void Refuse() {
        if (budget_ != nullptr) budget_->Meet();
    }
    const std::uint8_t* Seed() const { return seedRow_ < 0 ? nullptr : rows_.Find(seedRow_); }
    std::int32_t StorableRows(std::int32_t row, std::int32_t count);
    void MergePlanes();

    std::int32_t width_;
    std::int32_t height_;
    int bitsPerPixel_;
    PlaneKind planeKind_;
    PictureBudget* budget_;
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
