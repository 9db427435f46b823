// OperationRecorder: an interpreter whose drawing operations come out as text, one line each.
//
// `qmplot ops` prints them; the tests compare them. Ops() is the short way. Tests: tests/trace/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "interpreter/hpgl_read.h"
#include "interpreter/reading.h"

namespace qm {

class OperationRecorder : public HPGLRead {
  public:
    // Fills up to `size` bytes at `buffer` with the next bytes of the plot; returns how many, 0 at
    // its end.
    using Source = std::function<std::size_t(void* buffer, std::size_t size)>;
    // Takes one complete line, LF included.
    using Sink = std::function<void(std::string_view line)>;

    // `dataSize` sets the progress steps, which nobody sees here.
    OperationRecorder(Source source, std::uint32_t dataSize, Sink sink);

    // Interprets the whole source in document mode and writes the closing "result N" line.
    void Record();

    std::uint32_t ReadData(void* buffer, std::uint32_t maxBytes) override;
    std::uint32_t GetDataSize() override { return dataSize_; }
    void EndPage(std::uint32_t pageIndex) override;
    void Line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) override;
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
    // Starts a line with `name`; Add appends " value"; Done hands the line over.
    OperationRecorder& Begin(const char* name);
    OperationRecorder& Add(std::int64_t value);
    OperationRecorder& AddReal(double value);
    OperationRecorder& AddText(const char* text);
    OperationRecorder& AddHex(std::uint32_t value, int digits);
    OperationRecorder& AddPoints(const PointI* points, std::int64_t count);
    void Done();

    Source source_;
    std::uint32_t dataSize_;
    Sink sink_;
    std::string line_;
};

// The lines that `qmplot ops` prints for a plot held in memory.
std::string Ops(std::string_view plot, const Reading& reading = {});

}  // namespace qm
