// See look_options.h.
#include "cli/look_options.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "cli/colour_names.h"
#include "cli/page_selection.h"
#include "cli/paper_sizes.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

constexpr double kMostMillimetres = 1000.0;
constexpr std::size_t kHighestPen = std::numeric_limits<std::int32_t>::max();
// Formats whose pages are sheets of paper, and those that show pens as they are told.
constexpr const char* kOnSheets = "svg pdf png";
constexpr const char* kOfPens = "svg pdf png html dxf compact rtl";

std::uint32_t ColourIn(const std::string& text) {
    if (const auto colour = ColourNamed(text)) return *colour;
    throw ToolError("'" + text + "' is no colour; red or #ff0000 is");
}

double WidthIn(const std::string& text) {
    double width = 0.0;
    NumberOption(
        "", "", "", [&](double given) { width = given; }, 0.0, kMostMillimetres)
        .set(text);
    return width;
}

std::vector<PenRange> PensIn(const std::string& text) {
    std::vector<PenRange> pens;
    for (const NumberRange range : RangesIn(text, 0)) {
        pens.push_back({static_cast<std::int32_t>(range.first),
                        static_cast<std::int32_t>(std::min(range.last, kHighestPen))});
    }
    if (pens.empty()) throw ToolError("'" + text + "' names no pens; 1 or 1,3-5 or 4- do");
    return pens;
}

// "2=red", "2=red,0.5", "2=,0.5".
void TakePen(const std::string& text, PageLook& look) {
    const std::size_t equals = text.find('=');
    const std::string number = text.substr(0, equals);
    const auto pens = RangesIn(number, 0);
    if (equals == std::string::npos || pens.size() != 1 || pens[0].first != pens[0].last) {
        throw ToolError("'" + text + "' is no pen; 2=red or 2=#ff0000,0.5 is");
    }
    const std::string rest = text.substr(equals + 1);
    const std::size_t comma = rest.find(',');
    PenLook& pen = look.pens[static_cast<std::int32_t>(pens[0].first)];
    if (comma != 0) pen.colour = ColourIn(rest.substr(0, comma));
    if (comma != std::string::npos) pen.widthMillimetres = WidthIn(rest.substr(comma + 1));
}

Option For(Option option, const char* formats) {
    option.formats = formats;
    return option;
}

}  // namespace

OptionGroup SheetGroup(PageOptions& page, PageLook& look) {
    Option paper = {
        "paper", 0, "SIZE",
        "The sheet: a0 to a5, letter, legal, tabloid, or millimetres as 297x210; as large as the "
        "drawing and its margins if not given. The drawing lies in its middle in true size",
        [&page](const std::string& name) {
            const auto found = PaperNamed(name);
            if (!found) {
                throw ToolError("'" + name +
                                "' is no paper; a0 to a5, letter, legal, tabloid or 297x210 are");
            }
            const bool fits = page.paper.fits;
            page.paper = *found;
            page.paper.fits = fits;
        }};
    paper.words = PaperNames();
    Option fit = Flag("fit", 0, "With --paper: scaled to what the margins leave of the sheet",
                      page.paper.fits);
    fit.needs = "paper";
    Option margin = NumberOption(
        "margin", "MM", "Millimetres of paper around the drawing, 5 if not given",
        [&page](double given) { page.marginMillimetres = given; }, 0.0, kMostMillimetres);
    Option rotate =
        ChoiceOption("rotate", "90|180|270", "Degrees clockwise by which pages are turned",
                     [&look](const std::string& n) { look.clockwise = std::stoi(n); });
    Option background = {"background", 0, "COLOUR",
                         "What lies below the drawing: none, or a colour (png: white if not given, "
                         "svg and pdf: none)",
                         [&page](const std::string& name) {
                             using Kind = Background::Kind;
                             page.background = {Kind::kNone};
                             if (name != "none") page.background = {Kind::kColour, ColourIn(name)};
                         }};
    background.words = ColourNames();
    background.words.insert(background.words.begin(), "none");
    return {"Sheet",
            {For(std::move(paper), kOnSheets), For(std::move(fit), kOnSheets),
             For(std::move(margin), "svg pdf png html"), For(std::move(rotate), kOfPens),
             For(std::move(background), kOnSheets)}};
}

OptionGroup LookGroup(PageLook& look) {
    Option pen = {
        "pen", 0, "N=COLOUR[,MM]",
        "Pen N draws in this colour (red, #ff0000) and width; N=,MM is for the width alone. "
        "For each pen anew",
        [&look](const std::string& text) { TakePen(text, look); }};
    pen.repeats = true;
    Option pens = {"pens", 0, "LIST", "Only what these pens draw: 1,3-5",
                   [&look](const std::string& text) { look.only = PensIn(text); }};
    Option width = NumberOption(
        "line-width", "MM", "Width of lines whose pen has none",
        [&look](double given) { look.lineWidthMillimetres = given; }, 0.0, kMostMillimetres);
    Option mono = Flag("mono", 0, "Lines black, areas and pictures grey", look.mono);
    return {"Look",
            {For(std::move(pen), kOfPens), For(std::move(pens), kOfPens),
             For(std::move(width), kOfPens), For(std::move(mono), kOfPens)}};
}

OptionGroup PictureGroup(WriteOptions& options) {
    constexpr double kMinDpi = 1.0;
    constexpr double kMaxDpi = 10000.0;
    constexpr int kMaxSide = 32767;
    Option dpi = NumberOption(
        "dpi", "N", "Dots per inch of png (150 if not given) and of HP-RTL (300)",
        [&options](double given) { options.page.dpi = options.plot.rtlDpi = given; }, kMinDpi,
        kMaxDpi);
    Option size = IntegerOption("size", 0, "N", "png: dots of the longer side, in place of --dpi",
                                options.page.sideDots, 1, kMaxSide);
    Option hard =
        Flag("no-antialias", 0, "png, HP-RTL: dots have the colours of the plot, edges are hard",
             options.page.smooth, false);
    Option rtl =
        Flag("rtl", 0, "plt: HP-RTL, each page as a picture, instead of HP-GL/2", options.plot.rtl);
    Option compact =
        Flag("compact", 0, "plt: encoded polylines, joined lines and sorted pens, in few bytes",
             options.plot.compact);
    Option bits =
        ChoiceOption("bits", "1|8|24", "HP-RTL: bits of a dot, 24 if not given",
                     [&options](const std::string& n) { options.plot.bits = std::stoi(n); });
    dpi.formats = "png rtl";
    size.formats = "png";
    size.bars = "dpi";
    hard.formats = "png rtl";
    rtl.formats = "rtl";
    compact.formats = "compact";
    bits.formats = "rtl";
    return {"Pictures and plots",
            {std::move(dpi), std::move(size), std::move(hard), std::move(rtl), std::move(compact),
             std::move(bits)}};
}

}  // namespace qm::cli
