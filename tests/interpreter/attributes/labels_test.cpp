// Labels: what LB sends and where its strokes go, the character attributes, symbol mode. The hyphen
// is the measuring rod: one stroke from (2, 6) to (10, 6) of the 12 x 12 grid, so at the default
// size from (10, 60) to (50, 60); a blank draws nothing and "PD;" shows where the pen is.
#include "interpreter/attributes/labels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/interpreter/ops_table.h"
#include "tests/interpreter/plot_reader.h"

namespace qm {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

constexpr char kSolid[] = "SetPatternLength 8 0xFFFFFFFF";

// The segments of a plot alone, without the word "Line".
Lines StrokesOf(const std::string& plot) {
    Lines strokes;
    for (const std::string& line : OperationsOf(plot)) {
        if (line.rfind("Line ", 0) == 0) strokes.push_back(line.substr(5));
    }
    return strokes;
}

struct StrokeRow {
    std::string name;
    std::string plot;
    Lines strokes;
};

void ExpectStrokes(const std::vector<StrokeRow>& rows) {
    for (const StrokeRow& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(StrokesOf(row.plot), row.strokes);
    }
}

TEST(Labels, WhatIsSent) {
    const std::string width = "SetLineWidth 0";
    const auto begin = [](const std::string& text) {
        return "BeginLabelExtent \"" + text + "\" 0.0 120 0";
    };
    const auto end = [](const std::string& text) { return "EndLabelExtent \"" + text + "\""; };
    // clang-format off
    ExpectOperations({
        {"one piece", "PU100,200;LB-\3",
         {width, begin("-"), kSolid, "Line 110 260 150 260", end("-"), width}},
        {"no text", "LB\3", {width, width}},
        {"stroke weight", "SD1,21,6,3;LB \3",
         {"SetLineWidth 3", begin(" "), kSolid, end(" "), width}},
        {"stroke weight 9999 is not sent, the width at the end is", "SD6,9999;LB \3",
         {begin(" "), kSolid, end(" "), width}},
        {"negative weight is 0; DF resets it", "SD6,-2;LB\3SD6,7;DF;LB\3",
         {width, width, kSolid, width, width}},
        {"solid strokes, then the line type again, not its pattern", "LT2;LB-\3", {"SetLineStyle 1",
         "SetPatternLength 8 0xF0F0F0F0", width, begin("-"), "SetLineStyle 0", kSolid,
         "Line 10 60 50 60", "SetLineStyle 1", end("-"), width}},
        {"the pen's width again", "PW1;LB\3", {"SetLineWidth 40", width, "SetLineWidth 40"}},
        {"codes without a glyph go through the attributes", "LB\x05\3",
         {width, begin("\\x05"), kSolid, end("\\x05"), width}},
        {"CR LF and a last empty piece", "LB \r\n \r\n\3", {width, begin(" "), kSolid, end(" "),
         begin(""), end(""), begin(" "), kSolid, end(" "), begin(""), end(""), width}},
        {"a NUL ends the text, not the drawing", "LB-\0-\3"s, {width, begin("-"), kSolid,
         "Line 10 60 50 60", kSolid, kSolid, "Line 178 60 218 60", end("-"), width}},
        {"the end of input leaves the stale byte in the text", "-;LB ",
         {width, begin(" -"), kSolid, kSolid, "Line 94 60 134 60", end(" -"), width}},
        {"transparent data", "TD1;LB\r\n\3",
         {width, begin("\\x0D\\x0A"), kSolid, kSolid, end("\\x0D\\x0A"), width}},
        {"height in whole units", "SI.1,.123;LB\n\3",
         {width, "BeginLabelExtent \"\" 0.0 49 0", end(""), width}},
        {"a blank page stays blank", "LB \3PG;", {width, begin(" "), kSolid, end(" "), width}},
    });
    // clang-format on
    const Lines drawn = OperationsOf("LB-\3PG;");
    EXPECT_EQ(std::count(drawn.begin(), drawn.end(), "EndPage 1"), 1);
}

TEST(Labels, WherePiecesAndThePenGo) {
    const std::string letters(300, '-');
    ExpectStrokes({
        {"pen behind the text", "LBABC\3PU;LB-\3",
         [] {
             Lines strokes = StrokesOf("LBABC\3");
             strokes.push_back("262 60 302 60");
             return strokes;
         }()},
        {"CR: back to the start", "PU9,0;LB  \r-\3PD;", {"19 60 59 60", "93 0 93 0"}},
        {"LF: the line feed against the baseline", "LB  \n-\3PD;", {"58 60 98 60", "132 0 132 0"}},
        {"LF moves the return point too", "LB  \n \r-\3", {"-110 60 -70 60"}},
        {"CR at the end is lost", "LB  \r\3PD;", {"168 0 168 0"}},
        {"LF at the end is lost", "LB  \n\3PD;", {"168 0 168 0"}},
        {"CR LF at the end: the empty piece counts", "LB  \r\n\3PD;", {"0 0 0 0"}},
        {"shift-in takes no room", "LB\x0F-\3", {"10 60 50 60"}},
        {"256 characters at most", "LB" + std::string(300, ' ') + "\3PD;", {"21504 0 21504 0"}},
        {"the drawn terminator counts",
         "DT#,0;LB" + std::string(256, ' ') + "#PD;",
         {"21504 0 21504 0"}},
        {"bytes are raw: ';' is text", "LB;-\3LB-\3",
         [] {
             Lines strokes = StrokesOf("LB;\3");
             strokes.insert(strokes.end(), {"94 60 134 60", "178 60 218 60"});
             return strokes;
         }()},
        {"CP spaces, lines", "CP2,1;PD;", {"288 0 288 0"}},
        {"CP alone or with one number", "CP;PD;PU;CP5;PD;", {"-120 0 -120 0", "-240 0 -240 0"}},
    });
    EXPECT_EQ(StrokesOf("LB" + letters + "\3").size(), 256u);
}

TEST(Labels, CharacterAttributes) {
    // clang-format off
    ExpectStrokes({
        {"SI in centimetres", "SI.6,1.2;LB-\3", {"40 240 200 240"}},
        {"SI: width alone", "SI.6;LB-\3", {"40 60 200 60"}},
        {"SI; is 0.5 x 1", "SI1,2;SI;LB-\3", {"33 200 166 200"}},
        {"SI under scaling", "IP0,0,1000,1000;SC0,500,0,250;SI.6,1.2;LB-\3", {"40 240 200 240"}},
        {"SI after scaling", "IP0,0,1000,1000;SC0,500,0,250;SC;SI.6,1.2;LB-\3", {"40 240 200 240"}},
        {"SR in percent of P1-P2", "IP0,0,-6000,-12000;SR2,4;LB-\3", {"20 240 100 240"}},
        {"SR; is 0.75 x 1.5", "IP0,0,8000,8000;SR;LB-\3", {"10 60 50 60"}},
        {"DI", "PU100,0;DI0,2;LB-\3", {"40 10 40 50"}},
        {"DI needs two numbers, not both 0", "PU100,0;DI0,1;DI;DI1;DI0,0;LB-\3", {"40 10 40 50"}},
        {"DR stretches with P1-P2", "IP0,0,4000,1000;DR1,4;LB--\3",
         {"-35 49 -7 77", "24 108 52 137"}},
        {"DR; is horizontal", "DI0,1;DR;LB-\3", {"10 60 50 60"}},
        {"SL", "SL.5;LB-\3SL;LB-\3", {"40 60 80 60", "94 60 134 60"}},
        {"ES", "ES.5,1;LB -\3CP0,1;PD;", {"136 60 176 60", "492 0 492 0"}},
        {"ES: one number resets the lines, none nothing", "ES.5,1;ES1;PU0,0;ES;LB -\3CP0,1;PD;",
         {"178 60 218 60", "456 0 456 0"}},
        {"LO5 centres", "SI.5,1;LO5;LB-   \3PD;", {"-526 0 -393 0", "560 -200 560 -200"}},
        {"LO9 turned", "PU500,500;DI0,1;LO9;LB- \3", {"560 342 560 382"}},
        {"LO12 to 19 as 2 to 9, LO10 nothing", "LO13;LO10;LB-\3PU0,0;LO17;LB-\3",
         {"10 -60 50 -60", "-74 60 -34 60"}},
        {"LO outside and absent", "LO5;LO20;LB-\3LO5;LO-1;LB-\3LO5;LO;LB-\3",
         {"10 60 50 60", "94 60 134 60", "178 60 218 60"}},
        {"LO counts the characters of each piece", "LO7;LB- \n-\3",
         {"-158 60 -118 60", "-194 60 -154 60"}},
        {"LO leaves an empty piece", "LO9;LB\n-\3", {"-194 -60 -154 -60"}},
        {"DV1 down", "DV1;LB -\3", {"-74 60 -34 60"}},
        {"DT: another terminator, and back", "DT#;LB-\3#DT;LB-\3",
         {"10 60 50 60", "178 60 218 60"}},
        {"DT mode 0 draws it, DT; keeps the mode", "DT-,0;LB-DT;LB\3PD;DT-,1;LB-",
         {"10 60 50 60", "168 0 168 0"}},
        {"SD reads the values it ignores", "SD2,1,4,1.4,3,9.5,8,6,9999;LB\3PD;", {"0 0 0 0"}},
    });
    // clang-format on
}

TEST(Labels, SelectedSetsMapCharacters) {
    const auto same = [](const std::string& a, const std::string& b) {
        EXPECT_EQ(StrokesOf(a), StrokesOf(b)) << a;
    };
    same("SD1,39;LB{\3", "LB\x84\3");
    same("SD1,39;DF;LB{\3", "LB{\3");
    same("SD1,39;DF;SS;LB{\3", "LB{\3");
    same("SD1,39;SD1;LB{\3", "LB\x84\3");
    same("AD1,39;LB{\3", "LB\x84\3");
    same("AD2,39;LB{\3", "LB{\3");
    same("AD1,39;SD1,21;LB{\3SA;LB{\3", "LB{\x84\3");
    same("AD1,39;SS;LB{\3", "LB\x84\3");
    same("SD1,21;AD1,39;SS;LB{\3", "LB{\3");
    same("SA;SD1,39;SA;LB{\3", "LB\x84\3");
    struct Row {
        std::int32_t set;
        std::string bytes;
        std::vector<int> codes;
    };
    const Row rows[] = {
        {39, "{}~|\xDB", {132, 129, 225, 124, 219}},
        {36, "\\\xD8{\xE6|\xF8}\xE5~\xDB", {249, 249, 252, 252, 250, 250, 251, 251, 126, 219}},
        {0, "\xDB{~", {154, 123, 126}},
    };
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.bytes.size(); ++i) {
            EXPECT_EQ(MapCharacter(static_cast<std::uint8_t>(row.bytes[i]), row.set), row.codes[i]);
        }
    }
}

