// CairoPainter: draws a display list with Cairo; the PNG and the PDF writer set up the surface.
// Test: tests/render/cairo_test.cpp.
#pragma once

#include <functional>
#include <map>

#include "host/display_list_player.h"
#include "render/cairo_handles.h"
#include "render/cairo_invisible_font.h"
#include "render/page_frame.h"

namespace qm {

struct PainterSettings {
    double dotsPerUnit = 1.0;          // device dots (PNG) or points (PDF) a plotter unit
    double hairline = 1.0;             // width of pens of width 0, in dots or points
    bool widenThinPens = false;        // no pen thinner than the hairline
    bool texts = false;                // invisible texts that can be searched
    bool whiteIsClear = true;          // white dots of pictures
    double maxPictureSide = 32767.0;   // dots a picture is reduced to; 0: to the dots it covers
    std::function<void()> checkpoint;  // these two: see PageOptions
    std::function<void(int percent)> progress;
};

// Draws through `context`, whose matrix it sets from `frame`. Cairo keeps errors in the context;
// the caller checks its status at the end.
class CairoPainter final : public DisplayListVisitor {
  public:
    CairoPainter(cairo_t* context, const PageFrame& frame, const PainterSettings& settings);

    void Lines(const DrawingStyle& style, PointSpan points) override;
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override;
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override;
    void Arc(const DrawingStyle& style, const ArcShape& arc) override;
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override;
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override;
    void Text(const DrawingStyle& style, const BoxI& box, std::string_view text) override;
    void Picture(const DrawingStyle& style, const BoxI& box, std::int32_t rasterOperation,
                 ByteRun bitmap) override;
    void Pattern(const FillPattern& pattern) override { patterns_[pattern.index] = pattern; }
    void ClipRegion(PointSpan points) override;
    void EndClipRegion() override;
    void Progress(int percent) override {
        if (settings_.progress) settings_.progress(percent);
    }

  private:
    void AddRing(PointSpan points, bool close);
    void AddEllipse(const ArcShape& arc, double from, double to);
    void Stroke(const DrawingStyle& style, bool dot);
    void Fill(const DrawingStyle& style);
    void SetSource(std::uint32_t colour);
    void SetFillSource(const DrawingStyle& style);
    // False: nothing is to be drawn.
    bool SetBlend(const DrawingStyle& style);

    cairo_t* context_;
    PainterSettings settings_;
    std::map<std::int32_t, FillPattern> patterns_;
    CairoFont invisible_;  // made for the first text
    bool clipped_ = false;
};

}  // namespace qm
