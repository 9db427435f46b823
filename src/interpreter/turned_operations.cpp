// See turned_operations.h.
#include "interpreter/turned_operations.h"

#include <algorithm>
#include <numeric>

#include "common/numbers.h"

namespace qm {

PointI TurnedOperations::Turned(std::int32_t x, std::int32_t y) const {
    switch (degrees_) {
        case 90:
            return {WrapSubtract(size_.x, y), x};
        case 180:
            return {WrapSubtract(size_.x, x), WrapSubtract(size_.y, y)};
        case 270:
            return {y, WrapSubtract(size_.y, x)};
        default:
            return {x, y};
    }
}

void TurnedOperations::TurnAll(std::int32_t count, PointI* points) const {
    std::for_each(points, points + count, [this](PointI& p) { p = Turned(p.x, p.y); });
}

// --- Shapes -------------------------------------------------------------------------------------

void TurnedOperations::Line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    const PointI a = Turned(x0, y0);
    const PointI b = Turned(x1, y1);
    target_.Line(a.x, a.y, b.x, b.y);
}

void TurnedOperations::Rectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                 std::int32_t y1) {
    const PointI a = Turned(x0, y0);
    const PointI b = Turned(x1, y1);
    target_.Rectangle(a.x, a.y, b.x, b.y);
}

void TurnedOperations::FilledRectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                       std::int32_t y1) {
    const PointI a = Turned(x0, y0);
    const PointI b = Turned(x1, y1);
    target_.FilledRectangle(a.x, a.y, b.x, b.y);
}

void TurnedOperations::Circle(std::int32_t cx, std::int32_t cy, std::int32_t radius) {
    const PointI centre = Turned(cx, cy);
    target_.Circle(centre.x, centre.y, radius);
}

void TurnedOperations::FilledPolyPolygon(PointI* points, const std::int32_t* counts,
                                         std::int32_t polygons) {
    TurnAll(std::accumulate(counts, counts + polygons, 0), points);
    target_.FilledPolyPolygon(points, counts, polygons);
}

void TurnedOperations::Polyline(std::int32_t count, PointI* points) {
    TurnAll(count, points);
    target_.Polyline(count, points);
}

void TurnedOperations::FilledPolygon(std::int32_t count, PointI* points) {
    TurnAll(count, points);
    target_.FilledPolygon(count, points);
}

int TurnedOperations::Arc(std::int32_t cx, std::int32_t cy, std::int32_t radius, double start,
                          double sweep) {
    const PointI centre = Turned(cx, cy);
    return target_.Arc(centre.x, centre.y, radius, start + degrees_ * kRadiansPerDegree, sweep);
}

// --- What has no place, or one on the sheet ------------------------------------------------------

void TurnedOperations::EndPage(std::uint32_t pageIndex) { target_.EndPage(pageIndex); }
void TurnedOperations::SetPatternLength(std::int32_t length, std::uint32_t mask) {
    target_.SetPatternLength(length, mask);
}
void TurnedOperations::SetLineStyle(std::int32_t style) { target_.SetLineStyle(style); }
void TurnedOperations::SetPen(std::int32_t pen) { target_.SetPen(pen); }
void TurnedOperations::SetLineWidth(std::int32_t width) { target_.SetLineWidth(width); }
void TurnedOperations::SetColor(std::uint32_t colour) { target_.SetColor(colour); }
int TurnedOperations::ReportProgress(std::int32_t percent) {
    return target_.ReportProgress(percent);
}
void TurnedOperations::Raster(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                              void* bitmap, std::int32_t flag, std::int32_t rop) {
    target_.Raster(x1, y1, x2, y2, bitmap, flag, rop);
}
void TurnedOperations::SetDrawMode(std::int32_t mode) { target_.SetDrawMode(mode); }
void TurnedOperations::SetFrameOffset(std::int32_t distance) { target_.SetFrameOffset(distance); }
void TurnedOperations::BeginLabelExtent(const char* text, double zero, std::int32_t height,
                                        std::int32_t reserved) {
    target_.BeginLabelExtent(text, zero, height, reserved);
}
void TurnedOperations::EndLabelExtent(const char* text) { target_.EndLabelExtent(text); }
void TurnedOperations::SetLineType(std::int32_t count, const std::int32_t* gaps) {
    target_.SetLineType(count, gaps);
}
void TurnedOperations::SetLineAttributes(std::int32_t bits) { target_.SetLineAttributes(bits); }
void TurnedOperations::DefineFillPattern(std::int32_t index, std::int32_t width,
                                         std::int32_t height, std::int32_t size,
                                         const std::uint8_t* bits) {
    target_.DefineFillPattern(index, width, height, size, bits);
}
void TurnedOperations::SetFillType(std::int32_t kind, std::int32_t index) {
    target_.SetFillType(kind, index);
}
void TurnedOperations::BeginRasterClip(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                       std::int32_t y2) {
    target_.BeginRasterClip(x1, y1, x2, y2);
}
void TurnedOperations::EndRasterClip() { target_.EndRasterClip(); }

}  // namespace qm
