// HPGLReader: the document builder, an interpreter whose drawing operations become calls on host
// objects.
//
// CQmFilterHPGL makes one for each pass over a file: fill in the source (and, to build a document,
// BeginDocument), run Detect or Interpret, then FinishLastPage. The host is not asked how it fared:
// results of drawing calls are ignored, and without a drawing block the operations do nothing.
// Test: tests/import/hpgl_reader_test.cpp.
#pragma once

#include <qmfilter.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "common/numbers.h"
#include "import/host_page.h"
#include "interpreter/hpgl_read.h"
#include "platform/com_ptr.h"
#include "platform/file_handle.h"

namespace qm {

class CQmFilterHPGL;

// The box around every point drawn while a label is being drawn, in plotter units, frame offset
// included. No Extent, because a label without a stroke has to reach the
// host with an inverted box.
struct LabelExtent {
    std::int32_t minX = INT32_MAX;
    std::int32_t minY = INT32_MAX;
    std::int32_t maxX = INT32_MIN;
    std::int32_t maxY = INT32_MIN;

    void Add(std::int32_t x, std::int32_t y) {
        minX = std::min(minX, x);
        minY = std::min(minY, y);
        maxX = std::max(maxX, x);
        maxY = std::max(maxY, y);
    }
};

class HPGLReader final : public HPGLRead {
  public:
    // Reads the plot from `stream`, at its current position.
    explicit HPGLReader(ComPtr<IStream> stream) : stream_(std::move(stream)) {}
    // Reads the plot from `file`, which is closed with the reader.
    explicit HPGLReader(FileHandle file) : file_(std::move(file)) {}

    // Builds pages under `root`, the first one in `first`; Interpret is to run next. `filter`,
    // which may be null and must outlive the reader, fires the progress events.
    void BeginDocument(ComPtr<IQmDocument> root, HostPage first, CQmFilterHPGL* filter);
    // Ends the page that is open at the end of the input. On success `pages` receives the number of
    // page ends in the file, empty pages in the middle included. A failure is the host's: it could
    // not say whether the page is empty.
    HRESULT FinishLastPage(LONG& pages);
    // The file could not be read to its end. Streams tell such things to the host alone.
    bool ReadFailed() const { return readFailed_; }
    // A Progress sink has asked to stop.
    bool Aborted() const { return abort_ != VARIANT_FALSE; }

    std::uint32_t ReadData(void* buffer, std::uint32_t maxBytes) override;
    std::uint32_t GetDataSize() override;
    std::uint32_t SeekData(std::int32_t offset, std::int32_t origin) override;
    void EndPage(std::uint32_t pageIndex) override;
    void Line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) override;
    void Letter(const Strokes& strokes) override;
    void Rectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) override;
    void FilledRectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                         std::int32_t y1) override;
    void Circle(std::int32_t cx, std::int32_t cy, std::int32_t radius) override;
    void FilledPolyPolygon(PointI* points, const std::int32_t* counts,
                           std::int32_t polygons) override;
    void Polyline(std::int32_t count, PointI* points) override;
    void FilledPolygon(std::int32_t count, PointI* points) override;
    int Arc(std::int32_t cx, std::int32_t cy, std::int32_t radius, double start,
            double sweep) override;
    void SetPatternLength(std::int32_t length, std::uint32_t mask) override;
    void SetLineStyle(std::int32_t style) override;
    void SetPen(std::int32_t pen) override;
    void SetLineWidth(std::int32_t width) override;
    void SetColor(std::uint32_t colour) override;
    int ReportProgress(std::int32_t percent) override;
    void Raster(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, void* bitmap,
                std::int32_t flag, std::int32_t rop) override;
    void SetDrawMode(std::int32_t mode) override;
    void SetFrameOffset(std::int32_t distance) override;
    void BeginLabelExtent(const char* text, double zero, std::int32_t height,
                          std::int32_t reserved) override;
    void EndLabelExtent(const char* text) override;
    void SetLineType(std::int32_t count, const std::int32_t* gaps) override;
    void SetLineAttributes(std::int32_t bits) override;
    void DefineFillPattern(std::int32_t index, std::int32_t width, std::int32_t height,
                           std::int32_t size, const std::uint8_t* bits) override;
    void SetFillType(std::int32_t kind, std::int32_t index) override;
    void BeginRasterClip(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                         std::int32_t y2) override;
    void EndRasterClip() override;

  private:
    std::int32_t Shifted(std::int32_t y) const { return WrapAdd(y, frameOffset_); }
    void AppendRectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                         VARIANT_BOOL filled);
    void AppendPolygon(std::int32_t count, PointI* points, VARIANT_BOOL filled);
    const LONG* ShiftPoints(PointI* points, std::int32_t count);
    HRESULT ClosePage(bool& finished);
    PageFacts Facts() const;

    // Released from the last to the first: page (container before block), document root, stream.
    FileHandle file_;
    ComPtr<IStream> stream_;
    ComPtr<IQmDocument> root_;
    HostPage page_;
    CQmFilterHPGL* filter_ = nullptr;  // hears of the progress

    LayerTable layers_{};
    std::int32_t highestLayer_ = 0;  // largest layer number defined on the page
    PenFlags penUsed_{};             // pens selected on the page
    std::int32_t pageCounter_ = 0;   // page ends so far
    bool rasterPresent_ = false;     // the page holds a picture
    bool searchable_ = false;        // a label's text was sent, on any page so far
    std::uint32_t colour_ = 0;       // last SetColor, 0x00BBGGRR
    std::int32_t frameOffset_ = 0;   // added to every y, plotter units
    bool trackExtent_ = false;       // a label is being drawn
    LabelExtent extent_;
    VARIANT_BOOL abort_ = VARIANT_FALSE;  // the answer of the last progress event
    bool readFailed_ = false;

    // Arrays on their way to the host as LONGs; members so that a polygon costs no allocation.
    std::vector<LONG> hostPoints_;
    std::vector<LONG> hostCounts_;
};

}  // namespace qm
