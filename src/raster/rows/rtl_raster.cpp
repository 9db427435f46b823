// See rtl_raster.h.
#include "raster/rows/rtl_raster.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "raster/rows/placement.h"

namespace qm {

namespace {

constexpr std::int64_t kRowsPerGrowth = 100;
constexpr int kReplacementDelta = 10;

std::int64_t StoredRowBytes(std::int32_t width, int bits, PlaneKind kind) {
    std::int64_t planes = 0;
    if (kind == kThreePlanes || kind == kFourPlanes) planes = kind;
    if (kind == kAllFourPlanes) planes = 4;
    if (kind == kEightPlanes) planes = 8;
    // Eight planes of 1, 9, 17 or 25 pixels, say, are longer than the padded eight-bit row.
    return std::max(PackedStride(width, bits), planes * PlaneBytes(width));
}

bool IsRowMethod(int method) { return (method >= 0 && method <= 3) || method == kReplacementDelta; }

void Decode(int method, ByteSpan data, const std::uint8_t* seed, const RowTarget& target) {
    switch (method) {
        case 0:
            return DecodeUnencoded(data, target);
        case 1:
            return DecodeRunLength(data, target);
        case 2:
            return DecodePackBits(data, target);
        case 3:
            return DecodeDeltaRow(data, seed, target);
        default:
            return DecodeReplacementDeltaRow(data, seed, target);
    }
}

}  // namespace

CRTLRaster::CRTLRaster(std::int32_t width, std::int32_t height, int bitsPerPixel,
                       PlaneKind planeKind, PictureBudget* budget)
    : width_(width),
      height_(height),
      bitsPerPixel_(bitsPerPixel),
      planeKind_(planeKind),
      budget_(budget),
      rows_(StoredRowBytes(width, bitsPerPixel, planeKind),
            budget != nullptr ? budget->Room() : INT64_MAX) {
    if (width > 0 && bitsPerPixel > 0 && rows_.RowLimit() == 0) Refuse();
}

// Quirk: capacity is counted in steps of 100 rows, and each step sets the seed to the row before
// the requested one. So a row that failed breaks the delta chain only at rows 100, 200, ...
bool CRTLRaster::GrowTo(std::int32_t row) {
    if (row < 0) return false;
    if (row >= rows_.RowLimit()) {
        Refuse();
        return false;
    }
    if (row >= capacity_) {
        capacity_ = (row / kRowsPerGrowth + 1) * kRowsPerGrowth;
        seedRow_ = std::int64_t{row} - 1;
    }
    return true;
}

int CRTLRaster::AddRow(std::int32_t row, ByteSpan data, int method, std::size_t offset,
                       std::size_t count, bool advanceSeed) {
    const std::size_t rowBytes = RowBytes();
    if (rowBytes == 0 || !GrowTo(row) || !IsRowMethod(method)) return 0;
    if (!Afford(1, count == 0 ? rowBytes : std::min(count, rowBytes))) return 0;
    if (method == kReplacementDelta && row == 0) {
        if (!Afford(RowCount(), rowBytes)) return 0;
        rows_.Clear(0, RowCount());
    }
    std::uint8_t* target = rows_.Touch(row);
    if (target == nullptr) return 0;
    hasRows_ = true;
    rowCount_ = std::max(rowCount_, row + 1);
    if (measuring_) widestRow_ = std::max(widestRow_, DecodedSize(data, method));
    Decode(method, data, Seed(), {target, rowBytes, offset, count == 0 ? rowBytes : count});
    if (advanceSeed) seedRow_ = row;
    return 1;
}

std::int32_t CRTLRaster::StorableRows(std::int32_t row, std::int32_t count) {
    if (row < 0 || RowBytes() == 0) return 0;
    const std::int64_t fit = std::min<std::int64_t>(count, rows_.RowLimit() - row);
    if (fit < count) Refuse();
    return static_cast<std::int32_t>(std::max<std::int64_t>(fit, 0));
}

void CRTLRaster::AddEmptyRows(std::int32_t row, std::int32_t count) {
    const std::int32_t fit = StorableRows(row, count);
    if (fit == 0 || !Afford(fit, RowBytes())) return;
    const std::int32_t last = row + fit - 1;
    GrowTo(last);
    rows_.Clear(row, fit);
    hasRows_ = true;
    rowCount_ = std::max(rowCount_, last + 1);
    seedRow_ = last;
}

void CRTLRaster::AddSeedCopies(std::int32_t row, std::int32_t count) {
    const std::int32_t fit = StorableRows(row, count);
    if (fit == 0 || !Afford(fit, RowBytes())) return;
    const std::int32_t last = row + fit - 1;
    // The growth rule moves the seed to the row before; inside the run that is a copy already.
    GrowTo(row);
    const std::int64_t seed = seedRow_;
    GrowTo(last);
    if (seed < 0) {
        rows_.Clear(row, fit);
    } else if (!rows_.Repeat(seed, row, fit)) {
        return;
    }
    hasRows_ = true;
    rowCount_ = std::max(rowCount_, last + 1);
    seedRow_ = last;
}

std::int32_t CRTLRaster::ShownWidth() const {
    if (!measuring_) return width_;
    const std::size_t pixelBits =
        planeKind_ == kNoPlanes ? static_cast<std::size_t>(std::max(bitsPerPixel_, 1)) : 1;
    // A row of more bytes than the widest can be needs no exact count.
    const std::size_t bytes = std::min(widestRow_, RowBytes());
    return static_cast<std::int32_t>(
        std::min<std::size_t>(bytes * 8 / pixelBits, static_cast<std::size_t>(width_)));
}

// Planes of other depths cannot be merged; their rows go into the bitmap as they are.
void CRTLRaster::MergePlanes() {
    if (bitsPerPixel_ != 8) return;
    std::vector<std::uint8_t> planes(RowBytes());
    for (std::size_t b = 0; b < rows_.BandCount(bitmapRows_); ++b) {
        const RowBand band = rows_.Band(b, bitmapRows_);
        for (std::int64_t i = 0; band.data != nullptr && i < band.count; ++i) {
            std::uint8_t* row = band.data + static_cast<std::size_t>(i) * band.stride;
            std::memcpy(planes.data(), row, planes.size());
            MergePlaneRow(planes.data(), row, width_, planeKind_);
        }
    }
}

std::optional<std::size_t> CRTLRaster::PrepareBitmap(int angle) {
    // Quirk: the count itself goes up, so a second call would find one more row.
    bitmapRows_ = rowCount_++;
    if (!hasRows_) return std::nullopt;
    if (planeKind_ != kNoPlanes) MergePlanes();
    width_ = ShownWidth();
    return IsQuarterTurn(angle) ? PackedBitmapSize(bitmapRows_, width_, bitsPerPixel_)
                                : PackedBitmapSize(width_, bitmapRows_, bitsPerPixel_);
}

GlobalBlock CRTLRaster::MakeBitmap(int angle) {
    const auto size = PrepareBitmap(angle);
    if (!size || (budget_ != nullptr && !budget_->TakeBitmap(*size))) return {};
    GlobalBlock block = GlobalBlock::Allocate(*size);
    const GlobalView view(block.Get());
    if (view.Data() == nullptr) throw std::bad_alloc();
    FillBitmap(view.Data(), angle);
    return block;
}

void CRTLRaster::FillBitmap(std::uint8_t* zeroed, int angle) {
    const bool quarter = IsQuarterTurn(angle);
    const std::int32_t bitmapWidth = quarter ? bitmapRows_ : width_;
    const std::int32_t bitmapHeight = quarter ? width_ : bitmapRows_;
    BitmapTarget target;
    target.rows =
        WritePackedHeader(zeroed, bitmapWidth, bitmapHeight, bitsPerPixel_, colours_.data());
    target.width = width_;
    target.height = bitmapRows_;
    target.bits = bitsPerPixel_;
    for (std::size_t b = 0; b < rows_.BandCount(bitmapRows_); ++b) {
        const RowBand band = rows_.Band(b, bitmapRows_);
        if (angle == 0) {
            CopyUpright(target, band);
        } else {
            RotateRows(target, band, angle);
        }
        rows_.ReleaseBand(b);
    }
    rows_.ReleaseAll();
    hasRows_ = false;
}

}  // namespace qm
