// SVG of small drawings: element text, layers and their order, sheet size and rotation.
#include <gtest/gtest.h>

#include "common/packed_bitmap.h"
#include "host/display_list.h"
#include "render/page_writers.h"
#include "render/text_buffer.h"
#include "tests/host/host_test.h"
#include "tests/render/memory_sink.h"

namespace {

using namespace qm;

std::string Svg(const DisplayList& list, double rotation = 0.0, double margin = 0.0,
                const std::vector<PageLayer>* layers = nullptr) {
    PageSource page;
    page.drawing = &list;
    page.layers = layers;
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
        const std::string start = line.substr(0, 3);
        if (start == "<?x" || start == "<sv" || start == "<st" || start == "<g " ||
            start == "<me" || start == "</g" || start == "</s") {
            continue;
        }
        result += line + '\n';
    }
    return result;
}

struct ElementCase {
    const char* name;
    const char* plot;
    const char* svg;
};

void PrintTo(const ElementCase& row, std::ostream* out) { *out << row.name; }

// clang-format off
const ElementCase kElements[] = {
    {"chain is one path of relative steps", "PW0.35;PU5,-5;PD15,-5,15,7,16,9,10,12;",
     "<path d=\"M5-5h10v12l1 2-6 3\"/>\n"},
    {"lines of one style share a path", "PW0.35;PU0,0;PD3,4;PU10,10;PD13,14;PU0,0;EA100,0;",
     "<path d=\"M0 0l3 4m7 6 3 4m-13-14h100 0-100z\"/>\n"},
    {"polyline that comes home is closed", "PW0.35;PM0;PD10,0,5,8;PM2;EP;PU20,0;PD20,1;",
     "<path d=\"M0 0h10l-5 8zm20 0v1\"/>\n"},
    {"a line from the end of a polyline", "PW0.35;PD1,0;PU0,0;PM0;PD10,0,5,8;PM2;EP;PD20,1;",
     "<path d=\"M0 0h1m-1 0h10l-5 8zm0 0 20 1\"/>\n"},
    {"attributes that differ from the group's",
     "PW0.35;PD1,0;PU0,0;PC1,255,34,51;PW0;PD1,0;PU0,0;PW0.5;LA1,1,2,5;PD1,0;PU0,0;LA1,2,2,1;"
     "MC1,168;PD1,0;",
     "<path d=\"M0 0h1\"/>\n<path stroke=\"#f23\" class=\"h\" d=\"M0 0h1\"/>\n"
     "<path stroke=\"#f23\" stroke-width=\"20\" stroke-linecap=\"butt\" stroke-linejoin=\"bevel\" "
     "d=\"M0 0h1\"/>\n<path stroke=\"#f23\" stroke-width=\"20\" stroke-linecap=\"square\" "
     "style=\"mix-blend-mode:darken\" d=\"M0 0h1\"/>\n"},
    {"dashes: predefined, of the plot's own, without gaps",
     "PW0.7;LT2;PU0,0;PD1,0;PU0,0;UL1,8,2,1;LT1;PD1,0;PU0,0;UL2,8,0;LT2;PD1,0;",
     "<path stroke-dasharray=\"240 100\" d=\"M0 0h1\"/>\n"
     "<path stroke-dasharray=\"8 2 1 0\" d=\"M0 0h1\"/>\n<path d=\"M0 0h1\"/>\n"},
    {"the other line types", "LT1;PD1,0;PU0,0;LT4;PD1,0;PU0,0;LT6;PD1,0;",
     "<path class=\"h\" stroke-dasharray=\"10 50\" d=\"M0 0h1\"/>\n"
     "<path class=\"h\" stroke-dasharray=\"120 50 10 50\" d=\"M0 0h1\"/>\n"
     "<path class=\"h\" stroke-dasharray=\"120 50 10 50 10 50\" d=\"M0 0h1\"/>\n"},
    {"dot is round whatever the line ends are", "PW0.35;LA1,1;PU3,3;PD;", "<path d=\"M3 3h0\"/>\n"},
    {"outlines", "PW0.35;PU10,20;EA-5,0;PU1,2;CI-3;PU9,0;AA0,0,360;",
     "<path d=\"M10 20h-15v-20h15z\"/>\n<circle cx=\"1\" cy=\"2\" r=\"3\"/>\n<path d=\"M9 0h0\"/>\n"
     "<ellipse cx=\"0\" cy=\"0\" rx=\"9\" ry=\"9\"/>\n<path d=\"M9 0h0\"/>\n"},
    {"arcs", "PW0.35;PU100,0;AA0,0,90;PU0,100;AA0,0,-270;PU80,60;AA0,0,120;",
     "<path d=\"M100 0h0\"/>\n<path d=\"M100 0A100 100 0 0 1 0 100\"/>\n<path d=\"M0 100h0z\"/>\n"
     "<path d=\"M0 100A100 100 0 1 0 -100 0\"/>\n<path d=\"M-100 0h0m180 60h0\"/>\n"
     "<path d=\"M80 60A100 100 0 0 1 -91.9615 39.282\"/>\n<path d=\"M-91 39h0\"/>\n"},
    {"areas", "PW0.35;SP3;PM0;PD100,0,50,80;PM2;FP;PU10,20;RA-5,0;PU0,0;PM0;PD9,0,9,9;PM1;PU3,2;"
     "PD5,2,5,4;PM2;FP;",
     "<path fill=\"#0f0\" stroke=\"none\" d=\"M0 0h100l-50 80z\"/>\n"
     "<rect x=\"-5\" y=\"0\" width=\"15\" height=\"20\" fill=\"#0f0\" stroke=\"none\"/>\n"
     "<path fill=\"#0f0\" stroke=\"none\" d=\"M0 0h9v9zm3 2h2v2z\"/>\n"},
    {"pattern: set dots are ink, each colour defined once",
     "RF4,10,2,1,1,1,0,0,0,0,0,0,1;FT11,4;PM0;PD1,0,1,1,0,1;PM2;FP;FP;",
     "<pattern id=\"pattern1\" width=\"10\" height=\"2\" patternUnits=\"userSpaceOnUse\" "
     "patternTransform=\"matrix(3.3867 0 0 -3.3867 0 0)\"><path stroke=\"none\" fill=\"#000\" "
     "d=\"M0 0h3v1h-3zM9 0h1v1h-1z\"/></pattern>\n"
     "<path fill=\"url(#pattern1)\" stroke=\"none\" d=\"M0 0h1v1h-1z\"/>\n"
     "<path fill=\"url(#pattern1)\" stroke=\"none\" d=\"M0 0h1v1h-1z\"/>\n"},
    {"no pattern without its bits", "FT11,4;RF5,1,1;PM0;PD1,0,1,1,0,1;PM2;FP;",
     "<path fill=\"#000\" stroke=\"none\" d=\"M0 0h1v1h-1z\"/>\n"},
    {"texts: upright, upward, none without strokes",
     "PU10,20;LB-&\003DI0,1;PU10,20;LB---\003LB \003",
     "<path class=\"h\" d=\"M20 80h40m84-60-30 80-5 20 5 20h10l5-20-5-20-15-30-5-20 5-20 10-10 10 10 "
     "15 40\"/>\n<text transform=\"matrix(1 0 0 -1 20 20)\" font-size=\"166.6667\" "
     "textLength=\"124\" lengthAdjust=\"spacingAndGlyphs\" opacity=\"0\" xml:space=\"preserve\">"
     "-&amp;</text>\n<path class=\"h\" d=\"M-50 30v40m1 44v40m0 44v40\"/>\n<text "
     "transform=\"matrix(0 1 1 0 -49 30)\" font-size=\"1.3889\" textLength=\"208\" "
     "lengthAdjust=\"spacingAndGlyphs\" opacity=\"0\" xml:space=\"preserve\">---</text>\n"},
    {"a text of one letter is upright", "LBI\003",
     "<path class=\"h\" d=\"M20 120h20m-10 0v-120m-10 0h20\"/>\n<text transform=\"matrix(1 0 0 -1 20 0)\" "
     "font-size=\"166.6667\" textLength=\"20\" lengthAdjust=\"spacingAndGlyphs\" opacity=\"0\" "
     "xml:space=\"preserve\">I</text>\n"},
    {"the largest coordinates", "PU-2147483648,2147483647;PD2147483647,-2147483648;",
     "<path class=\"h\" d=\"M-2147483648 2147483647l4294967295-4294967295\"/>\n"},
};
// clang-format on

