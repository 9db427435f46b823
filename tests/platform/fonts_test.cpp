// Cell heights of fonts. Off Windows they follow from the faces' own numbers; under Windows they
// depend on installed fonts.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace {

// "extent ascent descent" of a face at a height.
std::string Measure(const char* face, LONG height) {
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
    return std::to_string(size.cy) + ' ' + std::to_string(metrics.tmAscent) + ' ' +
           std::to_string(metrics.tmDescent);
}

TEST(Fonts, Metrics) {
    TEXTMETRICA m = {};
    const HDC context = GetDC(nullptr);
    EXPECT_TRUE(GetTextMetricsA(context, &m));
    const std::vector<LONG> told{m.tmHeight,       m.tmAscent,           m.tmDescent,
                                 m.tmAveCharWidth, m.tmMaxCharWidth,     m.tmWeight,
                                 m.tmFirstChar,    m.tmDigitizedAspectX, m.tmDigitizedAspectY,
                                 m.tmLastChar,     m.tmBreakChar};
    EXPECT_EQ(told, (std::vector<LONG>{16, 13, 3, 6, 6, 400, 0, 96, 96, 255, ' '}));
    EXPECT_EQ(ReleaseDC(nullptr, context), 1);
}

TEST(Fonts, CellHeights) {
    EXPECT_EQ(Measure("Arial", 20) + ' ' + Measure("Arial", 0), "20 16 4 16 13 3");
    EXPECT_EQ(Measure("arial", -100), "112 91 21");
    EXPECT_EQ(Measure("Times New Roman", -100), "111 89 22");
    EXPECT_EQ(Measure("Courier New", -100), "113 83 30");
    EXPECT_EQ(Measure("Plotter Gothic", -100), "112 91 21") << "unknown faces count as Arial";
    EXPECT_NE(Measure("Arial", std::numeric_limits<LONG>::min())[0], '-');
}

}  // namespace
