// Filled polygons, rectangles, wedges and user patterns.
#include "interpreter/attributes/fill.h"

#include "tests/interpreter/ops_table.h"

namespace qm {
namespace {

using Lines = std::vector<std::string>;

const std::string kSquare = "PM0;PD40,0,40,40,0,40;PM2;";
const std::string kSquarePoints = "FilledPolygon 5 : 0,0 40,0 40,40 0,40 0,0";
const std::string kTwo = "PM0;PD9,0,9,9;PM1;PU20,0;PD30,0,30,9,20,0;PM2;";
const std::string kTwoPoints = "FilledPolyPolygon 2 4 4 : 0,0 9,0 9,9 0,0 20,0 30,0 30,9 20,0";

// FP stands between two widths.
Lines Fill(const Lines& operations) {
    return Joined(Joined({"SetLineWidth 0"}, operations), {"SetLineWidth 0"});
}

TEST(Fill, Groups) {
    ExpectOperations({
        {"one polygon", kSquare + "FP;", Fill({kSquarePoints})},
        {"several", kTwo + "FP;", Fill({kTwoPoints})},
        {"no polygon at all", "FP;", {}},
        {"a start point alone: only the widths", "PM0;PM2;FP;", Fill({})},
        {"small sub-polygons are left out", "PM0;PD9,0,9,9;PM1;PD5,5,6,6;PM2;FP;",
         Fill({"FilledPolygon 4 : 0,0 9,0 9,9 0,0"})},
        {"a small first sub-polygon too", "PM0;PM1;PD5,5,6,6,7,5;PM2;FP;",
         Fill({"FilledPolygon 3 : 5,5 6,6 7,5"})},
        {"pen-up moves are corners", "PM0;PU9,0;PD9,9;PM2;FP;",
         Fill({"FilledPolygon 4 : 0,0 9,0 9,9 0,0"})},
        {"FP leaves polygon mode", "PM0;PD9,0,9,9;FP;",
         Fill({"FilledPolygon 4 : 0,0 9,0 9,9 0,0"})},
    });
}

TEST(Fill, Types) {
    // clang-format off
    ExpectOperations({
        {"unknown types are solid", "FT7;" + kSquare + "FP;", Fill({kSquarePoints})},
        {"pattern", "FT11,3,1;" + kSquare + "FP;",
         Fill({"SetFillType 3 3", kSquarePoints, "SetFillType 0 0"})},
        {"pattern without an index", "FT11;" + kSquare + "FP;", Fill({kSquarePoints})},
        {"shading lightens a black pen", "SP1;FT10,50;" + kSquare + "FP;", Joined(PenSelected(1,
         "0x000000"), Fill({"SetColor 0x7F7F7F", kSquarePoints, "SetColor 0x000000"}))},
        {"shading leaves a red pen", "SP2;FT10,50;" + kSquare + "FP;",
         Joined(PenSelected(2, "0x0000FF"), Fill({kSquarePoints, "SetColor 0x0000FF"}))},
        {"full shading is solid", "FT10;" + kSquare + "FP;FT10,-1;FP;",
         Joined(Fill({kSquarePoints}), Fill({kSquarePoints}))},
        {"DF is full shading again", "FT10,50;DF;" + kSquare + "FP;",
         Joined({"SetPatternLength 8 0xFFFFFFFF"}, Fill({kSquarePoints}))},
        {"no shading: the outline", "FT10,0;" + kSquare + "FP;",
         Fill({"Polyline 5 : 0,0 40,0 40,40 0,40 0,0"})},
        {"no shading, several: nothing", "FT10,0;" + kTwo + "FP;", Fill({})},
        {"no shading, several, white not transparent", "TR0;FT10,0;" + kTwo + "FP;",
         Fill({"SetLineWidth 0", "SetColor 0xFFFFFF", kTwoPoints, "SetColor 0xFFFFFF",
         "SetLineWidth 0"})},
    });
    // clang-format on
}

TEST(Fill, Hatch) {
    ExpectOperations({
        {"no spacing", "FT3;" + kSquare + "FP;", Fill({})},
        {"a fractional spacing ends at its point; no angle follows", "FT3,10.90;" + kSquare + "FP;",
         Fill({"Line 0 10 40 10", "Line 0 20 40 20", "Line 0 30 40 30"})},
        {"upright", "FT3,20,90;" + kSquare + "FP;", Fill({"Line 20 0 20 40"})},
        {"horizontal", "FT3,10;" + kSquare + "FP;",
         Fill({"Line 0 10 40 10", "Line 0 20 40 20", "Line 0 30 40 30"})},
        {"cross-hatch at 0 degrees draws every line twice", "FT4,20;" + kSquare + "FP;",
         Fill({"Line 0 20 40 20", "Line 0 20 40 20"})},
        {"the spacing is scaled by y", "IP0,0,10,100;SC0,10,0,10;FT3,2;PM0;PD4,0,4,4,0,4;PM2;FP;",
         Fill({"Line 0 20 4 20"})},
    });
}

TEST(Fill, Rectangles) {
    // clang-format off
    ExpectOperations({
        {"absolute, unsorted", "PU50,60;RA10,20;EA10,20;",
         {"FilledRectangle 50 60 10 20", "Rectangle 50 60 10 20"}},
        {"relative", "PU50,60;RR-1,2;ER-1,2;",
         {"FilledRectangle 50 60 49 62", "Rectangle 50 60 49 62"}},
        {"one number is too few", "RA5;RR5;EA5;ER5;", {}},
        {"the pen stays", "PU1,1;RA5,5;PD2,2;", {"FilledRectangle 1 1 5 5", "Line 1 1 2 2"}},
        {"patterns: RA shows the outline, RR does not", "FT11;RA5,5;RR5,5;FT22;RA5,5;",
         {"Rectangle 0 0 5 5", "FilledRectangle 0 0 5 5", "Rectangle 0 0 5 5"}},
        {"merge opcode 165: outlines only", "MC1,165;RA5,5;RR5,5;EA5,5;ER5,5;",
         {"SetDrawMode 13", "Rectangle 0 0 5 5", "Rectangle 0 0 5 5"}},
        {"hidden RA forgets the polygon all the same", "MC1,165;PM0;PD9,0,9,9;PM2;RA5,5;EP;",
         {"SetDrawMode 13"}},
        {"neither window nor white pen matters", "IW1,1,2,2;SP0;RA5,5;",
         Joined(PenSelected(0, "0xFFFFFF"), {"FilledRectangle 0 0 5 5"})},
        {"AC takes its numbers along", "AC1,2RA5,5;", {"FilledRectangle 0 0 5 5"}},
    });
    // clang-format on
}

TEST(Fill, Wedges) {
    // clang-format off
    ExpectOperations({
        {"eight degrees", "PU100,100;WG1000,0,8;",
         {"FilledPolygon 6 : 100,100 1100,100 1097,169 1090,239 1090,239 100,100"}},
        {"a negative sweep", "WG1000,0,-4;", {"FilledPolygon 5 : 0,0 1000,0 997,-69 997,-69 0,0"}},
        {"two numbers are too few", "WG1000,0;", {}},
        {"no sweep", "WG1000,0,0;", {"FilledPolygon 4 : 0,0 1000,0 1000,0 0,0"}},
    });
    // clang-format on
    const Lines full = OperationsOf("WG1000,0,720;");
    ASSERT_EQ(full.size(), 1U);
    EXPECT_EQ(full[0].rfind("FilledPolygon 94 : ", 0), 0U) << full[0];
}

TEST(Fill, Patterns) {
    // clang-format off
    ExpectOperations({
        {"rows are whole words", "RF3,8,1,1,0,1,0,1,1,0,0;", {"DefineFillPattern 3 8 1 2 : 53FF"}},
        {"two rows", "RF1,17,2,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,5,-1,1;",
         {"DefineFillPattern 1 17 2 8 : FFFF7FFFBFFFFFFF"}},
        {"-32768 is a pixel", "RF1,2,2,-32768,1,1,1;", {"DefineFillPattern 1 2 2 4 : BFFF3FFF"}},
        {"missing pixels are 0", "RF1,2,2;", {"DefineFillPattern 1 2 2 4 : FFFFFFFF"}},
        {"no index, no size, negative size", "RF;RF1;RF1,8;RF1,0,8;RF1,-8,8;RF1,8,-8;", {}},
        {"too large: values are dropped", "RF1,32767,32767,1,1,1PD5,0;", {"Line 0 0 5 0"}},
    });
    // clang-format on
}

// Page ends follow only where something was drawn.
TEST(Fill, ClearsThePage) {
    const auto pages = [](const std::string& plot) {
        return Ops(plot + "PG;").find("EndPage") != std::string::npos;
    };
    EXPECT_TRUE(pages(kSquare + "FP;"));
    EXPECT_TRUE(pages("RA1,1;"));
    EXPECT_TRUE(pages("ER1,1;"));
    EXPECT_TRUE(pages("WG5,0,90;"));
    EXPECT_FALSE(pages("MC1,165;RA1,1;"));
    EXPECT_FALSE(pages("PM0;PM2;FP;EP;"));
    EXPECT_FALSE(pages("IW500,500,600,600;WG5,0,90;"));
    EXPECT_FALSE(pages("SP2;PW3;LT2;PC1,2,3,4;RF1,2,2,1;FT11,1;"));
}

}  // namespace
}  // namespace qm
