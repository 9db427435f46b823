// What is drawn where: single dots of small pages, coverages against sampled ones, bands.
#include "render/bitmap/page_painter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "common/tool_error.h"
#include "tests/render/bitmap/drawn_page.h"

namespace {

using namespace qm;
using namespace qm::bitmap;

void Area(DisplayList& list, std::uint32_t colour, const BoxI& box) {
    list.AppendColour(RecordKind::kFillColour, colour);
    list.AppendRectangle(box, true);
}

void Line(DisplayList& list, std::int32_t width, std::int32_t attributes, PointI from, PointI to) {
    list.AppendValue(RecordKind::kLineWidth, width);
    list.AppendValue(RecordKind::kLineAttributes, attributes);
    list.AppendLine(from, to);
}

void Corner(DisplayList& list, std::int32_t attributes) {
    list.AppendValue(RecordKind::kLineWidth, 20);
    list.AppendValue(RecordKind::kLineAttributes, attributes);
    const PointI points[] = {{20, 20}, {80, 20}, {80, 80}};
    list.AppendPolygon({points, 3}, false);
}

void Mode(DisplayList& list, std::int32_t mode) { list.AppendValue(RecordKind::kDrawMode, mode); }

void Dashes(DisplayList& list, std::int32_t dash, std::int32_t gap) {
    const std::int32_t lengths[] = {dash, gap};
    list.AppendLineDash(lengths, 2);
}

// 2 x 2 dots: black, white above white, white; a dot is `side` units wide.
void Picture(DisplayList& list, std::int32_t rasterOperation, std::int32_t side,
             std::uint32_t ink = 0) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(2, 2, 1));
    const PaletteEntry colours[] = {
        {255, 255, 255, 0},
        {static_cast<std::uint8_t>(ink >> 16), static_cast<std::uint8_t>(ink >> 8),
         static_cast<std::uint8_t>(ink), 0}};
    std::uint8_t* const rows = WritePackedHeader(bitmap.data(), 2, 2, 1, colours);
    rows[4] = 0x80;  // the top row's left dot
    list.AppendPicture({{0, 0}, {2 * side, 2 * side}}, rasterOperation,
                       {bitmap.data(), bitmap.size()});
}

struct DotCase {
    const char* name;
    std::function<void(DisplayList&)> draw;
    int x;
    int y;
    std::uint32_t colour;  // 0xRRGGBB
};

