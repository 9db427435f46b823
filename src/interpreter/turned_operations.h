// TurnedOperations: passes drawing operations on with their coordinates turned about the sheet.
//
// Output sends through it while a plot has turned its coordinates within a page (RO), which as a
// whole is shown turned by the RO that it began with. Pictures lie on the sheet whatever RO says:
// they pass as they are. Tests: tests/interpreter/reading_test.cpp.
#pragma once

#include "common/geometry.h"
#include "interpreter/drawing_operations.h"

namespace qm {

class TurnedOperations : public DrawingOperations {
  public:
    // `target` takes the turned calls and must outlive this object.
    explicit TurnedOperations(DrawingOperations& target) : target_(target) {}

    // Counter-clockwise by `degrees`, 90, 180 or 270, so that the turned sheet lies where the sheet
    // of `size` (plotter units, before the turn of the coordinates) does.
    void Turn(int degrees, PointI size) {
        degrees_ = degrees;
        size_ = size;
    }

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
    PointI Turned(std::int32_t x, std::int32_t y) const;
    void TurnAll(std::int32_t count, PointI* points) const;

    DrawingOperations& target_;
    int degrees_ = 0;
    PointI size_{};
};

}  // namespace qm
