// CQmSaveRasterData: the sink of raster blocks. Collects one picture and writes it at the end of
// the block.
//
// The picture is one movable global block, a packed bitmap. In the HP-GL/2 export nothing of it is
// written. Test: tests/export/raster_test.cpp.
#pragma once

#include <qmfilter.h>

#include <cstddef>
#include <optional>

#include "export/export_settings.h"
#include "export/picture_writer.h"
#include "export/plot_output.h"
#include "interfaces/picture_handover.h"
#include "platform/com_object.h"
#include "platform/global_block.h"

namespace qm {

class CQmSaveRasterData final : public ComObject<IQmSaveRasterData, PictureHandover> {
  public:
    explicit CQmSaveRasterData(const ExportSettings& settings)
        : settings_(settings), output_(settings.stream) {}

    // Frees the picture in every case. E_FAIL without one, or when rows of one that was begun by
    // BeginPicture are missing; else the status of the writes, S_OK also
    // for a depth that HP-RTL does not get.
    HRESULT STDMETHODCALLTYPE EndObject() noexcept override;
    // Replaces an earlier picture. E_FAIL: depth or DpiX (DpiY is not used); E_INVALIDARG: a side
    // below 1; E_OUTOFMEMORY: more than 2 GiB, or no memory. Then there is no picture. HP-RTL
    // export: writes the page set-up and returns the status of that.
    HRESULT STDMETHODCALLTYPE CreateRasterStorage(LONG width, LONG height, LONG bitsPerPixel,
                                                  LONG compression, LONG dpiX, LONG dpiY,
                                                  LONG colours,
                                                  const BYTE* colourTable) noexcept override;
    // Rows of any data type are stored as they come. E_FAIL without a picture, E_INVALIDARG for
    // rows outside it, a negative count or missing bytes.
    HRESULT STDMETHODCALLTYPE AddScanline1(LONG dataType, LONG startLine, LONG lines,
                                           LONG bytesPerLine,
                                           const BYTE* scanlines) noexcept override;

    // Only for the HP-RTL export of a picture that is wider than high and of 1, 8 or 24 bits: its
    // rows are written as they come.
    HRESULT STDMETHODCALLTYPE BeginPicture(const PictureHead& head) noexcept override;
    HRESULT STDMETHODCALLTYPE AddRow(const BYTE* row) noexcept override;

    HRESULT STDMETHODCALLTYPE SetAttribute(BSTR, VARIANT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AddScanline2(LONG, LONG, LONG, LONG, const BYTE*) noexcept override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE StartPolyClipRegion(LONG, LONG, VARIANT_BOOL) noexcept override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AppendPolyClipRegion(LONG, const LONG*) noexcept override {
        return S_OK;
    }

  private:
    void Describe(LONG width, LONG height, LONG bits, LONG dpi) noexcept;
    HRESULT WritePageSetup() noexcept;

    ExportSettings settings_;
    PlotOutput output_;
    GlobalBlock bitmap_;
    std::size_t bitmapBytes_ = 0;
    LONG width_ = 0;
    LONG height_ = 0;
    LONG bitsPerPixel_ = 0;
    PicturePlacement placement_;
    std::optional<PictureWriter> writer_;  // of a picture that comes through the handover
    LONG rowsMissing_ = 0;                 // of that one
};

}  // namespace qm
