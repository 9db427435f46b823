// Cell heights of fonts. Off Windows they follow from the faces' own numbers; under Windows they
// depend on installed fonts.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <limits>

namespace {

struct Measured {
    LONG extent;
    LONG ascent;
    LONG descent;
};

Measured Measure(const char* face, LONG height) {
    LOGFONTA description = {};
    description.lfHeight = height;
    std::strncpy(description.lfFaceName, face, LF_FACESIZE - 1);
    const HDC context = GetDC(nullptr);
    const HFONT font = CreateFontIndirectA(&description);
    const HGDIOBJ before = SelectObject(context, font);
    SIZE size = {};
    TEXTMETRICA metrics = {};
    EXPECT_TRUE(GetTextExtentPoint32A(context, "A", 1, &size));
    EXPECT_TRUE(GetTextMetricsA(context, &metrics));
    EXPECT_EQ(metrics.tmHeight, size.cy);
    SelectObject(context, before);
    EXPECT_TRUE(DeleteObject(font));
    EXPECT_EQ(ReleaseDC(nullptr, context), 1);
    return {size.cy, metrics.tmAscent, metrics.tmDescent};
}

TEST(Fonts, CellHeights) {
    const struct Row {
        const char* name;
        const char* face;
        LONG height;
        Measured expected;
    } rows[] = {
        {"cell height", "Arial", 20, {20, 16, 4}},
        {"em height", "Arial", -20, {22, 18, 4}},
        {"em height, large", "arial", -100, {112, 91, 21}},
        {"serif", "Times New Roman", -100, {111, 89, 22}},
        {"fixed pitch", "Courier New", -100, {113, 83, 30}},
        {"unknown face counts as Arial", "Plotter Gothic", -100, {112, 91, 21}},
        {"default height", "Arial", 0, {16, 13, 3}},
    };
    for (const Row& row : rows) {
        const Measured measured = Measure(row.face, row.height);
        EXPECT_EQ(measured.extent, row.expected.extent) << row.name;
        EXPECT_EQ(measured.ascent, row.expected.ascent) << row.name;
        EXPECT_EQ(measured.descent, row.expected.descent) << row.name;
    }
    EXPECT_GT(Measure("Arial", std::numeric_limits<LONG>::min()).extent, 0);
}

}  // namespace
