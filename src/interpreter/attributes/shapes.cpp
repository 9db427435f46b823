// See fill.h. Handlers: RA RR EA ER WG EW RF AC.
#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

#include "common/numbers.h"
#include "interpreter/arcs.h"
#include "interpreter/attributes/fill.h"
#include "interpreter/attributes/pens.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

namespace qm {

namespace {

// A rectangle from the pen, which stays, to `corner` (current units); never clipped.
BoxI RectangleTo(PointD corner, const Drawing& drawing) {
    const CoordinateState& c = drawing.coordinates;
    return {c.ToPlotter(drawing.motion.penPos), c.ToPlotter(corner)};
}

// A one-bit pattern of RF.
class FillPattern {
  public:
    static constexpr std::int64_t kMaxBytes = std::int64_t{64} << 20;

    // Dimensions in pixels, above 0. Nothing is allocated when the bits exceed kMaxBytes or
    // `budget`.
    FillPattern(std::int32_t width, std::int32_t height, WorkBudget& budget)
        : rowBytes_((static_cast<std::size_t>(width) + 15) / 16 * 2) {
        const auto bytes = CheckedBytes(height, static_cast<std::int64_t>(rowBytes_), kMaxBytes);
        if (bytes && budget.Take(static_cast<std::int64_t>(*bytes))) bits_.resize(*bytes);
        if (!bytes) budget.Meet();
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

// RA and RR, EA and ER in the reading that knows no difference between them.
void FillRectangleByType(Drawing& drawing, PointD corner, const PenState& pens,
                         const FillState& fill) {
    if (drawing.lines.MergeOpcode == kMergeNoRectangles) return;
    if (BufferRectangle(drawing, corner)) FillBuffer(drawing, pens, fill, false);
}
void EdgeRectangle(Drawing& drawing, PointD corner) {
    if (BufferRectangle(drawing, corner)) EdgeBuffer(drawing);
}

// The sector of WG and EW, whose numbers stand in the slots.
bool BufferWedgeOf(Parameters& in, Drawing& drawing) {
    const double radius = in.slots[0];
    double chord = 0.0;
    if (drawing.reading.cutsByChord) in.GetRealParam(chord);
    const ArcSteps arc = CutArc(in.slots[1] * kRadiansPerDegree, in.slots[2] * kRadiansPerDegree,
                                ChordOf(drawing.motion, chord, radius));
    return BufferWedge(drawing, radius, arc);
}

}  // namespace

namespace handlers {

// RA x, y: filled with the pen's colour, whatever the fill type; only its outline where
// DrawsRectangleOutline. Quirk: forgets the polygon, as EA does; RR and ER do not.
void FillRectangleAbsolute(Parameters& in, Drawing& drawing, const PenState& pens,
                           const FillState& fill) {
    PointD corner;
    if (!in.GetPoint(corner)) return;
    if (drawing.reading.fillsByType) return FillRectangleByType(drawing, corner, pens, fill);
    drawing.polygon.Clear();
    if (drawing.lines.MergeOpcode == kMergeNoRectangles) return;
    const BoxI box = RectangleTo(corner, drawing);
    if (fill.DrawsRectangleOutline()) return drawing.out.Rectangle(box);
    drawing.out.FilledRectangle(box);
}

// RR dx, dy. Quirk: unlike RA filled for every fill type.
void FillRectangleRelative(Parameters& in, Drawing& drawing, const PenState& pens,
                           const FillState& fill) {
    PointD offset;
    if (!in.GetPoint(offset)) return;
    if (drawing.reading.fillsByType) {
        return FillRectangleByType(drawing, drawing.motion.penPos + offset, pens, fill);
    }
    if (drawing.lines.MergeOpcode == kMergeNoRectangles) return;
    drawing.out.FilledRectangle(RectangleTo(drawing.motion.penPos + offset, drawing));
}

// EA x, y
void EdgeRectangleAbsolute(Parameters& in, Drawing& drawing) {
    PointD corner;
    if (!in.GetPoint(corner)) return;
    if (drawing.reading.edgesWhole) return EdgeRectangle(drawing, corner);
    drawing.polygon.Clear();
    drawing.out.Rectangle(RectangleTo(corner, drawing));
}

// ER dx, dy
void EdgeRectangleRelative(Parameters& in, Drawing& drawing) {
    PointD offset;
    if (!in.GetPoint(offset)) return;
    if (drawing.reading.edgesWhole) return EdgeRectangle(drawing, drawing.motion.penPos + offset);
    drawing.out.Rectangle(RectangleTo(drawing.motion.penPos + offset, drawing));
}

// WG radius, start, sweep [, chord]: a filled sector about the pen, which stays.
// Quirk: always solid, whatever the fill type.
void FillWedge(Parameters& in, Drawing& drawing, const PenState& pens, const FillState& fill) {
    if (in.GetParams(3) < 3) return;
    if (drawing.reading.fillsByType) {
        if (BufferWedgeOf(in, drawing)) FillBuffer(drawing, pens, fill, false);
        return;
    }
    const double radius = in.slots[0];
    const ArcSteps arc = CutArc(in.slots[1] * kRadiansPerDegree, in.slots[2] * kRadiansPerDegree);
    if (arc.count < 0) return;
    const PointD centre = drawing.motion.penPos;
    std::vector<PointI> points;
    const auto add = [&](PointD p) { points.push_back(drawing.coordinates.ToPlotter(p)); };
    add(centre);
    double angle = arc.start;
    add(PointOnCircle(centre, radius, angle));
    for (std::int32_t i = 0; i < arc.count; ++i) {
        angle += arc.step;
        add(PointOnCircle(centre, radius, angle));
    }
    add(PointOnCircle(centre, radius, arc.start + arc.sweep));
    add(centre);
    drawing.EmitFilledPolygon(points);
}

// EW radius, start, sweep [, chord]: the outline of a sector.
// Quirk: not known; its second letter is read as the first one of the next command.
void EdgeWedge(Parameters& in, Drawing& drawing) {
    if (!drawing.reading.edgesWhole) return in.input.UngetChar();
    if (in.GetParams(3) == 3 && BufferWedgeOf(in, drawing)) EdgeBuffer(drawing);
}

// RF index, width, height, pixel ...: a pattern of 0 (no ink) and 1; missing pixels are 0. One of
// more than FillPattern::kMaxBytes, or beyond what is left for patterns, is read and dropped.
void RasterFillDefinition(Parameters& in, Drawing& drawing) {
    const std::int16_t index = in.GetShortParam();
    if (index == kAbsentShort) return;
    const std::int32_t width = in.GetShortParam();
    const std::int32_t height = in.GetShortParam();
    if (width <= 0 || height <= 0) return;
    FillPattern pattern(width, height, drawing.work.patternBytes);
    // Once no number follows none ever will, whatever the dimensions promise.
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::optional<std::int16_t> value = FindShortParam(in.input);
        if (!value) break;
        if (*value > 0 && pattern.Allocated()) {
            pattern.SetInk(i % static_cast<std::size_t>(width),
                           i / static_cast<std::size_t>(width));
        }
    }
    if (!pattern.Allocated()) return;
    pattern.Invert();
    drawing.out.DefineFillPattern(index, width, height, pattern.Bits());
}

// AC [x, y]: where a line of every hatch goes through. Quirk: read and dropped.
void AnchorCorner(Parameters& in, const Reading& reading, const CoordinateState& c,
                  FillState& fill) {
    PointD anchor;
    const bool given = in.GetPoint(anchor);
    if (reading.fillsByType) fill.anchor = given ? c.ToPlotterReal(anchor) : PointD{};
}

}  // namespace handlers
}  // namespace qm
