// NullBuilder: an interpreter over a plot in memory that drops every drawing operation.
//
// Benchmarks, fuzzers and tests derive from it and override what they look at.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "interpreter/hpgl_read.h"

namespace qm {

class NullBuilder : public HPGLRead {
  public:
    // `plot` must outlive the builder.
    explicit NullBuilder(std::string_view plot) : rest_(plot), size_(plot.size()) {}

    std::uint32_t ReadData(void* buffer, std::uint32_t maxBytes) override {
        const std::size_t count = std::min<std::size_t>(maxBytes, rest_.size());
        if (count != 0) std::memcpy(buffer, rest_.data(), count);
        rest_.remove_prefix(count);
        return static_cast<std::uint32_t>(count);
    }
    std::uint32_t GetDataSize() override { return static_cast<std::uint32_t>(size_); }
    std::uint32_t SeekData(std::int32_t, std::int32_t) override { return 0; }
    void EndPage(std::uint32_t) override {}
    void Line(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
    void Rectangle(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
    void FilledRectangle(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
    void Circle(std::int32_t, std::int32_t, std::int32_t) override {}
    void FilledPolyPolygon(PointI*, const std::int32_t*, std::int32_t) override {}
    void Polyline(std::int32_t, PointI*) override {}
    void FilledPolygon(std::int32_t, PointI*) override {}
    int Arc(std::int32_t, std::int32_t, std::int32_t, double, double) override { return 1; }
    void SetPatternLength(std::int32_t, std::uint32_t) override {}
    void SetLineStyle(std::int32_t) override {}
    void SetPen(std::int32_t) override {}
    void SetLineWidth(std::int32_t) override {}
    void SetColor(std::uint32_t) override {}
    int ReportProgress(std::int32_t) override { return 1; }
    void Raster(std::int32_t, std::int32_t, std::int32_t, std::int32_t, void* bitmap, std::int32_t,
                std::int32_t) override {
        GlobalFree(bitmap);
    }
    void SetDrawMode(std::int32_t) override {}
    void SetFrameOffset(std::int32_t) override {}
    void BeginLabelExtent(const char*, double, std::int32_t, std::int32_t) override {}
    void EndLabelExtent(const char*) override {}
    void SetLineType(std::int32_t, const std::int32_t*) override {}
    void SetLineAttributes(std::int32_t) override {}
    void DefineFillPattern(std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                           const std::uint8_t*) override {}
    void SetFillType(std::int32_t, std::int32_t) override {}
    void BeginRasterClip(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
    void EndRasterClip() override {}

  private:
    std::string_view rest_;
    std::size_t size_;
};

}  // namespace qm