// Each on white paper of 100 x 100 dots.
// clang-format off
const DotCase kDots[] = {
    {"line", [](auto& l) { Line(l, 10, 0x200, {20, 50}, {80, 50}); }, 25, 52, 0x000000},
    {"beside a line", [](auto& l) { Line(l, 10, 0x200, {20, 50}, {80, 50}); }, 25, 56, 0xFFFFFF},
    {"flat end", [](auto& l) { Line(l, 10, 0x200, {20, 50}, {80, 50}); }, 17, 50, 0xFFFFFF},
    {"square end", [](auto& l) { Line(l, 10, 0x100, {20, 50}, {80, 50}); }, 15, 45, 0x000000},
    {"round end", [](auto& l) { Line(l, 10, 0, {20, 50}, {80, 50}); }, 16, 50, 0x000000},
    {"corner of a round end", [](auto& l) { Line(l, 10, 0, {20, 50}, {80, 50}); }, 15, 45, 0xFFFFFF},
    {"dot of a flat pen", [](auto& l) { Line(l, 20, 0x200, {50, 50}, {50, 50}); }, 42, 50, 0x000000},
    {"round join", [](auto& l) { Corner(l, 0); }, 89, 11, 0xFFFFFF},
    {"bevelled join", [](auto& l) { Corner(l, 0x1200); }, 86, 13, 0xFFFFFF},
    {"round join reaches further", [](auto& l) { Corner(l, 0); }, 86, 14, 0x000000},
    {"mitred join", [](auto& l) { Corner(l, 0x2200); }, 89, 10, 0x000000},
    {"round join of a hairpin",
     [](auto& l) {
         Line(l, 20, 0x200, {0, 0}, {0, 0});
         const PointI points[] = {{20, 50}, {80, 50}, {30, 50}};
         l.AppendPolygon({points, 3}, false);
     },
     87, 50, 0x000000},
    {"dash",
     [](auto& l) {
         Dashes(l, 10, 20);
         Line(l, 4, 0x200, {10, 50}, {90, 50});
     },
     45, 50, 0x000000},
    {"gap",
     [](auto& l) {
         Dashes(l, 10, 20);
         Line(l, 4, 0x200, {10, 50}, {90, 50});
     },
     55, 50, 0xFFFFFF},
    {"circle", [](auto& l) { l.AppendCircle({50, 50}, 30, true); }, 70, 70, 0x000000},
    {"beside a circle", [](auto& l) { l.AppendCircle({50, 50}, 30, true); }, 73, 73, 0xFFFFFF},
    {"arc",
     [](auto& l) {
         l.AppendValue(RecordKind::kLineWidth, 6);
         l.AppendArc({{50, 50}, 40, 20, 0.0F, 90.0F});
     },
     50, 69, 0x000000},
    {"not of the arc", [](auto& l) { l.AppendArc({{50, 50}, 40, 20, 0.0F, 90.0F}); }, 50, 30, 0xFFFFFF},
    {"hole of a ring in a ring",
     [](auto& l) {
         const PointI rings[] = {{0, 0},   {30, 0},  {30, 30}, {0, 30},
                                 {10, 10}, {20, 10}, {20, 20}, {10, 20}};
         const std::int32_t lengths[] = {4, 4};
         l.AppendPolyPolygon({lengths, 2, {rings, 8}}, true);
     },
     15, 15, 0xFFFFFF},
    // Rings in opposite directions that share an edge inside a dot leave no seam.
    {"neighbouring rings",
     [](auto& l) {
         const PointI rings[] = {{0, 0},  {50, 0},   {51, 100},  {0, 100},
                                 {50, 0}, {51, 100}, {100, 100}, {100, 0}};
         const std::int32_t lengths[] = {4, 4};
         l.AppendPolyPolygon({lengths, 2, {rings, 8}}, true);
     },
     50, 50, 0x000000},
    {"pen and paper",
     [](auto& l) {
         Area(l, 0x30F0FF, {{0, 0}, {100, 100}});
         Mode(l, 9);
         Area(l, 0xF3C0F1, {{0, 0}, {100, 50}});
     },
     50, 20, 0xF1C030},
    {"exclusive or",
     [](auto& l) {
         Mode(l, 7);
         Area(l, 0x0000FF, {{0, 0}, {100, 50}});
     },
     50, 20, 0x00FFFF},
    {"line in exclusive or",
     [](auto& l) {
         Mode(l, 7);
         l.AppendColour(RecordKind::kDrawColour, 0x0000FF);
         Line(l, 10, 0, {20, 50}, {80, 50});
     },
     50, 50, 0x00FFFF},
    {"no operation",
     [](auto& l) {
         Mode(l, 11);
         Area(l, 0, {{0, 0}, {100, 50}});
     },
     50, 20, 0xFFFFFF},
    {"picture stands upright", [](auto& l) { Picture(l, 204, 50); }, 25, 75, 0x000000},
    {"white of a copied picture",
     [](auto& l) {
         Area(l, 0x00FF00, {{0, 0}, {100, 100}});
         Picture(l, 204, 50);
     },
     25, 25, 0xFFFFFF},
    {"clear white of a picture",
     [](auto& l) {
         Area(l, 0x00FF00, {{0, 0}, {100, 100}});
         Picture(l, 252, 50);
     },
     25, 25, 0x00FF00},
    {"source and paper, bit by bit",
     [](auto& l) {
         Area(l, 0x30F0FF, {{0, 0}, {100, 100}});
         Picture(l, 0x88, 50, 0xF3C0F1);
     },
     25, 75, 0xF1C030},
    {"reduced picture is an average", [](auto& l) { Picture(l, 204, 1); }, 0, 1, 0x000000},
    {"clip region",
     [](auto& l) {
         const PointI corners[] = {{20, 20}, {80, 20}, {80, 80}, {20, 80}, {20, 20}};
         l.AppendClipRegion({corners, 5});
         Area(l, 0, {{0, 0}, {100, 100}});
         l.EndClipRegion();
     },
     19, 50, 0xFFFFFF},
    {"triangular clip region",
     [](auto& l) {
         const PointI corners[] = {{0, 0}, {100, 0}, {0, 100}};
         l.AppendClipRegion({corners, 3});
         Line(l, 40, 0x200, {20, 50}, {80, 50});
         l.EndClipRegion();
     },
     70, 60, 0xFFFFFF},
};
// clang-format on