class SvgElement : public HostTest, public testing::WithParamInterface<ElementCase> {};

TEST_P(SvgElement, IsWritten) {
    const auto pages = Pages(GetParam().plot);
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(Elements(pages[0].Drawing()), GetParam().svg);
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

class SvgPages : public HostTest {};

TEST_F(SvgPages, LayersAreOneGroupEachUnlessOrderShows) {
    const std::string grouped = Svg(Pages("EA5,5;SP2;EA5,5;SP1;EA5,5;SP2;EA5,5;")[0].Drawing());
    EXPECT_EQ(Count(grouped, "<g id="), 2U);
    EXPECT_EQ(Count(grouped, "M0 0h5v5h-5zm0 0h5v5h-5z"), 2U) << grouped;
    const std::string ordered = Svg(Pages("RA5,5;SP2;RA5,5;SP1;RA5,5;")[0].Drawing());
    EXPECT_EQ(Count(ordered, "<g id="), 3U);
    EXPECT_EQ(Count(ordered,
                    "<g id=\"pen1-2\" inkscape:groupmode=\"layer\" "
                    "inkscape:label=\"Layer no.: 1\""),
              1U);
    EXPECT_EQ(Count(ordered, "</g>"), 3U);
}

TEST(SvgPage, ClipsNestInsideTheirLayers) {
    const PointI triangle[] = {{0, 0}, {100, 0}, {50, 80}};
    DisplayList list;
    list.AppendClipRegion({triangle, 3});
    for (const std::int32_t layer : {1, 2}) {
        list.AppendValue(RecordKind::kLayer, layer);
        list.AppendRectangle({{0, 0}, {5, 5}}, false);
    }
    list.EndClipRegion();
    list.AppendRectangle({{0, 0}, {5, 5}}, false);
    const std::string svg = Svg(list);
    EXPECT_EQ(Count(svg, "<clipPath id=\"clip1\"><path d=\"M0 0h100l-50 80z\"/></clipPath>"), 1U);
    EXPECT_EQ(Count(svg, "<g clip-path=\"url(#clip1)\">"), 2U);
    EXPECT_EQ(Count(svg, "<g "), Count(svg, "</g>"));
}

TEST(SvgPage, HidesLayersThatAreOff) {
    const std::vector<PageLayer> layers{{0, L"walls", 0, false}, {1, L"doors", 0, true}};
    DisplayList list;
    list.AppendValue(RecordKind::kLineWidth, -5);
    for (const std::int32_t layer : {0, 1}) {
        list.AppendValue(RecordKind::kLayer, layer);
        list.AppendLine({0, 0}, {5, 5});
    }
    const std::string svg = Svg(list, 0.0, 0.0, &layers);
    EXPECT_EQ(Count(svg, "inkscape:label=\"walls\" style=\"display:none\""), 1U) << svg;
    EXPECT_EQ(Count(svg, "display:none"), 1U);
    EXPECT_EQ(Count(svg, "stroke-width=\"0\""), 2U);
}

TEST(SvgPage, PatternsStandInFrontOfTheirDiscs) {
    const std::uint8_t bits[] = {0x7F, 0xFF};
    DisplayList list;
    list.DefineFillPattern({4, 8, 1, {bits, 2}});
    list.AppendFillStyle(3, 4);
    list.AppendCircle({0, 0}, 5, true);
    EXPECT_NE(Elements(list).find(
                  "</pattern>\n<circle cx=\"0\" cy=\"0\" r=\"5\" fill=\"url(#pattern1)\""),
              std::string::npos);
}

TEST(SvgPage, PatternsInManyColoursBecomeSolid) {
    const std::vector<std::uint8_t> bits(std::size_t{32} * 255, 0xAA);
    DisplayList list;
    list.DefineFillPattern({1, 255, 255, {bits.data(), bits.size()}});
    list.AppendFillStyle(3, 1);
    for (std::uint32_t colour = 0; colour < 40; ++colour) {
        list.AppendColour(RecordKind::kFillColour, colour);
        list.AppendRectangle({{0, 0}, {9, 9}}, true);
    }
    const std::string svg = Svg(list);
    int patterns = 0;
    for (std::size_t at = 0; (at = svg.find("<pattern", at)) != std::string::npos; ++at) ++patterns;
    EXPECT_EQ(patterns, 1000000 / (127 * 255) + 1);
    EXPECT_NE(svg.find("fill=\"#270000\""), std::string::npos);
}

TEST(SvgPage, PicturesAreEmbedded) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(2, 1, 1));
    const PaletteEntry colours[] = {{255, 255, 255, 0}, {0, 0, 255, 0}};
    WritePackedHeader(bitmap.data(), 2, 1, 1, colours)[0] = 0x40;
    DisplayList list;
    list.AppendPicture({{0, 0}, {100, 50}}, 0x88, {bitmap.data(), bitmap.size()});
    list.AppendPicture({{0, 0}, {100, 50}}, 0xAA, {bitmap.data(), bitmap.size()});  // the paper
    list.AppendPicture({{0, 0}, {100, 50}}, 0, {bitmap.data(), 30});                // broken
    list.AppendPicture({{0, 0}, {100, 50}}, 0xEE, {bitmap.data(), bitmap.size()});
    list.AppendPicture({{0, 0}, {100, 50}}, 0x66, {bitmap.data(), bitmap.size()});
    const std::string svg = Svg(list);
    EXPECT_EQ(Count(svg, "<image"), 3U);
    EXPECT_EQ(Count(svg, "mix-blend-mode:lighten"), 1U);
    EXPECT_EQ(Count(svg, "mix-blend-mode:difference"), 1U);
    EXPECT_NE(svg.find("<image width=\"100\" height=\"50\" preserveAspectRatio=\"none\" "
                       "transform=\"matrix(1 0 0 -1 0 50)\" style=\"mix-blend-mode:darken\" "
                       "xlink:href=\"data:image/png;base64,iVBORw0KGgo"),
              std::string::npos)
        << svg;
}

TEST(TextBuffer, WritesShortNumbersAndSafeText) {
    MemorySink sink;
    TextBuffer out(sink);
    out << 1.5 << ' ' << -0.00001 << ' ' << 100.0 << ' ' << 1.0 / 3.0 << ' ' << 1e300 << ' ';
    const std::string beyond((1U << 17) + 1, 'x');  // more than is kept
    out << beyond;
    EXPECT_EQ(sink.text.substr(sink.text.size() - beyond.size()), beyond);
    sink.text.resize(sink.text.size() - beyond.size());
    out.Escaped("<a b=\"c\">\x01&").Colour(0x00FF00).Colour(0x0000FE);
    out.Flush();
    EXPECT_EQ(sink.text,
              "1.5 0 100 0.3333 1000000000000000 &lt;a b=&quot;c&quot;&gt; &amp;#0f0#fe0000");
}

}  // namespace
