// PagePainter: draws a display list into the bands of a page; chooses for each primitive the way
// that is exact and fast. Test: tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "host/display_list_player.h"
#include "render/bitmap/band.h"
#include "render/bitmap/capsule_strokes.h"
#include "render/bitmap/coverage_area.h"
#include "render/bitmap/dashes.h"
#include "render/bitmap/letter_masks.h"
#include "render/bitmap/pattern_ink.h"
#include "render/bitmap/stroke_outline.h"
#include "render/page_frame.h"

namespace qm::bitmap {

struct PaintSettings {
    Matrix toDots;                              // from the drawing to the page's dots
    double dotsPerUnit = 1.0;                   // what its scale is
    double hairline = 1.0;                      // width of pens of width 0 in dots
    bool smooth = true;                         // else a dot is drawn when its centre is inside
    bool whiteIsClear = true;                   // white dots of pictures
    std::uint32_t paper = 0xFFFFFF;             // 0x00RRGGBB
    const FrequentLetters* letters = nullptr;   // of the list; null: masks are not used
    std::function<void()> checkpoint;           // called now and then; may throw; may be empty
    std::function<void(int percent)> progress;  // of the list; may be empty
};

// Draws any number of bands, one after the other. Each dot comes out the same whatever the bands.
class PagePainter final : public DisplayListVisitor {
  public:
    // Bands are `width` dots wide and at most `rows` high. The list must outlive this.
    PagePainter(const DisplayList& list, const PaintSettings& settings, std::int32_t width,
                std::int32_t rows);

    // The rows `top` to `bottom` - 1 of the page; valid until the next call.
    Band& Draw(std::int32_t top, std::int32_t bottom);

    void Lines(const DrawingStyle& style, PointSpan points) override;
    bool Letter(const DrawingStyle& style, const LetterRecord& letter) override;
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override;
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override;
    void Arc(const DrawingStyle& style, const ArcShape& arc) override;
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override;
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override;
    void Picture(const DrawingStyle& style, const BoxI& box, std::int32_t rasterOperation,
                 ByteRun bitmap) override;
    void Pattern(const FillPattern& pattern) override;
    void ClipRegion(PointSpan points) override;
    void EndClipRegion() override;
    void StyleChange(const DrawingStyle&, RecordKind) override { lookIsOld_ = true; }
    // Whether a part of the list may reach into the rows at hand.
    bool Wants(const PartCover& cover) override;
    void Progress(int percent) override {
        if (settings_.progress) settings_.progress(percent);
    }

  private:
    // What a style means here, found once for all primitives that share it.
    struct Look {
        StrokeShape shape;
        DashPattern dashes;
        unsigned operation = 12;
        std::uint32_t colour = 0;  // of lines, or what the operation makes of it on any paper
        bool ignoresPaper = true;
        bool isFast = true;  // CapsuleStrokes can draw the lines
        CapsuleStrokes::End end = CapsuleStrokes::End::kRound;
    };
    struct Ink {
        unsigned operation = 12;
        std::uint32_t colour = 0;
        bool ignoresPaper = true;
        const PatternInk* pattern = nullptr;
        unsigned strength = 255;
    };

    struct KnownPattern {
        FillPattern pattern;
        std::unique_ptr<PatternInk> ink;
    };

    static const PatternInk* InkOf(KnownPattern& known);
    const Look& LookOf(const DrawingStyle& style);
    bool IsFast(const Look& look) const;
    void Checkpoint();
    PointD ToDots(double x, double y) const {
        const Matrix& m = settings_.toDots;
        return {m.a * x + m.c * y + m.e, m.b * x + m.d * y + m.f};
    }
    // False when no dot within `reach` of the points' box lies in the rows at hand.
    bool MayShow(const PointI* points, std::size_t count, double reach) const;
    void TakePath(PointSpan points);
    void TakeArc(const ArcShape& arc, double from, double to);
    void StrokeLines(const Look& look, PointSpan points);
    void StrokeFast(const Look& look, PointSpan points, bool closed);
    void StrokePath(const Look& look, bool closed);
    void StrokeDot(const Look& look, PointD centre);
    void SweepStroke(const Look& look);
    void SweepFill(const DrawingStyle& style);
    void Sweep(FillRule rule, const Ink& ink);
    void Put(const Ink& ink, std::int32_t y, std::int32_t x, std::int32_t count, unsigned coverage);
    unsigned PatternCoverage(const PatternInk& pattern, std::int32_t x, std::int32_t y) const;

    const DisplayList& list_;
    PaintSettings settings_;
    Matrix toDrawing_;
    Band band_;
    CoverageArea area_;
    CapsuleStrokes capsules_;
    std::optional<LetterMasks> letters_;
    DotBox bounds_;                   // what may be drawn of the band
    std::vector<std::uint8_t> mask_;  // of a clip region that is no rectangle, a byte a dot
    bool masked_ = false;
    std::map<std::int32_t, KnownPattern> patterns_;
    bool lookIsOld_ = true;
    Look look_;
    std::vector<PointD> path_;
    unsigned primitives_ = 0;
};

}  // namespace qm::bitmap
