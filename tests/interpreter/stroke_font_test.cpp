// The stroke font: the encoding of all glyphs, the letters behind the codes, the letters' shapes.
#include "interpreter/attributes/stroke_font.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "interpreter/attributes/stroke_font_encoding.h"

namespace qm {

bool operator==(const GlyphStroke& a, const GlyphStroke& b) {
    return a.x == b.x && a.y == b.y && a.down == b.down;
}

void PrintTo(const GlyphStroke& stroke, std::ostream* out) {
    *out << (stroke.down ? "down " : "up ") << stroke.x << ',' << stroke.y;
}

namespace {

using Strokes = std::vector<GlyphStroke>;

Strokes StrokesOf(int code, int characterSet = 0) {
    Strokes strokes;
    GlyphCursor cursor(StrokeGlyph(code, characterSet));
    while (const auto stroke = cursor.Next()) strokes.push_back(*stroke);
    EXPECT_FALSE(cursor.Next()) << "the cursor stays at the end, code " << code;
    return strokes;
}

TEST(StrokeFont, EncodesTheOutlinesThatPlotsRelyOn) {
    const auto up = [](int x, int y) { return GlyphStroke{x, y, false}; };
    const auto down = [](int x, int y) { return GlyphStroke{x, y, true}; };
    EXPECT_EQ(StrokesOf('A'), (Strokes{up(10, 4), down(2, 4), up(2, 0), down(2, 4), down(6, 12),
                                       down(10, 4), down(10, 0)}));
    EXPECT_EQ(StrokesOf('1'), (Strokes{up(4, 10), down(6, 12), down(6, 0), up(4, 0), down(8, 0)}));
    EXPECT_EQ(StrokesOf('-'), (Strokes{up(2, 6), down(10, 6)}));
    EXPECT_EQ(StrokesOf(' '), Strokes{});
    // The bytes themselves: a negative y, a pen bit, the leading and the closing byte.
    const unsigned char underscore[] = {8, 62, 0xFD, 0x80 | 74, 0xFD, 0};
    EXPECT_TRUE(std::equal(std::begin(underscore), std::end(underscore), StrokeFont['_' - 32]));
}

// One number for all outlines: no letter of an existing plot may change its shape.
TEST(StrokeFont, OutlinesStayAsTheyAre) {
    uLong sum = 0;
    for (std::size_t i = 0; i < 224; ++i) {
        const unsigned char* end = StrokeFont[i] + 1;
        while (*end != 0) ++end;
        sum = crc32(sum, StrokeFont[i], static_cast<uInt>(end - StrokeFont[i]));
    }
    EXPECT_EQ(sum, 198805338U);
}

TEST(StrokeFont, MappedCodesShowTheLettersOfTheirCharacterSet) {
    struct Row {
        int code;
        int characterSet;
        char32_t letter;
    };
    const Row rows[] = {
        {249, 36, U'Ø'}, {250, 36, U'ø'}, {251, 36, U'å'}, {252, 36, U'æ'}, {225, 36, U'á'},
        {225, 39, U'ß'}, {129, 39, U'ü'}, {132, 39, U'ä'}, {249, 39, U'ù'}, {154, 0, U'Ü'},
        {225, 0, U'á'},  {252, 0, U'ü'},  {248, 36, U'ø'}, {253, 36, U'ý'},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(StrokesOf(row.code, row.characterSet), StrokesOf(static_cast<int>(row.letter)))
            << row.code << " under set " << row.characterSet;
    }
}

TEST(StrokeFont, OtherCodesDrawNothing) {
    for (const int code : {-1, 0, 15, 31, 256, 1000}) {
        EXPECT_EQ(StrokeGlyph(code), nullptr) << code;
        EXPECT_EQ(StrokesOf(code), Strokes{}) << code;
    }
}

TEST(StrokeFontEncoding, RefusesOutlinesOffTheNotation) {
    unsigned char out[16] = {};
    for (const std::string_view text : {"13,0", "0,17", "0,-5", "1 2", "1,", "x", "1,2 |", "1;2"}) {
        EXPECT_ANY_THROW(EncodeStrokes(text, 0, out)) << text;
    }
    EXPECT_ANY_THROW(EncodeStrokes("0,14", 3, out)) << "raised above the grid";
    EXPECT_EQ(EncodeStrokes("0,-4 12,16 | 3,0", 0, out), out + 6);
    EXPECT_EQ(EncodedSize({0, "0,-4 12,16 | 3,0", "1,1", 3}), 10u);
}

}  // namespace
}  // namespace qm
