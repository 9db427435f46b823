// Play: reads a display list back, one call a record, with the drawing style kept up to date.
//
//   class Outlines final : public DisplayListVisitor { void Lines(...) override { ... } };
//   Outlines outlines;
//   Play(list, outlines);
//
// Test: tests/host/display_list_test.cpp.
#pragma once

#include <array>
#include <string_view>

#include "host/display_list.h"

namespace qm {

// A letter that comes several times in a list.
struct LetterRecord {
    std::uint32_t number = 0;  // the same for letters that differ in their place alone
    Strokes shape;             // as they lie from `at`, the first point
    PointI at;
    BoxI box;  // around the strokes, where they are
};

// The strokes of a letter where they are.
class PlacedLetter {
  public:
    explicit PlacedLetter(const LetterRecord& letter) : shape_(letter.shape) {
        for (std::size_t i = 0; i < shape_.count; ++i) {
            points_[i] = {letter.at.x + shape_.points[i].x, letter.at.y + shape_.points[i].y};
        }
    }
    // Valid as long as this.
    Strokes All() const { return {points_.data(), shape_.count, shape_.lengths, shape_.runs}; }
    // Calls draw(points) for each run.
    template <typename Draw>
    void ForEachRun(const Draw& draw) const {
        const PointI* run = points_.data();
        for (std::size_t i = 0; i < shape_.runs; ++i) {
            draw(PointSpan{run, shape_.lengths[i]});
            run += shape_.lengths[i];
        }
    }

  private:
    Strokes shape_;
    std::array<PointI, LetterShapes::kMostPoints> points_;
};

// Receives the records of a list. Every method has an empty default, so a visitor overrides what it
// needs; `style` is what holds at that record. Points and texts are gone after the call; pictures,
// rows of patterns and dashes stay as long as the list.
class DisplayListVisitor {
  public:
    virtual ~DisplayListVisitor() = default;

    // Lines that continue each other: points[0] to points[1], to points[2], ... At least two
    // points.
    virtual void Lines(const DrawingStyle&, PointSpan /*points*/) {}
    // Lines for each run of a letter's strokes at once. False: it wants the lines.
    virtual bool Letter(const DrawingStyle&, const LetterRecord&) { return false; }
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
    // Asked before each part of the list. False leaves the part out: nothing is called for it, and
    // the next record comes with the style that holds then. Parts with definitions must be played.
    virtual bool Wants(const PartCover&) { return true; }
    // So much of the list (0 to 100, rising) has been read; called now and then.
    virtual void Progress(int /*percent*/) {}
};

// Calls `visitor` for every record of `list` in drawing order. What the visitor throws passes
// through.
void Play(const DisplayList& list, DisplayListVisitor& visitor);

}  // namespace qm
