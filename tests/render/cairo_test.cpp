// PNG pages: their size, a few dots of what was drawn, what is too large, failing sinks.
#include <cairo.h>
#include <gtest/gtest.h>

#include "common/packed_bitmap.h"
#include "host/display_list.h"
#include "render/cairo_picture.h"
#include "render/page_writers.h"
#include "tests/render/memory_sink.h"
#include "tests/render/png_reader.h"

namespace {

using namespace qm;

// One dot of the drawing a dot of the picture: 1016 dots per inch, no margin.
PageOptions DotForDot() {
    PageOptions options;
    options.dpi = 1016.0;
    options.marginMillimetres = 0.0;
    return options;
}

PageSource SourceOf(const DisplayList& list, double rotation = 0.0) {
    PageSource page;
    page.drawing = &list;
    page.rotation = rotation;
    page.name = "Page 1";
    return page;
}

std::string PngOf(const DisplayList& list, double rotation = 0.0,
                  const PageOptions& options = DotForDot()) {
    MemorySink sink;
    WritePng(SourceOf(list, rotation), options, sink);
    return sink.text;
}

// An invisible frame, so that the sheet is `side` dots wide and high.
void AddSheet(DisplayList& list, std::int32_t side) {
    list.AppendColour(RecordKind::kFillColour, 0xFFFFFF);
    list.AppendRectangle({{0, 0}, {side, side}}, true);
}

TEST(PngPage, ShowsLinesAreasAndTheirOrder) {
    DisplayList list;
    AddSheet(list, 100);
    list.AppendColour(RecordKind::kDrawColour, 0x0000FF);
    list.AppendValue(RecordKind::kLineWidth, 10);
    list.AppendValue(RecordKind::kLineAttributes, 0x200);
    list.AppendLine({20, 50}, {80, 50});
    list.AppendColour(RecordKind::kFillColour, 0x00FF00);
    list.AppendRectangle({{40, 40}, {60, 90}}, true);
    list.AppendColour(RecordKind::kFillColour, 0xFF0000);
    const PointI rings[] = {{0, 0},   {30, 0},  {30, 30}, {0, 30},
                            {10, 10}, {20, 10}, {20, 20}, {10, 20}};
    const std::int32_t lengths[] = {4, 4};
    list.AppendPolyPolygon({lengths, 2, {rings, 8}}, true);
    const PngDots image(PngOf(list));
    EXPECT_EQ(image.Width(), 100);
    EXPECT_EQ(image.Height(), 100);
    EXPECT_EQ(image.At(25, 52), 0xFF0000U);
    EXPECT_EQ(image.At(25, 58), 0xFFFFFFU);
    EXPECT_EQ(image.At(17, 50), 0xFFFFFFU);  // flat line end
    EXPECT_EQ(image.At(50, 50), 0x00FF00U);
    EXPECT_EQ(image.At(50, 85), 0x00FF00U);
    EXPECT_EQ(image.At(5, 5), 0x0000FFU);
    EXPECT_EQ(image.At(15, 15), 0xFFFFFFU);  // hole
}

// A red area and beside it a green one, 50 x 10 dots; the corners from the lower left.
TEST(PngPage, TurnsCounterClockwise) {
    DisplayList list;
    list.AppendColour(RecordKind::kFillColour, 0x0000FF);
    list.AppendRectangle({{0, 0}, {40, 10}}, true);
    list.AppendColour(RecordKind::kFillColour, 0x00FF00);
    list.AppendRectangle({{40, 0}, {50, 10}}, true);
    list.AppendColour(RecordKind::kFillColour, 0);
    list.AppendRectangle({{0, 0}, {5, 5}}, true);
    const struct {
        double rotation;
        int width;
        PointI green, black;
    } rows[] = {{0.0, 50, {45, 5}, {2, 2}},   {90.0, 10, {5, 45}, {7, 2}},
                {180.0, 50, {5, 5}, {47, 7}}, {270.0, 10, {5, 5}, {2, 47}},
                {-90.0, 10, {5, 5}, {2, 47}}, {-270.0, 10, {5, 45}, {7, 2}}};
    for (const auto& row : rows) {
        const PngDots image(PngOf(list, row.rotation));
        EXPECT_EQ(image.Width(), row.width) << row.rotation;
        EXPECT_EQ(image.Height(), 60 - row.width) << row.rotation;
        EXPECT_EQ(image.At(row.green.x, row.green.y), 0x00FF00U) << row.rotation;
        EXPECT_EQ(image.At(row.black.x, row.black.y), 0x000000U) << row.rotation;
    }
}

// However few dots an inch has, a line of the thinnest pens is as dark as its colour and about a
// dot wide.
TEST(PngPage, ThinPensStayVisible) {
    for (const std::int32_t width : {0, 1, 3}) {
        DisplayList list;
        AddSheet(list, 1000);
        list.AppendValue(RecordKind::kLineWidth, width);
        list.AppendLine({0, 515}, {1000, 515});
        PageOptions options = DotForDot();
        options.dpi = 101.6;
        const PngDots image(PngOf(list, 0.0, options));
        ASSERT_EQ(image.Height(), 100);
        std::uint32_t ink = 0;
        for (int y = 45; y < 58; ++y) ink += 255 - (image.At(50, y) & 255);
        EXPECT_GE(ink, 200U) << width;
        EXPECT_LE(ink, 400U) << width;
    }
}

TEST(PngPage, MaskPenKeepsTheDarkerColour) {
    DisplayList list;
    AddSheet(list, 10);
    list.AppendColour(RecordKind::kFillColour, 0x00FFFF);
    list.AppendRectangle({{0, 0}, {10, 10}}, true);
    list.AppendValue(RecordKind::kDrawMode, 9);
    list.AppendColour(RecordKind::kFillColour, 0xFFFF00);
    list.AppendRectangle({{0, 0}, {10, 5}}, true);
    const PngDots image(PngOf(list));
    EXPECT_EQ(image.At(5, 8), 0xFFFF00U);
    EXPECT_EQ(image.At(5, 2), 0x00FF00U);
}

TEST(PngPage, ClearBitsOfPatternsAreInk) {
    const std::uint8_t bits[] = {0x7F, 0xFF};  // ink in the leftmost dot of each 2
    DisplayList list;
    AddSheet(list, 100);
    list.DefineFillPattern({1, 2, 1, {bits, 2}});
    list.AppendColour(RecordKind::kFillColour, 0);
    list.AppendFillStyle(3, 1);
    list.AppendRectangle({{0, 0}, {100, 100}}, true);
    const PngDots image(PngOf(list));
    EXPECT_LT(image.At(1, 50), 0x404040U);  // dots are 3.4 wide
    EXPECT_GT(image.At(5, 50), 0xC0C0C0U);
}

TEST(PngPage, PicturesStandUprightAndWhiteIsClear) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(2, 2, 1));
    const PaletteEntry colours[] = {{255, 255, 255, 0}, {0, 0, 0, 0}};
    std::uint8_t* const rows = WritePackedHeader(bitmap.data(), 2, 2, 1, colours);
    rows[4] = 0x80;  // the top row's left dot
    DisplayList list;
    AddSheet(list, 40);
    list.AppendColour(RecordKind::kFillColour, 0x00FF00);
    list.AppendRectangle({{0, 0}, {40, 40}}, true);
    list.AppendPicture({{0, 0}, {40, 40}}, 252, {bitmap.data(), bitmap.size()});
    const PngDots clear(PngOf(list));
    EXPECT_EQ(clear.At(10, 30), 0x000000U);
    EXPECT_EQ(clear.At(30, 30), 0x00FF00U);
    EXPECT_EQ(clear.At(10, 10), 0x00FF00U);
    const std::pair<double, PointI> turns[] = {
        {90.0, {10, 10}}, {180.0, {30, 10}}, {270.0, {30, 30}}, {-90.0, {30, 30}}};
    for (const auto& [rotation, black] : turns) {
        const PngDots turned(PngOf(list, rotation));
        EXPECT_EQ(turned.At(black.x, black.y), 0x000000U) << rotation;
        EXPECT_EQ(turned.At(40 - black.x, 40 - black.y), 0x00FF00U) << rotation;
    }
    list.AppendPicture({{0, 0}, {40, 40}}, 204, {bitmap.data(), bitmap.size()});
    EXPECT_EQ(PngDots(PngOf(list)).At(10, 10), 0xFFFFFFU);
}

