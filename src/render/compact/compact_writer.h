// CompactWriter: a display list as HP-GL/2 with encoded polylines. WriteCompactPlot
// (compact_plot.h) runs it. Test: tests/render/compact_writer_test.cpp.
//
// What it writes settles: read again and written again it gives the same bytes. So lines that go on
// where the last one ended join it only where no one can see it, and points that repeat the pen's
// place are left out.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "host/display_list_player.h"
#include "render/compact/encoded_points.h"
#include "render/compact/pen_commands.h"

namespace qm::compact {

class CompactWriter final : public DisplayListVisitor {
  public:
    explicit CompactWriter(TextBuffer& out) : out_(out), points_(out) {}

    // The parts of a page, in this order. `quarters`: by which it is shown turned,
    // counter-clockwise; `layer`: only what stands on it.
    void BeginPage(int quarters);
    void Body(const DisplayList& list, std::optional<std::int32_t> layer);
    void EndPage();

    void Lines(const DrawingStyle& style, PointSpan points) override;
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override;
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override;
    void Arc(const DrawingStyle& style, const ArcShape& arc) override;
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override;
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override;
    void Pattern(const FillPattern& pattern) override { patterns_[pattern.index] = pattern; }
    void StyleChange(const DrawingStyle&, RecordKind) override { isStale_ = true; }

  private:
    // False: on another layer.
    bool Takes(const DrawingStyle& style) const { return !layer_ || style.layer == *layer_; }
    void SelectLines(const DrawingStyle& style);
    void SelectArea(const DrawingStyle& style);
    void Send(const std::string& commands);
    void StartLine(PointI point);
    // A line that only put the pen down becomes a dot.
    void FinishLine();
    void EndPoints();
    void TakeRing(PointSpan points);
    void SendArea(const DrawingStyle& style);
    void DefinePattern(const FillPattern& pattern);

    TextBuffer& out_;
    EncodedPoints points_;
    PenCommands pen_;
    int quarters_ = 0;  // as last sent
    std::optional<std::int32_t> layer_;
    bool isStale_ = true;  // the style may differ from that of the last line
    bool joins_ = false;   // lines of the style that meet are one line
    bool isDot_ = false;   // the line at hand is a dot, unless it goes on
    std::map<std::int32_t, FillPattern> patterns_;
    std::map<std::int32_t, const std::uint8_t*> defined_;  // the bits that the plot defined last
    // Rings without repeated points.
    std::vector<PointI> area_;
    std::vector<std::size_t> rings_;  // their ends in area_
};

}  // namespace qm::compact
