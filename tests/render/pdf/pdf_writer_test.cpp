// PDF of small drawings: operators of a page, resources, layers, page sizes, titles.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "common/tool_error.h"
#include "render/pdf/document_info.h"
#include "tests/render/pdf/pdf_reader.h"

namespace {

using namespace qm;

// Empty: not set.
void SetSourceDate(const char* text) {
#ifdef _WIN32
    _putenv_s("SOURCE_DATE_EPOCH", text);
#else
    setenv("SOURCE_DATE_EPOCH", text, 1);
#endif
}

struct ContentCase {
    const char* name;
    std::function<void(DisplayList&)> append;
    const char* operators;  // inside the group of layer 0, with its pen
};

constexpr auto kWidth = RecordKind::kLineWidth;
constexpr auto kAttributes = RecordKind::kLineAttributes;
const PointI kTriangle[] = {{0, 0}, {100, 0}, {50, 80}};
const PointI kRing[] = {{0, 0}, {9, 0}, {9, 9}, {0, 0}, {3, 2}, {5, 2}, {5, 4}};
const std::int32_t kRingLengths[] = {4, 3};
const std::int32_t kDashes[] = {8, 2, 1};
const std::uint8_t kDots[] = {0x7F, 0xFF};  // ink in the leftmost dot of 2

// clang-format off
const ContentCase kContents[] = {
    {"chains share a path",
     [](auto& list) { list.AppendLine({-5, 10}, {30, 10}); list.AppendLine({30, 10}, {30, 5});
         list.AppendLine({7, 7}, {8, 8}); }, "-5 10 m\n30 10 l\n30 5 l\n7 7 m\n8 8 l\nS\n"},
    {"numbers of every length",
     [](auto& list) { list.AppendLine({7, 10}, {-99, 100}); list.AppendLine({-909, 1000},
         {10203, -908070}); list.AppendLine({9999999, 10000000}, {99999999, 100000000}); },
     "7 10 m\n-99 100 l\n-909 1000 m\n10203 -908070 l\n9999999 10000000 m\n"
     "99999999 100000000 l\nS\n"},
    {"a polyline that comes back is closed",
     [](auto& list) { list.AppendLine({0, 0}, {9, 0}); list.AppendLine({9, 0}, {0, 9});
         list.AppendLine({0, 9}, {0, 0}); }, "0 0 m\n9 0 l\n0 9 l\nh\nS\n"},
    {"only what changes is written",
     [](auto& list) { list.AppendColour(RecordKind::kDrawColour, 0x0000FF);
         list.AppendLine({0, 0}, {1, 0}); list.AppendColour(RecordKind::kDrawColour, 0x0000FF);
         list.AppendLine({1, 0}, {2, 0}); list.AppendColour(RecordKind::kDrawColour, 0x808080);
         list.AppendValue(kWidth, 14); list.AppendLine({2, 0}, {3, 0}); },
     "1 0 0 RG\n0 0 m\n1 0 l\n2 0 l\nS\n0.502 G\n14 w\n2 0 m\n3 0 l\nS\n"},
    {"line ends and joins; a dot is round whatever they are",
     [](auto& list) { list.AppendValue(kAttributes, 0x1200); list.AppendLine({0, 0}, {9, 0});
         list.AppendLine({5, 5}, {5, 5}); }, "0 J\n2 j\n0 0 m\n9 0 l\nS\n1 J\n5 5 m\n5 5 l\nS\n"},
    {"dashes of a plot, and of a line type",
     [](auto& list) { list.AppendLineDash(kDashes, 3); list.AppendLine({0, 0}, {9, 0});
         list.AppendValue(RecordKind::kLineStyle, 1); list.AppendLine({0, 1}, {9, 1}); },
     "[8 2 1 0] 0 d\n0 0 m\n9 0 l\nS\n[120 50] 0 d\n0 1 m\n9 1 l\nS\n"},
    {"a rectangle, and its area",
     [](auto& list) { list.AppendRectangle({{9, 8}, {1, 2}}, false);
         list.AppendColour(RecordKind::kFillColour, 0xFF0000);
         list.AppendRectangle({{1, 2}, {9, 8}}, true); },
     "9 8 -8 -6 re\nS\n0 0 1 rg\n1 2 8 6 re\nf*\n"},
    {"an area with a hole",
     [](auto& list) { list.AppendPolyPolygon({kRingLengths, 2, {kRing, 7}}, true); },
     "0 0 m\n9 0 l\n9 9 l\nh\n3 2 m\n5 2 l\n5 4 l\nh\nf*\n"},
    {"a quarter of a circle", [](auto& list) { list.AppendArc({{0, 0}, 100, 100, 0.0F, 90.0F}); },
     "100 0 m\n100 55.2 55.2 100 0 100 c\nS\n"},
    {"a whole ellipse is closed",
     [](auto& list) { list.AppendArc({{10, 20}, 30, 60, 77.0F, -360.0F}); },
     "40 20 m\n40 53.1 26.6 80 10 80 c\n-6.6 80 -20 53.1 -20 20 c\n"
     "-20 -13.1 -6.6 -40 10 -40 c\n26.6 -40 40 -13.1 40 20 c\nh\nS\n"},
    {"an arc of no radius, one without span: dots",
     [](auto& list) { list.AppendArc({{7, 8}, 0, 0, 0.0F, 90.0F});
         list.AppendArc({{0, 0}, 5, 5, 90.0F, 0.0F}); }, "7 8 m\n7 8 l\n0 5 m\n0 5 l\nS\n"},
    {"angles that are no numbers show the whole circle",
     [](auto& list) { list.AppendArc({{0, 0}, 10, 0, 0.0F, std::nanf("")}); },
     "10 0 m\n10 0 5.5 0 0 0 c\n-5.5 0 -10 0 -10 0 c\n-10 0 -5.5 0 0 0 c\n"
     "5.5 0 10 0 10 0 c\nh\nS\n"},
    {"a clip region, and what held before it",
     [](auto& list) { list.AppendLine({0, 0}, {1, 1}); list.AppendClipRegion({kTriangle, 3});
         list.AppendValue(kWidth, 5); list.AppendLine({0, 0}, {2, 2}); list.EndClipRegion();
         list.AppendLine({0, 0}, {3, 3}); },
     "0 0 m\n1 1 l\nS\nEMC\nq\n0 0 m\n100 0 l\n50 80 l\nh\nW* n\n/OC/L0 BDC\n5 w\n0 0 m\n2 2 l\n"
     "S\nEMC\nQ\n/OC/L0 BDC\n5 w\n0 0 m\n3 3 l\nS\n"},
    {"a clip region of no points shows nothing",
     [](auto& list) { list.AppendClipRegion({}); list.AppendLine({0, 0}, {1, 1});
         list.EndClipRegion(); list.AppendLine({0, 0}, {1, 1}); },
     "EMC\nq\n0 0 0 0 re\nW* n\n/OC/L0 BDC\n0 0 m\n1 1 l\nS\nEMC\nQ\n/OC/L0 BDC\n0 0 m\n1 1 l\n"
     "S\n"},
    {"a layer",
     [](auto& list) { list.AppendValue(RecordKind::kLayer, -3); list.AppendLine({0, 0}, {1, 1}); },
     "EMC\n/OC/L-3 BDC\n0 0 m\n1 1 l\nS\n"},
    {"exclusive or: strokes stay apart; drawing nothing",
     [](auto& list) { list.AppendValue(RecordKind::kDrawMode, 7); list.AppendLine({0, 0}, {1, 1});
         list.AppendLine({2, 2}, {3, 3}); list.AppendValue(RecordKind::kDrawMode, 11);
         list.AppendLine({2, 2}, {4, 3}); }, "/Difference gs\n0 0 m\n1 1 l\nS\n2 2 m\n3 3 l\nS\n"},
    {"a pattern in two colours",
     [](auto& list) { list.DefineFillPattern({1, 2, 1, {kDots, 2}}); list.AppendFillStyle(3, 1);
         list.AppendRectangle({{0, 0}, {9, 9}}, true);
         list.AppendColour(RecordKind::kFillColour, 0x0000FF);
         list.AppendRectangle({{0, 0}, {9, 9}}, true); list.AppendFillStyle(0, 0);
         list.AppendRectangle({{0, 0}, {9, 9}}, true); },
     "/C cs\n0 0 0 /P1 scn\n0 0 9 9 re\nf*\n1 0 0 /P1 scn\n0 0 9 9 re\nf*\n1 0 0 rg\n0 0 9 9 re\n"
     "f*\n"},
};
// clang-format on

TEST(PdfWriter, WritesTheOperatorsOfAPage) {
    for (const ContentCase& row : kContents) {
        DisplayList list;
        list.AppendValue(kWidth, 2);
        list.AppendRectangle({{0, 0}, {0, 0}}, false);
        row.append(list);
        const std::string start = "/OC/L0 BDC\n2 w\n1 J\n1 j\n0 0 0 0 re\nS\n";
        EXPECT_EQ(Pdf(list).Content(), start + row.operators + "EMC\n") << row.name;
    }
}

TEST(PdfWriter, CutsLongPolylinesWithTheirDashes) {
    std::vector<PointI> points(2500);
    for (std::size_t i = 0; i < points.size(); ++i) points[i].x = static_cast<std::int32_t>(3 * i);
    DisplayList list;
    list.AppendLineDash(kDashes, 2);
    list.AppendPolygon({points.data(), points.size()}, false);
    const std::string content = Pdf(list).Content();
    // Pieces of 1000 lines, the last one of each drawn twice; 999 x 3 = 299 x 10 + 7.
    EXPECT_NE(content.find("3000 0 l\nS\n[8 2] 7 d\n2997 0 m\n3000 0 l\n"), std::string::npos);
    EXPECT_NE(content.find("[8 2] 4 d\n5994 0 m\n"), std::string::npos);
}

TEST(PdfWriter, ThePenOfWidthNoughtShows) {
    DisplayList list;
    list.AppendLine({0, 0}, {9, 0});
    const std::string content = Pdf(list).Content();
    EXPECT_NE(content.find(" w\n"), std::string::npos) << content;
    EXPECT_EQ(content.find("\n0 w\n"), std::string::npos) << content;
}

TEST(PdfWriter, PlacesPagesOnSheetsOfTheirSize) {
    DisplayList small;
    small.AppendValue(kWidth, 2);
    small.AppendLine({1017, 1017}, {1015 + 4064, 2031});
    DisplayList large;
    large.AppendValue(kWidth, 2);
    large.AppendLine({2000000001, 0}, {2000000000 + 1016 * 500 - 1, 0});
    const PdfReader reader = Pdf({SourceOf(small), SourceOf(large)});
    EXPECT_EQ(reader.OfPage(0, "/MediaBox"), "0 0 288 72");
    const std::string placed = "0.070866141732 0 0 0.070866141732 -72 -72 cm 3 Tr\n";
    EXPECT_EQ(reader.WholeContent(0).substr(0, placed.size()), placed);
    // 500 inches in units of 3 points, coordinates from the drawing's corner.
    EXPECT_EQ(reader.OfPage(1, "/MediaBox"), "0 0 12000 0.0472");
    EXPECT_EQ(reader.Count("/UserUnit 3/"), 1);
    EXPECT_NE(reader.Content(1).find("\n1 1 m\n507999 1 l\n"), std::string::npos);
}

TEST(PdfWriter, RefusesWhatNoPageHolds) {
    DisplayList list;
    list.AppendLine({INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MAX});
    EXPECT_NO_THROW(Pdf(list));
    PageSource page = SourceOf(list);
    page.unitsPerInch = 1.0;
    EXPECT_THROW(Pdf({page}), PageError);
    page.unitsPerInch = 0.0;
    EXPECT_THROW(Pdf({page}), PageError);
    FullSink full;
    EXPECT_THROW(WritePdf({SourceOf(list)}, {}, full), ToolError);
}

TEST(PdfWriter, ListsEachPenAsALayerOfAllPages) {
    DisplayList list;
    for (const std::int32_t pen : {2, 1, 2}) {
        list.AppendValue(RecordKind::kLayer, pen);
        list.AppendLine({pen, 0}, {pen, 9});
    }
    const std::vector<PageLayer> layers{{1, L"Walls", 0, true},
                                        {2, L"D\u00fcnn (hidden)", 0, false}};
    PageSource page = SourceOf(list);
    page.layers = &layers;
    const PdfReader reader = Pdf({page, page});
    std::map<std::string, std::string> groups;
    for (const auto& [number, object] : reader.objects) {
        if (object.value.rfind("<</Type/OCG/Name", 0) != 0) continue;
        groups[object.value.substr(16)] = std::to_string(number) + " 0 R ";
    }
    ASSERT_EQ(groups.size(), 2U);
    const std::string walls = groups["(Walls)>>"];
    const std::string hidden =
        groups["<FEFF004400FC006E006E0020002800680069006400640065006E0029>>>"];
    EXPECT_EQ(reader.Count("/OCProperties<</OCGs[" + walls + hidden + "]/D<</Order[" + walls +
                           hidden + "]/OFF[" + hidden + "]>>>>"),
              1);
    EXPECT_EQ(reader.Count("/Properties<</L2 "), 2);
}

TEST(PdfWriter, MixesWithWhitePaper) {
    DisplayList list;
    list.AppendRectangle({{0, 0}, {1016, 1016}}, true);
    EXPECT_EQ(Pdf(list).Count("/Group"), 0);
    list.AppendValue(RecordKind::kDrawMode, 15);
    list.AppendRectangle({{0, 0}, {1016, 508}}, true);
    const PdfReader reader = Pdf(list);
    EXPECT_EQ(reader.WholeContent().rfind("1 g 0 0 72 72 re f 0 g\n", 0), 0U);
    EXPECT_NE(reader.Content().find("/Lighten gs\n"), std::string::npos);
    EXPECT_EQ(reader.Count("/Lighten<</BM/Lighten>>"), 1);
    EXPECT_EQ(reader.Count("/Group<</S/Transparency"), 1);
}

TEST(PdfWriter, RepeatsAPatternInTheDrawing) {
    DisplayList list;
    list.DefineFillPattern({1, 2, 1, {kDots, 2}});
    list.AppendFillStyle(3, 1);
    list.AppendRectangle({{0, 0}, {1016, 1016}}, true);
    const PdfReader reader = Pdf(list);
    const PdfReader::Object& pattern = reader.Find("/Type/Pattern");
    EXPECT_NE(pattern.value.find("/BBox[0 0 64 64]/XStep 64/YStep 64/Matrix[0.24 0 0 -0.24 0 0]"),
              std::string::npos);
    std::string dots;
    for (int i = 0; i < 64 * 64 / 8; ++i) dots += '\x55';
    EXPECT_EQ(pattern.stream,
              "64 0 0 -64 0 64 cm\nBI/W 64/H 64/IM true/BPC 1\nID " + dots + "\nEI\n");
}

TEST(PdfWriter, SaysWhatItIs) {
    DisplayList list;
    list.AppendLine({0, 0}, {9, 9});
    SetSourceDate("");
    const std::string text = PdfText({SourceOf(list)});
    const PdfReader reader(text);
    EXPECT_EQ(reader.Count("<</Title(Page 1)/Creator(qmplot)/Producer(QmFilter HPGL)>>"), 1);
    EXPECT_EQ(
        pdf::InformationOf("plan.plt", {SourceOf(list)}).rfind("<</Title(plan.plt, Page 1)", 0),
        0U);
    EXPECT_EQ(
        pdf::InformationOf("plan.plt", std::vector<PageSource>(2)).rfind("<</Title(plan.plt)/", 0),
        0U);
    EXPECT_EQ(reader.Count("/PageLabels<</Nums[0<</P(Page 1)>>]>>"), 1);
    SetSourceDate("1709208000");
    EXPECT_EQ(Pdf(list).Count("/CreationDate(D:20240229120000Z)"), 1);
    SetSourceDate("tomorrow");
    EXPECT_TRUE(PdfText({SourceOf(list)}) == text);
    SetSourceDate("");
}

}  // namespace
