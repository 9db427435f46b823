// PageSummary: what a page holds (counts by kind and by pen) and where (its extent), gathered in
// one pass over its display list. Entry points: Summarise, and Summariser for those who want more
// of the same pass. Test: tests/host/page_summary_test.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "common/geometry.h"
#include "host/display_list_player.h"

namespace qm {

struct PageSummary {
    // Primitives; a chain of n lines counts n.
    std::uint64_t lines = 0;
    std::uint64_t polylines = 0;
    std::uint64_t polygons = 0;  // filled; an area of several rings counts once
    std::uint64_t rectangles = 0;
    std::uint64_t circles = 0;
    std::uint64_t arcs = 0;
    std::uint64_t texts = 0;
    std::uint64_t pictures = 0;
    std::uint64_t fillPatterns = 0;
    // Primitives by pen number; others than 0 to 255 are not counted here.
    std::array<std::uint64_t, 256> byPen{};
    // Layer numbers in the order of their first primitive.
    std::vector<std::int32_t> layers;
    // Everything visible, with half of the pen width around it; texts (their strokes are lines) do
    // not count, clip regions are not looked at.
    Extent extent;
    // Filled areas, pictures, clip regions or mixing draw modes: what is drawn later covers or
    // changes what was drawn before, so the drawing order shows.
    bool orderShows = false;
    // There is something visible, and all of it is white.
    bool onlyWhite = false;
};

// Gathers a summary from what is played to it. What derives from it, to gather more in the same
// pass, calls the method that it overrides.
class Summariser : public DisplayListVisitor {
  public:
    // To be called when everything has been seen.
    PageSummary Finish();

    void Lines(const DrawingStyle& style, PointSpan points) override;
    bool Letter(const DrawingStyle& style, const LetterRecord& letter) override;
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override;
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override;
    void Arc(const DrawingStyle& style, const ArcShape& arc) override;
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override;
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override;
    void Text(const DrawingStyle& style, const BoxI&, std::string_view) override;
    void Picture(const DrawingStyle& style, const BoxI& box, std::int32_t, ByteRun) override;
    void Pattern(const FillPattern&) override;
    void ClipRegion(PointSpan) override;
    void StyleChange(const DrawingStyle& style, RecordKind kind) override;

  protected:
    // What has been seen so far; all but onlyWhite.
    const PageSummary& Seen() {
        TakeLines();
        return summary_;
    }
    bool FoundColours() const { return coloured_ != 0; }

  private:
    void Count(const DrawingStyle& style, std::uint64_t& counter, std::uint64_t primitives = 1);
    void NoteArea(bool area) { summary_.orderShows = summary_.orderShows || area; }
    void WidenPoint(double x, double y, double by);
    void WidenBox(const BoxI& box, double by);
    void Widen(PointSpan points, double by);
    void IncludeLines(const DrawingStyle& style, const BoxI& box);
    void TakeLines();
    bool HasWholeEllipse(const ArcShape& arc, double by) const;

    PageSummary summary_;
    std::uint32_t coloured_ = 0;  // bits that some primitive's colour has not
    std::int32_t lastLayer_ = 0;
    // The box of the lines of one width, which are many.
    BoxI lines_;
    bool anyLines_ = false;
    std::int32_t linesWidth_ = 0;
    double linesHalfWidth_ = 0.0;
};

PageSummary Summarise(const DisplayList& list);

// What decides whether and where a page is shown.
struct PageGist {
    Extent extent;  // as in PageSummary, so is onlyWhite
    bool onlyWhite = false;
    bool hasPictures = false;
    bool hasOthers = false;  // lines, areas and other primitives, texts excepted
};

// The same as Summarise finds; reads only the parts of the list that can change it, often a few.
PageGist GistOf(const DisplayList& list);

// The part of an elliptic arc's box that its angles reach, plotter units.
Extent ArcExtent(const ArcShape& arc);

}  // namespace qm
