// SVG of small drawings: element text, layers and their order, sheet size and rotation.
#include <gtest/gtest.h>

#include <functional>

#include "common/packed_bitmap.h"
#include "host/display_list.h"
#include "render/page_writers.h"
#include "render/text_buffer.h"
#include "tests/render/memory_sink.h"

namespace {

using namespace qm;

std::string Svg(const DisplayList& list, double rotation = 0.0, double margin = 0.0) {
    PageSource page;
    page.drawing = &list;
    page.rotation = rotation;
    PageOptions options;
    options.marginMillimetres = margin;
    MemorySink sink;
    WriteSvg(page, options, sink);
    return sink.text;
}

// What stands inside the groups, a line an element.
std::string Elements(const DisplayList& list) {
    std::istringstream lines(Svg(list));
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("<?xml", 0) == 0 || line.rfind("<svg", 0) == 0 ||
            line.rfind("<style", 0) == 0 || line.rfind("<g ", 0) == 0 || line == "</g>" ||
            line == "</svg>") {
            continue;
        }
        result += line + '\n';
    }
    return result;
}

struct ElementCase {
    const char* name;
    std::function<void(DisplayList&)> append;
    const char* svg;
};

void PrintTo(const ElementCase& row, std::ostream* out) { *out << row.name; }

constexpr auto kWidth = RecordKind::kLineWidth;
const PointI kTriangle[] = {{0, 0}, {100, 0}, {50, 80}};
const PointI kRing[] = {{0, 0}, {9, 0}, {9, 9}, {0, 0}, {3, 2}, {5, 2}, {5, 4}};
const std::int32_t kRingLengths[] = {4, 3};
const std::int32_t kDashes[] = {8, 2, 1};
const std::int32_t kNoGaps[] = {8, 0};
// 10 x 2 dots: the first row ink in dots 0 to 2 and 9, the second all paper.
const std::uint8_t kDots[] = {0x1F, 0xBF, 0xFF, 0xFF};

