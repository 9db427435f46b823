// See fill.h. Handlers: RA RR EA ER WG RF AC.
#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/numbers.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

namespace {

using RectangleOperation = void (DrawingOperations::*)(std::int32_t, std::int32_t, std::int32_t,
                                                       std::int32_t);

// A rectangle from the pen, which stays, to `corner` (current units); never clipped.
void SendRectangle(HPGLRead& reader, RectangleOperation operation, PointD corner) {
    const PointI from = reader.coordinates.ToPlotter(reader.motion.penPos);
    const PointI to = reader.coordinates.ToPlotter(corner);
    reader.page.pageEmpty = false;
    (reader.*operation)(from.x, from.y, to.x, to.y);
}

bool ReadPoint(HPGLRead& reader, PointD& point) {
    if (reader.GetParams(2) < 2) return false;
    point = {reader.params[0], reader.params[1]};
    return true;
}

// A one-bit pattern of RF.
class FillPattern {
  public:
    static constexpr std::int64_t kMaxBytes = std::int64_t{64} << 20;

    // Dimensions in pixels, above 0. Nothing is allocated when the bits exceed kMaxBytes.
    FillPattern(std::int32_t width, std::int32_t height)
        : rowBytes_((static_cast<std::size_t>(width) + 15) / 16 * 2) {
        const auto bytes = CheckedBytes(height, static_cast<std::int64_t>(rowBytes_), kMaxBytes);
        if (bytes) bits_.resize(*bytes);
    }

    bool Allocated() const { return !bits_.empty(); }

    void SetInk(std::size_t x, std::size_t y) {
        bits_[y * rowBytes_ + x / 8] |= static_cast<std::uint8_t>(0x80U >> (x % 8));
    }
    // A set bit means no ink from now on, padding included, as in the device's monochrome bitmaps.
    void Invert() {
        for (std::uint8_t& byte : bits_) byte = static_cast<std::uint8_t>(~byte);
    }

    const std::vector<std::uint8_t>& Bits() const { return bits_; }

  private:
    std::size_t rowBytes_;
    std::vector<std::uint8_t> bits_;
};

}  // namespace

namespace handlers {

// RA x, y: filled with the pen's colour, whatever the fill type; only its outline where
// DrawsRectangleOutline. Quirk: forgets the polygon, as EA does; RR and ER do not.
void FillRectangleAbsolute(HPGLRead& reader) {
    PointD corner;
    if (!ReadPoint(reader, corner)) return;
    reader.polygon.Clear();
    if (reader.lines.MergeOpcode == kMergeNoRectangles) return;
    SendRectangle(reader,
                  reader.fill.DrawsRectangleOutline() ? &DrawingOperations::Rectangle
                                                      : &DrawingOperations::FilledRectangle,
                  corner);
}

// RR dx, dy. Quirk: unlike RA filled for every fill type.
void FillRectangleRelative(HPGLRead& reader) {
    PointD offset;
    if (!ReadPoint(reader, offset)) return;
    if (reader.lines.MergeOpcode == kMergeNoRectangles) return;
    SendRectangle(reader, &DrawingOperations::FilledRectangle, reader.motion.penPos + offset);
}

// EA x, y
void EdgeRectangleAbsolute(HPGLRead& reader) {
    PointD corner;
    if (!ReadPoint(reader, corner)) return;
    reader.polygon.Clear();
    SendRectangle(reader, &DrawingOperations::Rectangle, corner);
}

// ER dx, dy
void EdgeRectangleRelative(HPGLRead& reader) {
    PointD offset;
    if (!ReadPoint(reader, offset)) return;
    SendRectangle(reader, &DrawingOperations::Rectangle, reader.motion.penPos + offset);
}

// WG radius, start, sweep [, chord]: a filled sector about the pen, which stays.
void FillWedge(HPGLRead& reader) {
    if (reader.GetParams(3) < 3) return;
    const double radius = reader.params[0];
    const ArcSteps arc =
        CutArc(reader.params[1] * kRadiansPerDegree, reader.params[2] * kRadiansPerDegree);
    if (arc.count < 0) return;
    const PointD centre = reader.motion.penPos;
    std::vector<PointI> points;
    const auto add = [&points, &reader](PointD p) {
        points.push_back(reader.coordinates.ToPlotter(p));
    };
    add(centre);
    double angle = arc.start;
    add(PointOnCircle(centre, radius, angle));
    for (std::int32_t i = 0; i < arc.count; ++i) {
        angle += arc.step;
        add(PointOnCircle(centre, radius, angle));
    }
    add(PointOnCircle(centre, radius, arc.start + arc.sweep));
    add(centre);
    EmitFilledPolygon(reader, points);
}

// RF index, width, height, pixel ...: a pattern of 0 (no ink) and 1; missing pixels are 0. One of
// more than FillPattern::kMaxBytes is read and dropped.
void RasterFillDefinition(HPGLRead& reader) {
    const std::int16_t index = reader.GetShortParam();
    if (index == kAbsentShort) return;
    const std::int32_t width = reader.GetShortParam();
    const std::int32_t height = reader.GetShortParam();
    if (width <= 0 || height <= 0) return;
    FillPattern pattern(width, height);
    // Once no number follows none ever will, whatever the dimensions promise.
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::int16_t value = reader.GetShortParam();
        if (value == kAbsentShort) break;
        if (value > 0 && pattern.Allocated()) {
            pattern.SetInk(i % static_cast<std::size_t>(width),
                           i / static_cast<std::size_t>(width));
        }
    }
    if (!pattern.Allocated()) return;
    pattern.Invert();
    reader.DefineFillPattern(index, width, height, static_cast<std::int32_t>(pattern.Bits().size()),
                             pattern.Bits().data());
}

// AC [x, y]: read and dropped; patterns are not anchored.
void AnchorCorner(HPGLRead& reader) { reader.GetParams(2); }

}  // namespace handlers
}  // namespace qm
