// Play: reads a display list back, one call a record, with the drawing style kept up to date.
//
//   class Outlines final : public DisplayListVisitor { void Lines(...) override { ... } };
//   Outlines outlines;
//   Play(list, outlines);
//
// Test: tests/host/document_test.cpp.
#pragma once

#include <string_view>

#include "host/display_list.h"

namespace qm {

// What holds for the primitive at hand. Pointers stay valid as long as the list does.
struct DrawingStyle {
    std::int32_t pen = 0;
    std::int32_t layer = 0;
    std::uint32_t drawColour = 0;  // 0x00BBGGRR
    std::uint32_t fillColour = 0;
    // 0 solid, 1 dashed, 2 dotted, 3 dash-dot, 4 dash-dot-dot; anything else counts as solid.
    // Whichever of style and dash came last holds: a style clears the dash, a dash sets style 0.
    std::int32_t lineStyle = 0;
    const std::int32_t* dash = nullptr;  // lengths of dash, gap, dash, ... in plotter units
    std::size_t dashCount = 0;           // 0: no pattern of its own
    std::int32_t lineWidth = 0;          // plotter units; 0 is the thinnest line of the device
    std::int32_t lineAttributes = 0;     // 0x200 butt, 0x100 square, else round; 0x1000 bevel joins
    std::int32_t drawMode = 13;          // binary raster operation: 9 mask pen, 13 copy pen
    std::int32_t fillKind = 0;           // 0 solid, 3 pattern number fillIndex
    std::int32_t fillIndex = 0;
};

// Receives the records of a list. Every method has an empty default, so a visitor overrides what it
// needs; `style` is what holds at that record.
class DisplayListVisitor {
  public:
    virtual ~DisplayListVisitor() = default;

    // Lines that continue each other: points[0] to points[1], to points[2], ... At least two
    // points.
    virtual void Lines(const DrawingStyle&, PointSpan /*points*/) {}
    virtual void Rectangle(const DrawingStyle&, const BoxI&, bool /*filled*/) {}
    virtual void Circle(const DrawingStyle&, PointI /*centre*/, std::int32_t /*radius*/,
                        bool /*filled*/) {}
    virtual void Arc(const DrawingStyle&, const ArcShape&) {}
    // Not filled: an open polyline, closed only when the last point repeats the first.
    virtual void Polygon(const DrawingStyle&, PointSpan, bool /*filled*/) {}
    virtual void PolyPolygon(const DrawingStyle&, const Rings&, bool /*filled*/) {}
    // Text to search for (UTF-8) and the box of its strokes, which may be inverted when it has
    // none.
    virtual void Text(const DrawingStyle&, const BoxI&, std::string_view) {}
    // A packed bitmap as the host was given it: check it before use.
    virtual void Picture(const DrawingStyle&, const BoxI&, std::int32_t /*rasterOperation*/,
                         ByteRun /*packedBitmap*/) {}
    virtual void Pattern(const FillPattern&) {}
    virtual void ClipRegion(PointSpan) {}
    virtual void EndClipRegion() {}
    // A change of one attribute; `style` already holds the new value.
    virtual void StyleChange(const DrawingStyle&, RecordKind) {}
    // So much of the list (0 to 100, rising) has been read; called now and then.
    virtual void Progress(int /*percent*/) {}
};

// Calls `visitor` for every record of `list` in drawing order. What the visitor throws passes
// through.
void Play(const DisplayList& list, DisplayListVisitor& visitor);

}  // namespace qm
