// PNG pages: the format that their colours ask for, the dots that come out, what is too large.
#include "render/bitmap/png_page.h"

#include <gtest/gtest.h>

#include "common/tool_error.h"
#include "render/bitmap/page_raster.h"
#include "render/page_writers.h"
#include "tests/render/memory_sink.h"
#include "tests/render/png_reader.h"

namespace {

using namespace qm;
using namespace qm::bitmap;

TEST(PngPage, TakesTheSmallestFormatThatHoldsTheColours) {
    struct Page {
        const char* name;
        unsigned colours;
        bool grey;
        bool noise;
        int bits;
        int type;
    };
    const Page rows[] = {
        {"one colour", 1, false, false, 1, 3},
        {"two", 2, false, false, 1, 3},
        {"three", 3, false, false, 2, 3},
        {"five", 5, false, false, 4, 3},
        {"sixteen", 16, false, false, 4, 3},
        {"seventeen", 17, false, false, 8, 3},
        {"all a byte names", 256, false, true, 8, 3},
        {"more", 257, false, true, 8, 2},
        {"far more", 5000, false, true, 8, 2},
        {"few shades", 16, true, false, 4, 3},
        {"many shades", 256, true, true, 8, 0},
    };
    for (const Page& row : rows) {
        PngHeader header;
        header.width = 100;
        header.height = 80;
        MemorySink sink;
        PngPage page(header, sink);
        std::vector<std::uint32_t> expected;
        std::uint32_t seed = 7;
        for (unsigned i = 0; i < 8000; ++i) {
            seed = seed * 1664525 + 1013904223;
            const unsigned number =
                row.noise && i > 6000 ? (seed >> 8) % row.colours : i * row.colours / 8000;
            expected.push_back(row.grey ? number * 0x010101 : number * 0x000305 + 0x000100);
        }
        for (std::size_t y = 0; y < 80; ++y) {
            std::vector<BandDot> dots(100);
            for (std::size_t x = 0; x < 100; ++x) dots[x].colour = expected[100 * y + x];
            page.Write(dots.data());
        }
        page.Finish();
        const PngDots image(sink.text);
        EXPECT_EQ(image.Bits(), row.bits) << row.name;
        EXPECT_EQ(image.Type(), row.type) << row.name;
        int wrong = 0;
        for (int i = 0; i < 8000; ++i) {
            wrong +=
                image.At(i % 100, 79 - i / 100) == expected[static_cast<std::size_t>(i)] ? 0 : 1;
        }
        EXPECT_EQ(wrong, 0) << row.name;
    }
}

TEST(PngPage, PagesBeyondThePlotsDotsAreCoarser) {
    DisplayList list;
    list.AppendLine({0, 0}, {10160, 10160});
    PageSource page;
    page.drawing = &list;
    page.name = "P";
    BitmapBudget budget{WorkBudget(1000000 + 250000)};
    PageOptions options;
    options.dpi = 100.0;
    options.marginMillimetres = 0.0;
    options.budget = &budget;
    std::string said;
    options.note = [&said](const std::string& note) { said += note + '\n'; };
    const int widths[] = {1000, 500, 10};
    for (const int width : widths) {
        MemorySink sink;
        WritePng(page, options, sink);
        EXPECT_EQ(PngDots(sink.text).Width(), width);
    }
    EXPECT_EQ(said.find("P has too many dots for the plot's size; it is drawn with 50 dots"), 0U);
    EXPECT_EQ(DotsForBitmaps(72.0, 10).Left(), (std::int64_t{1} << 26) + 5120);
    EXPECT_EQ(DotsForBitmaps(200.0, 10).Left(), ((std::int64_t{1} << 26) + 5120) * 4);
}

// Shades first, a colour in the last row.
TEST(PngPage, WritesKeptRowsAnew) {
    for (const std::uint32_t last : {0xFF0000U, 0x808080U}) {
        PngHeader header;
        header.width = 300;
        header.height = 2;
        MemorySink sink;
        PngPage page(header, sink);
        std::vector<BandDot> dots(300);
        for (unsigned x = 0; x < 100; ++x) dots[x].colour = x * 0x020202;
        page.Write(dots.data());
        dots[200].colour = last;
        page.Write(dots.data());
        page.Finish();
        const PngDots image(sink.text);
        EXPECT_EQ(image.Type(), last == 0xFF0000 ? 3 : 0);
        EXPECT_EQ(image.At(99, 1), 99 * 0x020202U);
        EXPECT_EQ(image.At(200, 0), last);
    }
}

PageSource SourceOf(const DisplayList& list) {
    PageSource page;
    page.drawing = &list;
    page.name = "Page 1";
    return page;
}

TEST(PngPage, TellsHowMuchShowsThroughIt) {
    DisplayList list;
    list.AppendColour(RecordKind::kFillColour, 0x0000FF);
    list.AppendRectangle({{0, 0}, {15, 20}}, true);
    list.AppendColour(RecordKind::kFillColour, 0xFFFFFF);
    list.AppendRectangle({{20, 0}, {40, 20}}, true);
    PageOptions options;
    options.dpi = 101.6;  // a dot has 10 units
    options.marginMillimetres = 0.0;
    options.background.kind = Background::Kind::kNone;
    MemorySink sink;
    WritePng(SourceOf(list), options, sink);
    const PngDots image(sink.text);
    EXPECT_EQ(image.Type(), 6);
    const std::uint32_t expected[] = {0xFFFF0000, 0x80FF0000, 0xFFFFFFFF, 0xFFFFFFFF};
    for (int x = 0; x < 4; ++x) {
        EXPECT_EQ(image.Opacity(x, 0) << 24 | image.At(x, 0), expected[x]) << x;
    }
    options.background = {Background::Kind::kColour, 0x00FF00};
    MemorySink coloured;
    WritePng(SourceOf(list), options, coloured);
    EXPECT_EQ(PngDots(coloured.text).At(1, 0), 0x807F00U);
}

// Pens of width 0 are as wide as a dot at 150 dots per inch, and no thinner than one.
TEST(PngPage, HairlinesHaveAWidth) {
    DisplayList list;
    list.AppendLine({0, 0}, {10160, 0});
    const std::pair<double, int> rows[] = {{50.0, 1}, {150.0, 1}, {300.0, 2}, {600.0, 4}};
    for (const auto& [dpi, width] : rows) {
        PageOptions options;
        options.dpi = dpi;
        options.smooth = false;
        MemorySink sink;
        WritePng(SourceOf(list), options, sink);
        const PngDots image(sink.text);
        int black = 0;
        for (int y = 0; y < image.Height(); ++y) black += image.At(image.Width() / 2, y) == 0;
        EXPECT_EQ(black, width) << dpi;
    }
}

TEST(PageRaster, SaysWhatFitsWhenTooLarge) {
    const struct {
        std::int32_t width, height, dots;  // plotter units, dots per inch
        std::string told;                  // nothing: it fits
    } rows[] = {
        {1016 * 600, 0, 54, ""},
        {1016 * 600, 0, 150, "15250 x 10 mm, at 150 dots per inch too large for P; use 54"},
        {0, 1016 * 600, 55, "10 x 15250 mm, at 55 dots per inch too large for P; use 54"},
        {INT32_MAX, INT32_MAX, 1,
         "53687101 x 53687101 mm, at 1 dots per inch too large for P; write"},
    };
    for (const auto& row : rows) {
        DisplayList list;
        list.AppendLine({0, 0}, {row.width, row.height});
        PageOptions options;
        options.dpi = row.dots;
        std::string told;
        try {
            RasterOf(SourceOf(list), options, "P");
        } catch (const ToolError& error) {
            told = error.what();
        }
        EXPECT_EQ(told.substr(0, row.told.size() + 10),
                  row.told.empty() ? row.told : "Page 1 is " + row.told);
    }
    FullSink full;
    EXPECT_THROW(WritePng(SourceOf(DisplayList()), {}, full), ToolError);
}

}  // namespace