const ElementCase kElements[] = {
    {"chain is one path of relative steps",
     [](auto& l) {
         l.AppendValue(kWidth, 14);
         l.AppendLine({5, -5}, {15, -5});
         l.AppendLine({15, -5}, {15, 7});
         l.AppendLine({15, 7}, {16, 9});
         l.AppendLine({16, 9}, {10, 12});
     },
     "<path d=\"M5-5h10v12l1 2-6 3\"/>\n"},
    {"lines of one style share a path",
     [](auto& l) {
         l.AppendValue(kWidth, 14);
         l.AppendLine({0, 0}, {3, 4});
         l.AppendLine({10, 10}, {13, 14});
         l.AppendPolygon({kTriangle, 2}, false);
     },
     "<path d=\"M0 0l3 4m7 6 3 4m-13-14h100\"/>\n"},
    {"polyline that comes home is closed",
     [](auto& l) {
         const PointI closed[] = {{0, 0}, {10, 0}, {5, 8}, {0, 0}};
         l.AppendValue(kWidth, 14);
         l.AppendPolygon({closed, 4}, false);
         l.AppendLine({20, 0}, {20, 1});
     },
     "<path d=\"M0 0h10l-5 8zm20 0v1\"/>\n"},
    {"attributes that differ from the group's",
     [](auto& l) {
         l.AppendValue(kWidth, 14);
         l.AppendLine({0, 0}, {1, 0});
         l.AppendColour(RecordKind::kDrawColour, 0x3322FF);
         l.AppendValue(kWidth, 0);
         l.AppendLine({0, 0}, {1, 0});
         l.AppendValue(kWidth, 20);
         l.AppendValue(RecordKind::kLineAttributes, 0x1200);
         l.AppendLine({0, 0}, {1, 0});
         l.AppendValue(RecordKind::kLineAttributes, 0x100);
         l.AppendValue(RecordKind::kDrawMode, 9);
         l.AppendLine({0, 0}, {1, 0});
     },
     "<path d=\"M0 0h1\"/>\n"
     "<path stroke=\"#f23\" class=\"h\" d=\"M0 0h1\"/>\n"
     "<path stroke=\"#f23\" stroke-width=\"20\" stroke-linecap=\"butt\" stroke-linejoin=\"bevel\" "
     "d=\"M0 0h1\"/>\n"
     "<path stroke=\"#f23\" stroke-width=\"20\" stroke-linecap=\"square\" "
     "style=\"mix-blend-mode:darken\" d=\"M0 0h1\"/>\n"},
    {"dashes: predefined, of the plot's own, without gaps",
     [](auto& l) {
         l.AppendValue(kWidth, 28);
         l.AppendValue(RecordKind::kLineStyle, 1);
         l.AppendLine({0, 0}, {1, 0});
         l.AppendLineDash(kDashes, 3);
         l.AppendLine({0, 0}, {1, 0});
         l.AppendLineDash(kNoGaps, 2);
         l.AppendLine({0, 0}, {1, 0});
     },
     "<path stroke-dasharray=\"240 100\" d=\"M0 0h1\"/>\n"
     "<path stroke-dasharray=\"8 2 1 0\" d=\"M0 0h1\"/>\n"
     "<path d=\"M0 0h1\"/>\n"},
    {"dot is round whatever the line ends are",
     [](auto& l) {
         l.AppendValue(kWidth, 14);
         l.AppendValue(RecordKind::kLineAttributes, 0x200);
         l.AppendLine({3, 3}, {3, 3});
     },
     "<path d=\"M3 3h0\"/>\n"},
    {"outlines",
     [](auto& l) {
         l.AppendValue(kWidth, 14);
         l.AppendRectangle({{10, 20}, {-5, 0}}, false);
         l.AppendCircle({1, 2}, -3, false);
         l.AppendArc({{0, 0}, 100, 50, 0.0F, 90.0F});
         l.AppendArc({{0, 0}, 100, 100, 90.0F, -270.0F});
         l.AppendArc({{7, 8}, 9, 10, 0.0F, 359.99997F});
     },
     "<path d=\"M10 20h-15v-20h15z\"/>\n"
     "<circle cx=\"1\" cy=\"2\" r=\"3\"/>\n"
     "<path d=\"M100 0A100 50 0 0 1 0 50M0 100A100 100 0 1 0 -100 0\"/>\n"
     "<ellipse cx=\"7\" cy=\"8\" rx=\"9\" ry=\"10\"/>\n"},
    {"areas",
     [](auto& l) {
         l.AppendValue(kWidth, 14);
         l.AppendColour(RecordKind::kFillColour, 0x00FF00);
         l.AppendPolygon({kTriangle, 3}, true);
         l.AppendRectangle({{10, 20}, {-5, 0}}, true);
         l.AppendPolyPolygon({kRingLengths, 2, {kRing, 7}}, true);
     },
     "<path fill=\"#0f0\" stroke=\"none\" d=\"M0 0h100l-50 80z\"/>\n"
     "<rect x=\"-5\" y=\"0\" width=\"15\" height=\"20\" fill=\"#0f0\" stroke=\"none\"/>\n"
     "<path fill=\"#0f0\" stroke=\"none\" d=\"M0 0h9v9zm3 2h2v2z\"/>\n"},
    {"pattern: clear bits are ink, each colour defined once, none without its bits",
     [](auto& l) {
         l.DefineFillPattern({4, 10, 2, {kDots, 4}});
         l.DefineFillPattern({5, 10, 3, {kDots, 4}});
         for (const std::int32_t index : {4, 4, 5}) {
             l.AppendFillStyle(3, index);
             l.AppendRectangle({{0, 0}, {1, 1}}, true);
         }
     },
     "<pattern id=\"pattern1\" width=\"10\" height=\"2\" patternUnits=\"userSpaceOnUse\" "
     "patternTransform=\"matrix(3.3867 0 0 -3.3867 0 0)\"><path stroke=\"none\" fill=\"#000\" "
     "d=\"M0 0h3v1h-3zM9 0h1v1h-1z\"/></pattern>\n"
     "<rect x=\"0\" y=\"0\" width=\"1\" height=\"1\" fill=\"url(#pattern1)\" stroke=\"none\"/>\n"
     "<rect x=\"0\" y=\"0\" width=\"1\" height=\"1\" fill=\"url(#pattern1)\" stroke=\"none\"/>\n"
     "<rect x=\"0\" y=\"0\" width=\"1\" height=\"1\" fill=\"#000\" stroke=\"none\"/>\n"},
    {"texts: upright, upward, without strokes",
     [](auto& l) {
         l.AppendText({{10, 20}, {110, 56}}, "A&B");
         l.AppendText({{10, 20}, {46, 120}}, "up");
         l.AppendText({{INT32_MAX, INT32_MAX}, {INT32_MIN, INT32_MIN}}, "gone");
     },
     "<text transform=\"matrix(1 0 0 -1 10 20)\" font-size=\"50\" textLength=\"100\" "
     "lengthAdjust=\"spacingAndGlyphs\" opacity=\"0\" xml:space=\"preserve\">A&amp;B</text>\n"
     "<text transform=\"matrix(0 1 1 0 46 20)\" font-size=\"50\" textLength=\"100\" "
     "lengthAdjust=\"spacingAndGlyphs\" opacity=\"0\" xml:space=\"preserve\">up</text>\n"},
    {"the largest coordinates",
     [](auto& l) {
         l.AppendValue(kWidth, 14);
         l.AppendLine({INT32_MIN, INT32_MAX}, {INT32_MAX, INT32_MIN});
     },
     "<path d=\"M-2147483648 2147483647l4294967295-4294967295\"/>\n"},
};