TEST(PagePainter, DrawsDots) {
    for (const DotCase& row : kDots) {
        DisplayList list;
        AddSheet(list, 100);
        list.AppendColour(RecordKind::kFillColour, 0);
        row.draw(list);
        list.AppendValue(RecordKind::kDrawMode, 13);
        EXPECT_EQ(Draw(list).At(row.x, row.y), row.colour) << row.name;
    }
}

// A red area, beside it a green one, and a picture whose upper left dot is black; 50 x 10 dots.
TEST(PagePainter, TurnsPagesCounterClockwise) {
    DisplayList list;
    Area(list, 0x0000FF, {{0, 0}, {40, 10}});
    Area(list, 0x00FF00, {{40, 0}, {50, 10}});
    Picture(list, 252, 5);
    const struct {
        double rotation;
        int width;
        PointI green, black;
    } rows[] = {{0.0, 50, {45, 5}, {2, 7}},   {90.0, 10, {5, 45}, {2, 2}},
                {180.0, 50, {5, 5}, {47, 2}}, {270.0, 10, {5, 5}, {7, 47}},
                {-90.0, 10, {5, 5}, {7, 47}}, {-270.0, 10, {5, 45}, {2, 2}}};
    for (const auto& row : rows) {
        const DrawnPage page = Draw(list, DotForDot(), row.rotation);
        EXPECT_EQ(page.width, row.width) << row.rotation;
        EXPECT_EQ(page.height, 60 - row.width) << row.rotation;
        EXPECT_EQ(page.At(row.green.x, row.green.y), 0x00FF00U) << row.rotation;
        EXPECT_EQ(page.At(row.black.x, row.black.y), 0x000000U) << row.rotation;
    }
}

// However few dots an inch has, a line of the thinnest pens is as dark as its colour and about a
// dot wide.
TEST(PagePainter, ThinPensStayVisible) {
    for (const std::int32_t width : {0, 1, 3}) {
        DisplayList list;
        AddSheet(list, 1000);
        list.AppendValue(RecordKind::kLineWidth, width);
        list.AppendLine({0, 515}, {1000, 515});
        PageOptions options = DotForDot();
        options.dpi = 101.6;
        const DrawnPage page = Draw(list, options);
        std::uint32_t ink = 0;
        for (int y = 45; y < 58; ++y) ink += 255 - (page.At(50, y) & 255);
        EXPECT_NEAR(ink, 255.0, 3.0) << width;
    }
}

// A fifth of the size: five by five dots of picture or pattern become one.
TEST(PagePainter, ReducedPicturesAndPatternsKeepTheirDarkness) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(1000, 100, 1));
    const PaletteEntry colours[] = {{255, 255, 255, 0}, {0, 0, 0, 0}};
    std::uint8_t* const rows = WritePackedHeader(bitmap.data(), 1000, 100, 1, colours);
    std::fill(rows, bitmap.data() + bitmap.size(), std::uint8_t{0xAA});
    for (const bool isPattern : {false, true}) {
        for (const double rotation : {0.0, 90.0}) {
            DisplayList list;
            if (isPattern) {
                const std::uint8_t bits[] = {0x7F, 0xFF};  // ink in the left dot of each 2
                list.DefineFillPattern({1, 2, 1, {bits, 2}});
                list.AppendFillStyle(3, 1);
                list.AppendRectangle({{0, 0}, {1000, 100}}, true);
            } else {
                list.AppendPicture({{0, 0}, {1000, 100}}, 204, {bitmap.data(), bitmap.size()});
            }
            PageOptions options = DotForDot();
            options.dpi = 1016.0 / 20.0;
            double sum = 0.0;
            const DrawnPage page = Draw(list, options, rotation);
            for (const std::uint32_t dot : page.dots) sum += dot & 255;
            EXPECT_NEAR(sum / static_cast<double>(page.dots.size()), 127.5, 3.0)
                << isPattern << rotation;
        }
    }
}

