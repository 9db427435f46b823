// The page writers: one page, or all pages, of an opened plot as SVG, PNG or PDF.
//
// Each takes the page's display list as it is, streams to a sink and throws ToolError when the page
// cannot be written (too large, out of disk) with a message that says what to do. What a format
// cannot show stands in docs/unsupported.md. Tests: tests/render/.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "common/units.h"
#include "common/work_budget.h"
#include "host/display_list.h"
#include "host/open_plot.h"
#include "render/output_sink.h"

namespace qm {

// What a writer needs of a page. The pointers must outlive the call; `layers` may be null.
struct PageSource {
    const DisplayList* drawing = nullptr;
    const std::vector<PageLayer>* layers = nullptr;
    std::string name;                     // UTF-8, the title
    double unitsPerInch = kUnitsPerInch;  // of the coordinates
    double rotation = 0.0;     // degrees counter-clockwise by which the page is shown turned
    bool whiteIsClear = true;  // white dots of pictures let through what lies below
    Extent sheet;              // what the sheet has to have room for beside the drawing
    // Of the plot's file: the work of a writer may grow with it (render/page_work.h). 0: not known,
    // the work is not bounded.
    std::uint64_t sourceBytes = 0;
};

// The page of an opened plot, which must stay open (page_frame.cpp).
PageSource SourceOf(const PlotPage& page);

// A sheet of a given size, in millimetres.
struct Paper {
    double width = 0.0;  // 0: as large as the drawing and its margins
    double height = 0.0;
    bool turns = false;  // lies as the drawing does, wider than high or higher than wide
    bool fits = false;   // the drawing is scaled to it, less the margins; else it keeps its size
};

// What the drawing lies on. A colour is 0x00BBGGRR.
struct Background {
    enum class Kind { kOfTheFormat, kNone, kColour };
    Kind kind = Kind::kOfTheFormat;  // PNG: white; SVG and PDF: none
    std::uint32_t colour = 0xFFFFFF;
};

// What the pages of a plot that are drawn as bitmaps may still cost together.
struct BitmapBudget {
    WorkBudget dots;    // further pages are drawn with fewer dots per inch
    double work = 1.0;  // part of the plot's work (render/bitmap/page_work.h), 0 to 1
};

// How pages are put on sheets; what is shown of them is in their drawing (render/page_look.h).
struct PageOptions {
    double dpi = 150.0;  // dots per inch, PNG only
    int sideDots = 0;    // PNG: dots of the longer side in place of dpi; 0: as dpi has it
    double marginMillimetres = 5.0;  // paper around the drawing's extent
    // Width of pens of width 0 on the sheet (docs/cli.md says why); in a PNG at least a dot.
    double hairlineMillimetres = kMillimetresPerInch / 150.0;
    Paper paper;            // SVG, PDF, PNG
    Background background;  // SVG, PDF, PNG
    bool smooth = true;     // PNG: edges blend into the paper; else dots are drawn or not
    int threads = 1;        // that draw a PNG
    std::string title;      // UTF-8, what the plot is called; may be empty
    // Called now and then while a PNG or a PDF is drawn, one call at a time but not always on the
    // caller's thread; may be empty. What it throws ends the writer.
    std::function<void()> checkpoint;
    // Told how much of a page is drawn, 0 to 100, in the same way; may be empty.
    std::function<void(int percent)> progress;
    // Told what of a page was left out or drawn coarser because it would take too much work; may be
    // empty.
    std::function<void(const std::string& what)> note;
    // Of the plot whose pages are drawn as bitmaps; null: any number of dots, and each page may
    // take the work of a whole plot.
    BitmapBudget* budget = nullptr;
};

// Vector formats keep physical sizes. One page a file.
void WriteSvg(const PageSource& page, const PageOptions& options, OutputSink& sink);
// A drawing for CAD programs in millimetres, in the coordinates of the plot (target qm_render_dxf).
void WriteDxf(const PageSource& page, const PageOptions& options, OutputSink& sink);
// One sheet for each page, each of its own size (target qm_render_pdf).
void WritePdf(const std::vector<PageSource>& pages, const PageOptions& options, OutputSink& sink);
// Indexed when the page has at most 256 colours, else shades of grey or true colours (target
// qm_render_bitmap).
void WritePng(const PageSource& page, const PageOptions& options, OutputSink& sink);

// Dots for the pages of a plot of `bytes` bytes, up to 100 dots per inch; beyond that more, as the
// sheets have more.
WorkBudget DotsForBitmaps(double dpi, std::uint64_t bytes);
inline constexpr std::int64_t kBitmapDots = std::int64_t{1} << 26;
inline constexpr std::int64_t kBitmapDotsPerByte = 512;

}  // namespace qm
