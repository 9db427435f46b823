// Letters drawn by masks beside the same strokes drawn one by one.
#include "render/bitmap/letter_masks.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/render/bitmap/drawn_page.h"

namespace {

using namespace qm;
using namespace qm::bitmap;

constexpr std::int32_t kSheet = 4000;  // units wide and high

struct MaskCase {
    const char* name;
    int letters;
    int scale;         // size of the letters
    int penWidth;      // units
    int mostOfAnyDot;  // what a dot may differ by, of 255
};

// A unit is 0.148 dots.
constexpr MaskCase kMaskCases[] = {
    {"small letters", 1200, 6, 0, 60},
    {"a wider pen", 600, 10, 11, 60},
    {"half of the letters have another pen", 600, 10, -11, 60},
    {"too few letters", 200, 6, 0, 0},
    {"large letters", 600, 60, 0, 0},
    {"a pen too wide", 600, 10, 60, 0},
};

// Letters at places that repeat late: two runs, one of which is closed, and a dot.
DisplayList Letters(const MaskCase& given, bool asLetters) {
    DisplayList list;
    AddSheet(list, kSheet);
    list.AppendValue(RecordKind::kLineWidth, std::abs(given.penWidth));
    const PointI corners[] = {{200, 200}, {3700, 200}, {3700, 3700}, {200, 3700}};
    list.AppendClipRegion({corners, 4});
    const std::int32_t s = given.scale;
    const std::uint8_t lengths[] = {3, 4, 2};
    for (int i = 0; i < given.letters; ++i) {
        if (given.penWidth < 0) list.AppendValue(RecordKind::kLineWidth, i % 2 * -given.penWidth);
        list.AppendColour(RecordKind::kDrawColour, i % 3 == 0 ? 0x0000FFU : 0U);
        const PointI at{i * 1237 % kSheet, i * 3571 % kSheet};
        PointI points[] = {{0, 0},         {3 * s, 7 * s}, {6 * s, 0},
                           {1 * s, 2 * s}, {5 * s, 2 * s}, {3 * s, 5 * s},
                           {1 * s, 2 * s}, {8 * s, 3 * s}, {8 * s, 3 * s}};
        for (PointI& p : points) p = {p.x + at.x, p.y + at.y};
        BoxI box;
        if (asLetters) {
            list.AppendLetter({points, 9, lengths, 3}, box);
            continue;
        }
        for (const int from : {0, 1, 3, 4, 5, 7}) list.AppendLine(points[from], points[from + 1]);
    }
    return list;
}

TEST(LetterMasks, ShowWhatStrokesShow) {
    for (const MaskCase& each : kMaskCases) {
        PageOptions options = DotForDot();
        options.dpi = 150.0;
        const DisplayList letters = Letters(each, true);
        const DrawnPage drawn = Draw(letters, options);
        const DrawnPage stroked = Draw(Letters(each, false), options);
        ASSERT_EQ(drawn.dots.size(), stroked.dots.size());
        int most = 0;
        double sum = 0.0;
        for (std::size_t i = 0; i < drawn.dots.size(); ++i) {
            const int difference = int(drawn.dots[i] & 255) - int(stroked.dots[i] & 255);
            most = std::max(most, std::abs(difference));
            sum += difference;
        }
        EXPECT_LE(most, each.mostOfAnyDot) << each.name;
        EXPECT_EQ(most > 0, each.mostOfAnyDot > 0) << each.name;
        EXPECT_NEAR(sum / double(drawn.dots.size()), 0.0, 0.05) << each.name;
        options.threads = 3;
        EXPECT_EQ(Draw(letters, options, 0.0, 400000).dots, drawn.dots) << each.name;
    }
}

}  // namespace
