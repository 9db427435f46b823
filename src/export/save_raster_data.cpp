// See save_raster_data.h.
#include "export/save_raster_data.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "common/units.h"
#include "export/plot_text.h"

namespace qm {
namespace {

bool IsKnownDepth(LONG bits) noexcept {
    constexpr LONG kDepths[] = {1, 4, 8, 16, 24, 32};
    return std::find(std::begin(kDepths), std::end(kDepths), bits) != std::end(kDepths);
}

using Palette = std::array<PaletteEntry, 256>;

// Writes what the block holds.
HRESULT WritePicture(const PlotOutput& output, const PackedBitmapView& picture,
                     const PicturePlacement& placement) {
    PictureHead head{picture.Width(), picture.Height(), picture.Bits(), placement.dpi, {}};
    for (std::uint32_t i = 0; i < PackedColourCount(head.bits); ++i) {
        head.palette.push_back(picture.Colour(i));
    }
    PictureWriter writer(output, head, placement);
    HRESULT status = writer.Begin();
    if (status != S_OK) return status;
    for (std::int32_t y = 0; y < head.height && status == S_OK; ++y) {
        status = writer.AddRow(picture.RowFromTop(placement.landscape ? y : head.height - 1 - y));
    }
    return status == S_OK ? writer.End() : status;
}

// Entries that the host does not give are black, but a one-bit picture without a table is black and
// white.
Palette MakePalette(LONG bits, LONG count, const BYTE* table) noexcept {
    Palette palette{};
    const auto wanted = static_cast<LONG>(PackedColourCount(static_cast<int>(bits)));
    if (table != nullptr && count > 0) {
        const auto given = static_cast<std::size_t>(std::min(count, wanted));
        std::memcpy(palette.data(), table, given * sizeof(PaletteEntry));
    } else if (bits == 1) {
        palette[1] = {255, 255, 255, 0};
    }
    return palette;
}

// Plotter units; half a unit more, so that truncation rounds.
double PlotLength(LONG pixels, int dpi) noexcept {
    return static_cast<double>(pixels) / dpi * kUnitsPerInch + 0.5;
}

}  // namespace

void CQmSaveRasterData::Describe(LONG width, LONG height, LONG bits, LONG dpi) noexcept {
    bitmap_ = GlobalBlock();
    writer_.reset();
    width_ = width;
    height_ = height;
    bitsPerPixel_ = bits;
    placement_ = {static_cast<int>(dpi), false};
}

HRESULT CQmSaveRasterData::CreateRasterStorage(LONG width, LONG height, LONG bitsPerPixel, LONG,
                                               LONG dpiX, LONG, LONG colours,
                                               const BYTE* colourTable) noexcept {
    Describe(width, height, bitsPerPixel, dpiX);
    if (!IsKnownDepth(bitsPerPixel)) return E_FAIL;
    if (width < 1 || height < 1) return E_INVALIDARG;
    if (settings_.rasterMode && dpiX <= 0) return E_FAIL;

    const int bits = static_cast<int>(bitsPerPixel);
    const auto bytes = PackedBitmapSize(width, height, bits);
    if (!bytes) return E_OUTOFMEMORY;
    GlobalBlock block = GlobalBlock::Allocate(*bytes);
    const GlobalView view(block.Get());
    if (view.Data() == nullptr) return E_OUTOFMEMORY;
    WritePackedHeader(view.Data(), width, height, bits,
                      MakePalette(bitsPerPixel, colours, colourTable).data());
    bitmap_ = std::move(block);
    bitmapBytes_ = *bytes;
    return settings_.rasterMode ? WritePageSetup() : S_OK;
}

HRESULT CQmSaveRasterData::WritePageSetup() noexcept {
    const double sizeX = PlotLength(width_, placement_.dpi);
    const double sizeY = PlotLength(height_, placement_.dpi);
    placement_.landscape = sizeX > sizeY;
    const Int x = TruncateToInt32(sizeX);
    const Int y = TruncateToInt32(sizeY);
    // Quirk: the second corner of IP has its sides exchanged, which turns the scaled page of a
    // landscape picture.
    return TextSequence(output_)
        .Add(plot_text::kPlotSize, x, y)
        .Add(plot_text::kInputPoints, 0, 0, y, x)
        .Add(plot_text::kScalePage)
        .Status();
}

HRESULT CQmSaveRasterData::AddScanline1(LONG, LONG startLine, LONG lines, LONG bytesPerLine,
                                        const BYTE* scanlines) noexcept {
    const GlobalView view(bitmap_.Get());
    if (view.Data() == nullptr) return E_FAIL;
    if (startLine < 0 || lines < 0 || bytesPerLine < 0 || lines > height_ ||
        startLine > height_ - lines)
        return E_INVALIDARG;
    const auto given = static_cast<std::size_t>(bytesPerLine);
    if (lines == 0) return S_OK;
    if (scanlines == nullptr && given > 0) return E_INVALIDARG;

    const int bits = static_cast<int>(bitsPerPixel_);
    const auto stride = static_cast<std::size_t>(PackedStride(width_, bits));
    const std::size_t used =
        std::min(given, static_cast<std::size_t>(PackedRowBytes(width_, bits)));
    // The block ends with its top row.
    std::uint8_t* const end = view.Data() + bitmapBytes_;
    for (LONG i = 0; i < lines; ++i) {
        std::uint8_t* const row = end - stride * static_cast<std::size_t>(startLine + i + 1);
        if (used > 0) std::memcpy(row, scanlines + given * static_cast<std::size_t>(i), used);
        std::memset(row + used, 0, stride - used);
    }
    return S_OK;
}

HRESULT CQmSaveRasterData::BeginPicture(const PictureHead& head) noexcept {
    const bool inOrder = head.width > head.height && head.height > 0 && head.dpi > 0;
    if (!settings_.rasterMode || !inOrder || !PictureWriter::Takes(head.bits)) return S_FALSE;
    Describe(head.width, head.height, head.bits, head.dpi);
    const HRESULT status = WritePageSetup();
    if (status != S_OK) return status;
    return Guarded([&] {
        writer_.emplace(output_, head, placement_);
        rowsMissing_ = height_;
        return writer_->Begin();
    });
}

HRESULT CQmSaveRasterData::AddRow(const BYTE* row) noexcept {
    if (!writer_ || rowsMissing_ == 0) return E_FAIL;
    --rowsMissing_;
    return writer_->AddRow(row);
}

HRESULT CQmSaveRasterData::EndObject() noexcept {
    if (writer_) {
        const HRESULT status = rowsMissing_ == 0 ? writer_->End() : E_FAIL;
        writer_.reset();
        return status;
    }
    const GlobalBlock bitmap = std::move(bitmap_);
    if (!bitmap) return E_FAIL;
    // Quirk: the HP-GL/2 export takes pictures and drops them without a word.
    if (!settings_.rasterMode) return S_OK;
    const HRESULT status = Guarded([&]() -> HRESULT {
        const GlobalView view(bitmap.Get());
        if (view.Data() == nullptr) return E_OUTOFMEMORY;
        const auto picture = PackedBitmapView::Parse(view.Data(), bitmapBytes_);
        return picture ? WritePicture(output_, *picture, placement_) : E_FAIL;
    });
    // A depth that is not written is no failure of the block.
    return status == S_FALSE ? S_OK : status;
}

}  // namespace qm
