// GraphicsState: what a page's operators draw with, written when it changes and only then. Test:
// tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <optional>
#include <vector>

#include "host/display_list_player.h"
#include "render/line_look.h"
#include "render/pdf/content_stream.h"

namespace qm::pdf {

class GraphicsState {
  public:
    // `hairline`: width of pens of width 0, in plotter units.
    GraphicsState(ContentStream& out, double hairline) : out_(out), hairline_(hairline) {}

    // Pen, dashes and draw mode of `style`; `dot`: round ends and no dashes whatever it says.
    void SetStroke(const DrawingStyle& style, bool dot);
    // Where the dashes begin: so far, in plotter units, from the start of the pattern.
    void SetDashPhase(double phase);
    // Colour of areas and stencils; `pattern`: number of a tiling pattern, 0 for none.
    void SetFill(std::uint32_t colour, std::size_t pattern);
    void SetBlend(Blend blend);
    // Dashes of the last SetStroke.
    const std::vector<double>& Dashes() const { return values_.dashes; }

    void Save();     // q
    void Restore();  // Q

    // Draw modes have been used / patterns have.
    bool Blends() const { return blends_; }
    bool Fills() const { return fills_; }

  private:
    // What a page begins with; no width and no join is what the writer draws with.
    struct Values {
        std::uint32_t stroke = 0;
        std::uint32_t fill = 0;
        std::size_t pattern = 0;
        double width = -1.0;
        LineCap cap = LineCap::kButt;
        std::optional<LineJoin> join;
        std::vector<double> dashes;
        double phase = 0.0;
        Blend blend = Blend::kNormal;
    };

    void WriteColour(std::uint32_t colour, std::string_view grey, std::string_view rgb);
    void WriteDashes();

    ContentStream& out_;
    double hairline_;
    Values values_;
    std::optional<Values> saved_;
    bool blends_ = false;
    bool fills_ = false;
};

}  // namespace qm::pdf