class SvgElement : public testing::TestWithParam<ElementCase> {};

TEST_P(SvgElement, IsWritten) {
    DisplayList list;
    GetParam().append(list);
    EXPECT_EQ(Elements(list), GetParam().svg);
}

INSTANTIATE_TEST_SUITE_P(All, SvgElement, testing::ValuesIn(kElements));

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(SvgPage, SheetIsThePhysicalExtentAndItsMargin) {
    DisplayList list;
    list.AppendLine({0, 0}, {4064, 1016});  // 4 x 1 inches
    const std::string wide = "width=\"106.68mm\" height=\"30.48mm\" viewBox=\"0 0 4267.2 1219.2\"";
    const std::string high = "width=\"30.48mm\" height=\"106.68mm\" viewBox=\"0 0 1219.2 4267.2\"";
    const struct {
        double rotation;
        const std::string& sheet;
        const char* matrix;
    } rows[] = {
        {0.0, wide, "(1 0 0 -1 101.6 1117.6)"},   {90.0, high, "(0 -1 -1 0 1117.6 4165.6)"},
        {180.0, wide, "(-1 0 0 1 4165.6 101.6)"}, {270.0, high, "(0 1 1 0 101.6 101.6)"},
        {-90.0, high, "(0 1 1 0 101.6 101.6)"},   {-450.0, high, "(0 1 1 0 101.6 101.6)"},
    };
    for (const auto& row : rows) {
        const std::string svg = Svg(list, row.rotation, 2.54);
        EXPECT_NE(svg.find(row.sheet), std::string::npos) << svg;
        EXPECT_NE(svg.find(row.matrix), std::string::npos) << svg;
    }
    EXPECT_NE(Svg(DisplayList(), 0.0, 5.0).find("width=\"10mm\" height=\"10mm\""),
              std::string::npos);
}

void DrawOnLayer(DisplayList& list, std::int32_t layer, bool filled) {
    list.AppendValue(RecordKind::kLayer, layer);
    list.AppendRectangle({{0, 0}, {5, 5}}, filled);
}