TEST(Labels, VectorsOfEveryPath) {
    LabelState label;
    label.CharWidth = 10.0;
    label.CharHeight = 20.0;
    label.direction = {0.6, 0.8};
    label.CharSpacingFactor = 2.0;
    label.LineSpacingFactor = 3.0;
    const struct {
        std::int32_t path;
        PointD advance;
        PointD lineFeed;
    } rows[] = {{0, {16.8, 22.4}, {36.0, 48.0}},
                {1, {-16.8, 448.0}, {-12.0, -16.0}},
                {2, {-16.8, -22.4}, {-12.0, 320.0}},
                {3, {16.8, -448.0}, {12.0, 16.0}},
                {4, {16.8, 22.4}, {12.0, 16.0}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        label.TextPath = row.path;
        EXPECT_DOUBLE_EQ(AdvanceVector(label).x, row.advance.x);
        EXPECT_DOUBLE_EQ(AdvanceVector(label).y, row.advance.y);
        EXPECT_DOUBLE_EQ(LineFeedVector(label).x, row.lineFeed.x);
        EXPECT_DOUBLE_EQ(LineFeedVector(label).y, row.lineFeed.y);
    }
}

// Truncation would show it if the last bit were another than that of these sums in this order.
TEST(Labels, GlyphPointsAreExactToTheLastBit) {
    std::uint32_t random = 1;
    const auto next = [&random](double range) {
        random = random * 1664525U + 1013904223U;
        return (random / 4294967296.0 - 0.5) * range;
    };
    for (int i = 0; i < 3000; ++i) {
        LabelState label;
        label.CharWidth = next(i % 7 == 0 ? 1e10 : 300.0);
        label.CharHeight = next(300.0);
        const double angle = i % 3 == 0 ? 0.0 : next(7.0);
        label.direction = {std::cos(angle), std::sin(angle)};
        if (i % 5 == 0) label.SlantTangent = next(2.0);
        const GlyphTransform transform(label);
        const PointD origin{next(i % 11 == 0 ? 1e10 : 60000.0), next(60000.0)};
        const PointD d = label.direction;
        const double unitY = label.CharHeight / 12.0;
        for (int y = kGlyphBottom; y <= kGlyphTop; ++y) {
            const int x = (y + 4) % (kGlyphRight + 1);
            const double localX = x * (label.CharWidth / 12.0) + label.SlantTangent * unitY * y;
            const double localY = y * unitY;
            const PointD expected{origin.x + d.x * localX - d.y * localY,
                                  origin.y + d.y * localX + d.x * localY};
            ASSERT_TRUE(transform.At(origin, x, y) == expected) << i;
            const PointI whole{TruncateToInt32(expected.x), TruncateToInt32(expected.y)};
            ASSERT_TRUE(!transform.IsPlain(origin) || transform.PlainAt(origin, x, y) == whole);
        }
    }
}

TEST(SymbolMode, DrawsAtEveryPoint) {
    // clang-format off
    ExpectStrokes({
        {"PU, PD and PR", "SM-;PU100,100;PD300,100;PR5,0;SM;PA0,0;", {"80 100 120 100",
         "100 100 300 100", "280 100 320 100", "300 100 305 100", "285 100 325 100",
         "305 100 0 0"}},
        {"not turned about the point", "DI0,1;SM-;PU100,100;", {"10 50 10 90"}},
        {"not mapped", "SD1,39;SM{;PU0,0;SM;", StrokesOf("SM{;PU0,0;")},
        {"PE points", "SM-;PE<=\xC3\xC1;", {"-18 1 22 1"}},
        {"no pair, no symbol", "SM-;PD;", {"0 0 0 0"}},
    });
    // clang-format on
}

TEST(SymbolMode, StrokesBecomeVerticesInPolygonMode) {
    PlotReader label("PM0;LB-\3");
    label.Interpret();
    ASSERT_EQ(label.State().drawing.polygon.vertices.size(), 3u);
    EXPECT_FALSE(label.State().drawing.polygon.vertices[1].drawn);
    EXPECT_EQ(label.State().drawing.polygon.vertices[2].point.x, 50.0);
    EXPECT_EQ(label.State().drawing.motion.penPos.x, 84.0);
    PlotReader symbol("PM0;SM-;PD7,0;CP;");
    symbol.Interpret();
    EXPECT_EQ(symbol.State().drawing.polygon.vertices.size(), 4u);
    EXPECT_EQ(StrokesOf("PM0;LB-\3SM-;PD7,0;"), Lines{});
}

// Whatever the numbers, a label ends, and what has no place goes to the lowest coordinate.
TEST(Labels, SurvivesWildNumbers) {
    const std::string nowhere = "-2147483648 -2147483648 -2147483648 -2147483648";
    ExpectStrokes({
        {"scale factors of 0", "SC0,0,0,0,2;SI1,1;DR1,1;LO5;LB-\3", {nowhere}},
        {"sizes beyond 32 bits", "SI2000000000,2000000000;PU0,1;LB-\3", {nowhere}},
        {"DR without a distance", "IP5,5,5,5;DR1,1;SR;PU;LB-\3", {"0 0 0 0"}},
    });
}

}  // namespace
}  // namespace qm
