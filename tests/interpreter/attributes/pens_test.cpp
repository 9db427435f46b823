// Pens: selection, widths, colours, transparency.
#include "interpreter/attributes/pens.h"

#include "tests/interpreter/ops_table.h"
#include "tests/interpreter/plot_reader.h"

namespace qm {
namespace {

using Lines = std::vector<std::string>;

// What "SP n;" sends for a pen of another width than the one before; the line attributes are the
// defaults.
Lines WidePenSelected(int pen, const std::string& color, const std::string& width) {
    return {"SetLineWidth " + width, "SetColor " + color,
            "SetLineStyle 0",        "SetPatternLength 4 0xFFFFFFFF",
            "SetLineWidth " + width, "SetPen " + std::to_string(pen)};
}

TEST(Pens, Selection) {
    // clang-format off
    ExpectOperations({
        {"absent selects 0", "SP;", PenSelected(0, "0xFFFFFF")},
        {"255 is the last pen", "SP255;", PenSelected(255, "0x000000")},
        {"256 folds to 1", "SP256;", PenSelected(1, "0x000000")},
        {"510 folds to 255", "SP510;", PenSelected(255, "0x000000")},
        {"511 folds to 1", "SP511;", PenSelected(1, "0x000000")},
        {"negative pens are black and thin", "PW5;SP-5;", {"SetLineWidth 200", "SetLineWidth 0",
         "SetColor 0x000000", "SetLineStyle 0", "SetPatternLength 4 0xFFFFFFFF", "SetLineWidth 0",
         "SetPen -5"}},
        {"a selection resends the pattern with its own factor", "LT2,1,0,3;SP1;", {"SetLineStyle 1",
         "SetPatternLength 24 0xF0F0F0F0", "SetColor 0x000000", "SetLineStyle 1",
         "SetPatternLength 12 0xF0F0F0F0", "SetLineWidth 0", "SetPen 1"}},
        {"with a user-defined line type neither style nor pattern is resent", "UL3,5;LT3;SP1;",
         {"SetLineType 1 : 5", "SetColor 0x000000", "SetLineWidth 0", "SetPen 1"}},
        {"LT-3 draws with type 3, but is no user-defined type here", "UL3,5;LT-3;SP1;",
         {"SetLineType 1 : 5", "SetColor 0x000000", "SetLineStyle 3",
         "SetPatternLength 4 0xFFFFFFFF", "SetLineWidth 0", "SetPen 1"}},
    });
    // clang-format on
}

TEST(Pens, Width) {
    // clang-format off
    ExpectOperations({
        {"pen 2 only: seen when it is selected", "PW0.35,2;SP2;",
         WidePenSelected(2, "0x0000FF", "14")},
        {"all pens: sent once", "PW1;PW1;", {"SetLineWidth 40"}},
        {"relative to the diagonal, in thousandths", "WU1;PW1;", {"SetLineWidth 14"}},
        {"relative to a diagonal set by IP", "IP0,0,3000,4000;WU1;PW2;", {"SetLineWidth 10"}},
        {"relative to the default diagonal again", "IP0,0,3,4;IP;WU1;PW1;", {"SetLineWidth 14"}},
        {"beyond the widest", "PW300;", {"SetLineWidth 10000"}},
        {"negative is thin", "PW1;PW-1;", {"SetLineWidth 40", "SetLineWidth 0"}},
        {"PW; thins all pens", "PW1;PW;", {"SetLineWidth 40", "SetLineWidth 0"}},
        {"pens outside the table store nothing", "PW1,256;PW1,-1;PW1,-32000;SP1;",
         PenSelected(1, "0x000000")},
        {"WU; clears the widths and says nothing", "PW1;WU;SP1;", {"SetLineWidth 40",
         "SetLineWidth 0", "SetColor 0x000000", "SetLineStyle 0", "SetPatternLength 4 0xFFFFFFFF",
         "SetLineWidth 0", "SetPen 1"}},
        {"WU0 keeps the widths, WU2 is ignored", "WU1;WU0;WU2;PW1;WU0;SP0;", {"SetLineWidth 40",
         "SetColor 0xFFFFFF", "SetLineStyle 0", "SetPatternLength 4 0xFFFFFFFF", "SetLineWidth 40",
         "SetPen 0"}},
    });
    // clang-format on
}

TEST(Pens, Color) {
    // clang-format off
    ExpectOperations({
        {"red stands in the low byte", "PC0,10,20,30;", {"SetColor 0x1E140A"}},
        {"missing components are 0", "PC0,10;", {"SetColor 0x00000A"}},
        {"a pen number alone: its default", "PC0,1,2,3;PC0;",
         {"SetColor 0x030201", "SetColor 0xFFFFFF"}},
        {"without a pen: all defaults, unsent", "PC0,1,2,3;PC;", {"SetColor 0x030201"}},
        {"another pen is not sent", "PC1,1,2,3;", {}},
        {"outside the table nothing happens", "PC256,1,2,3;PC-1,1,2,3;", {}},
        {"a negative current pen takes no colour", "SP-1;PC-1,9,9,9;", PenSelected(-1, "0x000000")},
        {"clamped to the range", "PC0,-5,300,255.9;", {"SetColor 0xFFFF00"}},
        {"CR maps its range", "CR0,100,0,100,0,100;PC0,50,50,50;", {"SetColor 0x7F7F7F"}},
        {"five numbers are no range", "CR0,100,0,100,0;PC0,50,50,50;", {"SetColor 0x323232"}},
    });
    // clang-format on
}

TEST(Pens, EveryPenColorMarksThePalette) {
    for (const char* plot : {"PC;", "PC1;", "PC1,2,3,4;", "PC300,1;", "PC-1;"}) {
        PlotReader reader(plot);
        reader.Interpret();
        EXPECT_TRUE(reader.State().pens.PaletteChanged) << plot;
    }
}

TEST(Pens, ColourByte) {
    struct Row {
        const char* name;
        double component;
        ComponentRange range;
        int expected;
    };
    const Row rows[] = {
        {"plain", 128.7, {0, 255}, 128},
        {"integer arithmetic", 1.0, {0, 3}, 85},
        {"black reference", 40.0, {20, 40}, 127},
        {"inverted", 100.0, {200, 100}, 127},
        {"inverted beyond the reference: low byte of -255", 400.0, {200, 100}, 1},
        {"no range at all", 50.0, {0, 0}, 0},
        {"no range, no number", 0.0, {0, 0}, 0},
        {"huge", 2147483647.0, {0, 255}, 255},
        {"hugely inverted", -2147483648.0, {1, 0}, 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ColourByte(row.component, row.range), row.expected) << row.name;
    }
}

// FP of a triangle shows whether the pen is suppressed.
TEST(Pens, WhiteIsTransparent) {
    const std::string fill = "PM0;PD9,0,9,9;PM2;FP;";
    const Lines filled{"SetLineWidth 0", "FilledPolygon 4 : 0,0 9,0 9,9 0,0", "SetLineWidth 0"};
    ExpectOperations({
        {"pen 0 before any SP is not tested", fill, filled},
        {"SP0", "SP0;" + fill, PenSelected(0, "0xFFFFFF")},
        {"TR1 tests the current pen", "TR1;" + fill, {}},
        {"TR; as TR1", "TR;" + fill, {}},
        {"TR0", "SP0;TR0;" + fill, Joined(PenSelected(0, "0xFFFFFF"), filled)},
        {"TR2 is ignored", "SP0;TR2;" + fill, PenSelected(0, "0xFFFFFF")},
        {"PC can free the pen", "SP0;PC0,0,0,0;" + fill,
         Joined(Joined(PenSelected(0, "0xFFFFFF"), {"SetColor 0x000000"}), filled)},
        {"PC can suppress the pen", "SP1;PC1,255,255,255;" + fill,
         Joined(PenSelected(1, "0x000000"), {"SetColor 0xFFFFFF"})},
    });
}

}  // namespace
}  // namespace qm