TEST(SvgPage, LayersAreOneGroupEachUnlessOrderShows) {
    DisplayList lines;
    for (const std::int32_t layer : {1, 2, 1, 2}) DrawOnLayer(lines, layer, false);
    const std::string grouped = Svg(lines);
    EXPECT_EQ(Count(grouped, "<g id="), 2U);
    EXPECT_EQ(Count(grouped, "M0 0h5v5h-5zm0 0h5v5h-5z"), 2U) << grouped;

    DisplayList areas;
    for (const std::int32_t layer : {1, 2, 1}) DrawOnLayer(areas, layer, true);
    const std::string ordered = Svg(areas);
    EXPECT_EQ(Count(ordered, "<g id="), 3U);
    EXPECT_NE(ordered.find("<g id=\"pen1-2\" inkscape:groupmode=\"layer\" "
                           "inkscape:label=\"Layer no.: 1\""),
              std::string::npos);
    EXPECT_EQ(Count(ordered, "</g>"), 3U);
}

TEST(SvgPage, ClipsNestInsideTheirLayers) {
    DisplayList list;
    list.AppendClipRegion({kTriangle, 3});
    DrawOnLayer(list, 1, false);
    DrawOnLayer(list, 2, false);
    list.EndClipRegion();
    DrawOnLayer(list, 2, false);
    const std::string svg = Svg(list);
    EXPECT_EQ(Count(svg, "<clipPath id=\"clip1\"><path d=\"M0 0h100l-50 80z\"/></clipPath>"), 1U);
    EXPECT_EQ(Count(svg, "<g clip-path=\"url(#clip1)\">"), 2U);
    EXPECT_EQ(Count(svg, "<g "), Count(svg, "</g>"));
}

TEST(SvgPage, PicturesAreEmbedded) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(2, 1, 1));
    const PaletteEntry colours[] = {{255, 255, 255, 0}, {0, 0, 255, 0}};
    WritePackedHeader(bitmap.data(), 2, 1, 1, colours)[0] = 0x40;
    DisplayList list;
    list.AppendPicture({{0, 0}, {100, 50}}, 0x88, {bitmap.data(), bitmap.size()});
    list.AppendPicture({{0, 0}, {100, 50}}, 0xAA, {bitmap.data(), bitmap.size()});  // the paper
    list.AppendPicture({{0, 0}, {100, 50}}, 0, {bitmap.data(), 30});                // broken
    const std::string svg = Svg(list);
    EXPECT_EQ(Count(svg, "<image"), 1U);
    EXPECT_NE(svg.find("<image width=\"100\" height=\"50\" preserveAspectRatio=\"none\" "
                       "transform=\"matrix(1 0 0 -1 0 50)\" style=\"mix-blend-mode:darken\" "
                       "xlink:href=\"data:image/png;base64,iVBORw0KGgo"),
              std::string::npos)
        << svg;
}

TEST(SvgPage, SinkFailuresComeThrough) {
    DisplayList list;
    list.AppendLine({0, 0}, {1, 1});
    PageSource page;
    page.drawing = &list;
    FullSink sink;
    EXPECT_THROW(WriteSvg(page, {}, sink), ToolError);
}

TEST(TextBuffer, WritesShortNumbersAndSafeText) {
    MemorySink sink;
    TextBuffer out(sink);
    out << 1.5 << ' ' << -0.00001 << ' ' << 100.0 << ' ' << 1.0 / 3.0 << ' ' << 1e300 << ' ';
    out.Escaped("<a b=\"c\">\x01&").Colour(0x00FF00).Colour(0x0000FE);
    out.Flush();
    EXPECT_EQ(sink.text,
              "1.5 0 100 0.3333 1000000000000000 &lt;a b=&quot;c&quot;&gt; &amp;#0f0#fe0000");
}

}  // namespace
