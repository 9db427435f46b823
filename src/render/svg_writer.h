// SvgWriter: a display list as SVG elements, one group a layer. WriteSvg (page_writers.h) runs it.
//
// Layers are groups that drawing programs show as layers. Where the drawing order shows (filled
// areas, pictures, clip regions, mixing modes), a layer that comes back later gets a further group
// of the same label, so that what covered what stays right; else each layer is one group.
// Test: tests/render/svg_writer_test.cpp.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "host/display_list_player.h"
#include "render/line_look.h"
#include "render/page_frame.h"
#include "render/svg_path.h"
#include "render/text_buffer.h"

namespace qm {

class SvgWriter final : public DisplayListVisitor {
  public:
    SvgWriter(const PageSource& page, const PageFrame& frame, const PageOptions& options,
              TextBuffer& out)
        : page_(page), frame_(frame), options_(options), out_(out), path_(out) {}

    // The parts of the document, in this order. `layer`: only what stands on it.
    void Begin();
    void Body(std::optional<std::int32_t> layer);
    void End();

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
    void StyleChange(const DrawingStyle&, RecordKind) override { styleChanged_ = true; }

    // A pattern stands in the file once for each colour in which it is used. When those so far have
    // more runs of ink than this, areas of further ones are filled solid.
    static constexpr std::size_t kMaxPatternRuns = 1000000;
    std::size_t PatternRuns() const { return patternRuns_; }

  private:
    // What a group says for the elements in it.
    struct Base {
        std::uint32_t colour = 0;
        std::int32_t width = 0;
    };

    bool Skips(const DrawingStyle& style) const {
        return (onlyLayer_ && style.layer != *onlyLayer_) ||
               BlendOfDrawMode(style.drawMode) == Blend::kNone;
    }
    void EnterGroup(const DrawingStyle& style);
    void LeaveGroup();
    std::string GroupId(std::int32_t layer);
    // A path whose data follow; `dot`: round line ends whatever the style says.
    void EnsurePath(const DrawingStyle& style, bool dot);
    void ClosePath();
    void WriteStroke(const DrawingStyle& style, bool dot);
    void WriteFill(const DrawingStyle& style);
    void WriteBlend(Blend blend);
    // The start of an element other than an outline.
    void BeginElement(const DrawingStyle& style, std::string_view name);
    std::string PatternId(const DrawingStyle& style);
    void DefinePattern(const std::string& id, const FillPattern& pattern, std::uint32_t colour);
    void WriteMatrix(const Matrix& matrix);
    void WriteInformation();

    const PageSource& page_;
    const PageFrame& frame_;
    const PageOptions& options_;
    TextBuffer& out_;
    SvgPath path_;
    std::optional<std::int32_t> onlyLayer_;
    std::optional<std::int32_t> openLayer_;
    std::map<std::int32_t, int> groupsOfLayer_;
    std::map<std::int32_t, FillPattern> patterns_;
    std::map<std::string, std::size_t> patternIds_;
    std::size_t patternRuns_ = 0;
    Base base_;
    bool pathOpen_ = false;
    bool pathIsDots_ = false;
    DrawingStyle pathStyle_;  // of the open path
    bool styleChanged_ = true;
    int clips_ = 0;
    bool clipped_ = false;
};

}  // namespace qm