// ------------------------------------------------------------------------------ smooth edges

// Distance of (x, y) from the line.
double Away(double x, double y, PointI from, PointI to) {
    const double length = Length(to.x - from.x, to.y - from.y);
    const double alongX = (to.x - from.x) / length;
    const double alongY = (to.y - from.y) / length;
    const double along =
        std::min(std::max((x - from.x) * alongX + (y - from.y) * alongY, 0.0), length);
    return Length(x - from.x - along * alongX, y - from.y - along * alongY);
}

// The dots of a page of 100 units square at `dpi`, against 16 x 16 places of each dot. Returns the
// mean of the differences of those dots that either sees an edge in, 0 to 255.
double MeanError(const DisplayList& list, double dpi,
                 const std::function<bool(double x, double y)>& isInside) {
    PageOptions options = DotForDot();
    options.dpi = dpi;
    const DrawnPage page = Draw(list, options);
    const double unit = 1016.0 / dpi;
    double sum = 0.0;
    int edges = 0;
    for (int y = 0; y < page.height; ++y) {
        for (int x = 0; x < page.width; ++x) {
            int inside = 0;
            for (int part = 0; part < 256; ++part) {
                const double u = (x + (part % 16 + 0.5) / 16.0) * unit;
                const double v = (y + (part / 16 + 0.5) / 16.0) * unit;
                inside += isInside(u, 100.0 - v) ? 1 : 0;
            }
            const double dark =
                255.0 - (page.dots[static_cast<std::size_t>(y * page.width + x)] & 255);
            const double truth = inside * 255.0 / 256.0;
            if (truth == dark || (inside == 256 && dark == 255.0)) continue;
            sum += std::abs(truth - dark);
            ++edges;
        }
    }
    return edges == 0 ? 0.0 : sum / edges;
}

TEST(PagePainter, CoversAsMuchAsSamplesSay) {
    struct Row {
        const char* name;
        PointI from;
        PointI to;
        std::int32_t width;
        std::int32_t drawMode;  // 9 with a red pen takes the way of outlines
        double dpi;
        double limit;
    };
    const Row rows[] = {
        {"thin", {10, 15}, {90, 75}, 10, 13, 101.6, 8.0},
        {"thin and flat", {10, 50}, {90, 57}, 10, 13, 101.6, 6.0},
        {"thin and upright", {50, 10}, {50, 90}, 10, 13, 101.6, 6.0},
        {"wide", {10, 15}, {90, 75}, 10, 13, 508.0, 4.0},
        {"outline", {10, 15}, {90, 75}, 10, 9, 508.0, 3.0},
    };
    for (const Row& row : rows) {
        DisplayList list;
        AddSheet(list, 100);
        list.AppendValue(RecordKind::kDrawMode, row.drawMode);
        list.AppendColour(RecordKind::kDrawColour, row.drawMode == 9 ? 0x0000FF : 0);
        Line(list, row.width, 0, row.from, row.to);
        EXPECT_LT(MeanError(list, row.dpi,
                            [&](double x, double y) {
                                return Away(x, y, row.from, row.to) <= row.width / 2.0;
                            }),
                  row.limit)
            << row.name;
    }
    DisplayList list;
    AddSheet(list, 100);
    list.AppendColour(RecordKind::kFillColour, 0);
    list.AppendCircle({50, 50}, 37, true);
    EXPECT_LT(MeanError(list, 300.0,
                        [](double x, double y) { return Length(x - 50.0, y - 50.0) <= 37.0; }),
              2.5);
}

