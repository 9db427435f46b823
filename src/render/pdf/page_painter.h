// PagePainter: a display list as the operators of a PDF page. pdf_writer.cpp runs it. Test:
// tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "host/display_list_player.h"
#include "render/page_frame.h"
#include "render/pdf/glyph_shapes.h"
#include "render/pdf/graphics_state.h"
#include "render/pdf/layers.h"
#include "render/pdf/page_resources.h"
#include "render/pdf/path_writer.h"
#include "render/pdf/text_layer.h"
#include "render/pdf/tiling.h"

namespace qm::pdf {

// What the pages of a document share.
struct Document {
    explicit Document(OutputSink& sink) : file(sink), glyphs(file), layers(file) {}

    PdfFile file;
    GlyphShapes glyphs;
    TextFonts fonts;
    Layers layers;
};

// Where the drawing lies on the page.
struct PagePlace {
    PageFrame frame;
    Matrix toPage;          // from the drawing's coordinates
    PointI origin;          // taken off all coordinates, so that far away ones stay exact
    double hairline = 1.0;  // plotter units
};

// Lines and curves of a path. Viewers outline a path as a whole, which takes more than linear time.
inline constexpr std::size_t kMaxSegments = 1000;

class PagePainter final : public DisplayListVisitor {
  public:
    // `number`: of the page in the document, from 1. All but `place` must outlive the painter.
    PagePainter(Document& document, const PageSource& page, const PageOptions& options,
                const PagePlace& place, std::uint32_t number);

    void Lines(const DrawingStyle& style, PointSpan points) override;
    bool Letter(const DrawingStyle& style, const LetterRecord& letter) override;
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
    void Progress(int percent) override {
        if (options_.progress) options_.progress(percent);
    }

    // Ends the page; its content in order.
    const std::vector<ObjectNumber>& Finish();
    // Colours were mixed with what the page showed before.
    bool Blends() const { return state_.Blends(); }
    // The resource dictionary, after Finish.
    std::string Resources() const;

  private:
    void Checkpoint() {
        if (options_.checkpoint) options_.checkpoint();
    }
    // False: the style draws nothing.
    bool TakeStrokeStyle(const DrawingStyle& style);
    void BeginStroke(bool dot);
    void EndStroke();
    void StrokePolyline(PointSpan points);
    void StrokeInPieces(PointSpan points);
    // Draws the lines that are held back and ends their path.
    void Flush();
    bool BeginFill(const DrawingStyle& style);
    void EnterLayer(std::int32_t layer);
    void LeaveLayer();
    void WriteTexts();

    // Nothing was drawn where `box` lies, as far as is known without looking closely.
    bool OnBarePaper(const BoxI& box);

    // Lines that are held back, or a letter.
    struct Held {
        PointSpan points;  // none of a letter
        LetterRecord letter;

        bool IsLetter() const { return points.data == nullptr; }
    };

    // Finds the strokes of a text, the last held back inside its box; returns where they begin.
    std::size_t StrokesOf(const BoxI& box);
    // Draws what is held from `begin` on, letters by reference; returns whether they run to the
    // left or downward.
    bool DrawLetters(std::size_t begin, bool upright);
    void DrawLetter(std::size_t begin, std::size_t end);
    std::uint32_t ShapeOfLines(std::size_t begin, std::size_t end);
    std::uint32_t ShapeOfLetter(const LetterRecord& letter);
    void Stroke(const Held& held);
    // Adds what is held to the path, in order, and holds none.
    void StrokeHeld();
    void EndRow();

    Document& document_;
    const PageSource& page_;
    const PageOptions& options_;
    PagePlace place_;
    std::uint32_t number_;
    PageResources resources_;
    ContentStream out_;
    PathWriter path_;
    GraphicsState state_;
    Tilings tilings_;
    TextLayer texts_;
    std::map<std::int32_t, FillPattern> patterns_;
    std::map<std::int32_t, bool> groups_;  // layers that have a group
    std::optional<std::int32_t> layer_;
    std::size_t pictures_ = 0;
    Extent pictured_;     // by pictures
    bool inked_ = false;  // by anything else
    bool clipped_ = false;

    bool styleChanged_ = true;
    DrawingStyle style_;            // of the lines that follow
    Blend blend_ = Blend::kNormal;  // these two: of that style
    bool plain_ = true;             // dots look like any line
    // What may turn out to be letters, and the lines' points, whose memory does not move.
    std::vector<Held> held_;
    std::vector<PointI> heldPoints_;
    std::vector<GlyphShapes::Chain> chains_;  // of the letter at hand
    std::vector<std::uint32_t> shapes_;       // by the number of a letter in the list; 0 unknown
    bool pathOpen_ = false;
    bool pathIsDots_ = false;
    // A row of letters by reference.
    int rowLength_ = 0;
    PointI rowAt_;
};

}  // namespace qm::pdf