TEST(CairoPicture, ReductionKeepsTheAverage) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(1000, 10, 1));
    const PaletteEntry colours[] = {{255, 255, 255, 0}, {0, 0, 0, 0}};
    std::uint8_t* const rows = WritePackedHeader(bitmap.data(), 1000, 10, 1, colours);
    std::fill(rows, bitmap.data() + bitmap.size(), std::uint8_t{0xAA});
    const ReducedPicture reduced =
        ReducePicture(*PackedBitmapView::Parse(bitmap.data(), bitmap.size()), 100.0, false);
    EXPECT_EQ(reduced.width, 100.0);
    EXPECT_EQ(reduced.height, 1.0);
    std::uint32_t dot = 0;
    std::memcpy(&dot, cairo_image_surface_get_data(reduced.surface.get()) + 200, sizeof dot);
    EXPECT_EQ(dot, 0xFF808080U);
}

TEST(PngPage, SaysWhatFitsWhenTooLarge) {
    DisplayList list;
    list.AppendLine({0, 0}, {1016 * 600, 0});
    MemorySink sink;
    PageOptions options;
    options.dpi = 150.0;
    try {
        WritePng(SourceOf(list), options, sink);
        FAIL();
    } catch (const ToolError& error) {
        EXPECT_STREQ(error.what(),
                     "Page 1 is 15250 x 10 mm, at 150 dots per inch too large for a PNG; use 54 "
                     "dots per inch or less");
    }
    options.dpi = 54.0;
    EXPECT_NO_THROW(WritePng(SourceOf(list), options, sink));
    list.AppendLine({INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MAX});
    EXPECT_THROW(WritePng(SourceOf(list), options, sink), ToolError);
    FullSink full;
    EXPECT_THROW(WritePng(SourceOf(DisplayList()), options, full), ToolError);
}

}  // namespace
