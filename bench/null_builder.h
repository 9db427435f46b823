// NullBuilder: an interpreter that drops every drawing operation, over a plot in memory. What the
// benchmarks measure with it is reading alone.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "interpreter/hpgl_read.h"

namespace qm {

class NullBuilder final : public HPGLRead {
  public:
    explicit NullBuilder(std::string_view plot) : rest_(plot), size_(plot.size()) {}

    // Lines and points received, so that nothing is optimised away and a wrong reading shows.
    std::uint64_t primitives = 0;

    std::uint32_t ReadData(void* buffer, std::uint32_t maxBytes) override {
        const std::size_t count = std::min<std::size_t>(maxBytes, rest_.size());
        std::memcpy(buffer, rest_.data(), count);
        rest_.remove_prefix(count);
        return static_cast<std::uint32_t>(count);
    }
    std::uint32_t GetDataSize() override { return static_cast<std::uint32_t>(size_); }
    void EndPage(std::uint32_t) override {}
    void Line(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override { ++primitives; }
    void Rectangle(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
    void FilledRectangle(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
    void Circle(std::int32_t, std::int32_t, std::int32_t) override { ++primitives; }
    void FilledPolyPolygon(PointI*, const std::int32_t*, std::int32_t) override { ++primitives; }
    void Polyline(std::int32_t, PointI*) override { ++primitives; }
    void FilledPolygon(std::int32_t, PointI*) override { ++primitives; }
    int Arc(std::int32_t, std::int32_t, std::int32_t, double, double) override { return 1; }
    void SetPatternLength(std::int32_t, std::uint32_t) override {}
    void SetLineStyle(std::int32_t) override {}
    void SetPen(std::int32_t) override {}
    void SetLineWidth(std::int32_t) override {}
    void SetColor(std::uint32_t) override {}
    int ReportProgress(std::int32_t) override { return 1; }
    void Raster(std::int32_t, std::int32_t, std::int32_t, std::int32_t, void* bitmap, std::int32_t,
                std::int32_t) override {
        ++primitives;
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