TEST(PagePainter, HardDotsHaveTheColoursOfThePlot) {
    DisplayList list;
    AddSheet(list, 1000);
    list.AppendColour(RecordKind::kDrawColour, 0x0000FF);
    list.AppendLine({13, 17}, {911, 503});
    Line(list, 40, 0, {100, 900}, {800, 750});
    list.AppendColour(RecordKind::kFillColour, 0xFF0000);
    list.AppendCircle({500, 300}, 77, true);
    list.AppendLine({333, 666}, {333, 666});  // a speck
    PageOptions options = DotForDot();
    options.dpi = 101.6;
    options.smooth = false;
    const DrawnPage page = Draw(list, options);
    for (const std::uint32_t dot : page.dots) {
        EXPECT_TRUE(dot == 0xFFFFFF || dot == 0xFF0000 || dot == 0x0000FF) << dot;
    }
    EXPECT_EQ(page.At(50, 30), 0x0000FFU);
    EXPECT_EQ(page.At(33, 66), 0xFF0000U);
}

// ------------------------------------------------------------------------------------------ bands

// Something of everything, in many places.
DisplayList Mixture() {
    DisplayList list;
    AddSheet(list, 2000);
    std::uint32_t seed = 1;
    const auto next = [&](std::int32_t end) {
        seed = seed * 1664525 + 1013904223;
        return static_cast<std::int32_t>((seed >> 8) % static_cast<std::uint32_t>(end));
    };
    const std::uint8_t bits[] = {0x7F, 0xFF};
    list.DefineFillPattern({1, 2, 1, {bits, 2}});
    for (int i = 0; i < 300; ++i) {
        if (i % 3 == 0) list.Finish();  // a part of its own, which bands may leave out
        list.AppendColour(RecordKind::kDrawColour, static_cast<std::uint32_t>(next(0x1000000)));
        list.AppendColour(RecordKind::kFillColour, static_cast<std::uint32_t>(next(0x1000000)));
        list.AppendValue(RecordKind::kLineWidth, next(60));
        const std::int32_t attributes[] = {0, 0x200, 0x1100, 0x2200};
        list.AppendValue(RecordKind::kLineAttributes, attributes[next(4)]);
        list.AppendValue(RecordKind::kDrawMode, next(4) == 0 ? 1 + next(16) : 13);
        list.AppendValue(RecordKind::kLineStyle, 0);
        if (next(3) == 0) Dashes(list, 1 + next(90), 1 + next(50));
        list.AppendFillStyle(next(3) == 0 ? 3 : 0, 1);
        const PointI points[] = {{next(2000), next(2000)},
                                 {next(2000), next(2000)},
                                 {next(2000), next(2000)},
                                 {next(2000), next(2000)}};
        if (i == 100) list.AppendClipRegion({points, 4});
        if (i == 200) list.EndClipRegion();
        if (i % 5 == 0) list.AppendPolygon({points, 4}, true);
        if (i % 5 == 1) list.AppendPolygon({points, 4}, false);
        if (i % 5 == 2) list.AppendArc({points[0], next(500), next(500), 10.0F, 250.0F});
        if (i % 5 == 3) list.AppendLine(points[0], points[1]);
        if (i % 50 == 4) Picture(list, next(256), next(400) + 1);
    }
    return list;
}

TEST(PageBands, ChangeNoDot) {
    const DisplayList list = Mixture();
    for (const double dpi : {40.0, 150.0}) {
        for (const bool smooth : {true, false}) {
            PageOptions options = DotForDot();
            options.dpi = dpi;
            options.smooth = smooth;
            const DrawnPage whole = Draw(list, options);
            EXPECT_EQ(Draw(list, options, 0.0, 1).dots, whole.dots) << dpi << smooth;
            options.threads = 3;
            EXPECT_EQ(Draw(list, options, 0.0, 20000).dots, whole.dots) << dpi << smooth;
        }
    }
}

TEST(PageBands, PassOnWhatACallbackThrows) {
    const DisplayList list = Mixture();
    PageOptions options = DotForDot();
    options.dpi = 40.0;
    options.threads = 3;
    options.checkpoint = [] { throw ToolError("stopped"); };
    EXPECT_THROW(Draw(list, options, 0.0, 1000), ToolError);
}

}  // namespace
