// The two readings of one plot: what the engine makes of it and what a plotter draws.
#include "interpreter/reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "interpreter/null_builder.h"
#include "tests/interpreter/ops_table.h"

namespace qm {
namespace {

using Lines = std::vector<std::string>;

struct ReadingRow {
    std::string name;
    std::string plot;
    Lines engine;
    Lines plotter;
};

// The operations named in `kept` (separated by blanks), of those that a plot gives.
Lines OnlyOf(const std::string& plot, const Reading& reading, const std::string& kept) {
    Lines lines;
    for (const std::string& line : OperationsOf(plot, reading)) {
        std::istringstream names(kept);
        const auto is = [&](const std::string& name) { return line.rfind(name + ' ', 0) == 0; };
        if (std::any_of(std::istream_iterator<std::string>(names), {}, is)) lines.push_back(line);
    }
    return lines;
}

void ExpectReadings(const std::string& kept, const std::vector<ReadingRow>& rows) {
    for (const ReadingRow& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(OnlyOf(row.plot, {}, kept), row.engine);
        EXPECT_EQ(OnlyOf(row.plot, Reading::Plotter(), kept), row.plotter);
    }
}

TEST(Reading, Coordinates) {
    // clang-format off
    ExpectReadings("Line", {
        {"SC on a 7475A's points", "SC0,100,0,100;PU0,0;PD100,100;",
         {"Line 0 0 100 100"}, {"Line 603 521 10603 7721"}},
        {"SC on the plot size, which is wider than high", "PS2000,4000;SC0,1,0,2;PU0,0;PD1,2;",
         {"Line 0 0 1 2"}, {"Line 0 0 4000 2000"}},
        {"isotropic, the rest on both sides", "IP0,0,1000,500;SC0,1,0,1,1;PU0,0;PD1,1;",
         {"Line 0 0 1000 500"}, {"Line 250 0 750 500"}},
        {"isotropic, the rest below", "IP0,0,500,1000;SC0,1,0,1,1,0,100;PU0,0;PD1,1;",
         {"Line 0 0 500 1000"}, {"Line 0 500 500 1000"}},
        {"IP turned with the sheet", "PS400,200;RO90;IP;SC0,1,0,1;PU0,0;PD1,1;",
         {"Line 0 0 1 1"}, {"Line 0 0 200 400"}},
        {"a scale follows IP", "IP0,0,100,100;SC0,10,0,10;IP0,0,200,200;PU0,0;PD10,10;",
         {"Line 0 0 100 100"}, {"Line 0 0 200 200"}},
        {"P2 follows P1", "IP0,0,100,100;IP50,50;SC0,1,0,1;PU0,0;PD1,1;",
         {"Line 0 0 1 1"}, {"Line 50 50 150 150"}},
        {"IR in percent", "PS400,200;IR25,50,75,100;SC0,1,0,1;PU0,0;PD1,1;",
         {"Line 0 0 1 1"}, {"Line 100 100 300 200"}},
        {"SC twice leaves the pen in place",
         "IP0,0,10000,10000;SC0,2,0,2,2;PU5,5;SC0,4,0,4,2;PD0,0;",
         {"Line 5 5 0 0"}, {"Line 10 10 0 0"}},
        {"IN ends scale, window and PR", "SC0,2,0,2,2;IW0,0,9,9;PR;IN;PU5,5;PD7,7;",
         {"Line 10 10 18 18"}, {"Line 5 5 7 7"}},
        {"DF ends scale and window", "SC0,2,0,2,2;IW0,0,1,1;DF;PU5,5;PD7,7;",
         {}, {"Line 5 5 7 7"}},
        {"DF leaves the pen on its place", "SC0,2,0,2,2;PU5,5;DF;PD7,7;",
         {"Line 10 10 14 14"}, {"Line 613 531 7 7"}},
        {"DF ends PR", "PU5,5;PR;DF;PD1,1;", {"Line 5 5 6 6"}, {"Line 5 5 1 1"}},
        {"RO180 leaves the points unturned", "PS400,200;RO180;IP;SC0,1,0,1;PU0,0;PD1,1;",
         {"Line 0 0 1 1"}, {"Line 0 0 400 200"}},
        {"three numbers of IP are P1 alone", "IP0,0,100,100;IP50,50,9;SC0,1,0,1;PU0,0;PD1,1;",
         {"Line 0 0 1 1"}, {"Line 50 50 150 150"}},
        {"isotropic and mirrored", "IP0,0,1000,500;SC1,0,0,1,1;PU0,0;PD1,1;",
         {"Line 1000 0 0 500"}, {"Line 750 0 250 500"}},
        {"RO within a page", "PS400,200;PD10,20;RO90;PU0,0;PD10,20;RO270;PU0,0;PD10,20;",
         {"Line 0 0 10 20", "Line 0 0 10 20", "Line 0 0 10 20"},
         {"Line 0 0 10 20", "Line 400 0 380 10", "Line 0 200 20 190"}},
        {"RO leaves the pen on its place; the next page is turned", "PS400,200;PD10,20;RO180;PD0,0;PG;PU0,0;PD1,1;",
         {"Line 0 0 10 20", "Line 10 20 0 0", "Line 0 0 1 1"},
         {"Line 0 0 10 20", "Line 10 20 400 200", "Line 0 0 1 1"}},
        {"IN ends RO within a page", "PS400,200;RO90;PD10,20;IN;PU0,0;PD10,20;",
         {"Line 0 0 10 20", "Line 0 0 10 20"},
         {"Line 0 0 10 20", "Line 0 400 20 390"}},
        {"a short IW", "PU1,2,3,4;IW0,0,1;PD5,5;",
         {}, {"Line 3 4 5 5"}},
    });
    // clang-format on
    Reading roll = Reading::Plotter();
    roll.sheet = {{0.0, 0.0}, {800.0, 400.0}, {6.0, 6.0}};
    EXPECT_EQ(OnlyOf("SC0,1,0,1;PD1,1;", roll, "Line"), Lines{"Line 0 0 800 400"});
}

TEST(Reading, ShapesTurnedWithinAPage) {
    // clang-format off
    ExpectReadings("Circle Arc Rectangle FilledRectangle FilledPolygon Polyline FilledPolyPolygon", {
        {"RO90", "PS400,200;PD10,20;RO90;PU50,60;CI9;PD;AA50,50,90;PU50,60;RA70,90;EA70,90;PM0;"
                 "PD60,60,60,70;PM1;PU61,61;PD62,61,62,62;PM2;FP;",
         {"Circle 50 60 9", "Arc 50 50 10 1.57079633 1.57079632", "FilledRectangle 50 60 70 90",
          "Rectangle 50 60 70 90",
          "FilledPolyPolygon 2 4 3 : 50,60 60,60 60,70 50,60 61,61 62,61 62,62"},
         {"Circle 340 50 9", "Arc 350 50 10 3.14159265 1.57079632",
          "FilledPolygon 5 : 340,50 340,70 310,70 310,50 340,50",
          "Polyline 5 : 340,50 340,70 310,70 310,50 340,50",
          "FilledPolyPolygon 2 4 4 : 340,50 340,60 330,60 340,50 339,61 339,62 338,62 339,61"}},
    });
    // clang-format on
}

// What has no place, and pictures, which lie on the sheet.
TEST(Reading, TheRestIsNotTurned) {
    const std::string rest =
        "SP2;PW0.5;LT2,10,1;UL1,8,4;LT1;LT;LA2,4;MC1,168;RF3,2,2,0,1,1,0;FT11,3;RA9,9;FT;FR40;"
        "LB-\3WU1;\033%0A\033*t1016R\033*r8S\033*b1W\xF0\033*b1W\xAA\033*b1W\x0F\033%0B";
    const std::string kinds =
        "SetPen SetColor SetLineWidth SetLineType SetLineStyle SetPatternLength SetLineAttributes "
        "SetDrawMode DefineFillPattern SetFillType SetFrameOffset BeginLabelExtent EndLabelExtent "
        "Raster";
    const Lines straight = OnlyOf("PS400,400;PD1,2;" + rest, Reading::Plotter(), kinds);
    EXPECT_EQ(straight.size(), 24U);
    EXPECT_EQ(OnlyOf("PS400,400;PD1,2;RO180;" + rest, Reading::Plotter(), kinds), straight);
    // Whoever drops the operations reads the same pages.
    const std::string plot =
        rest + "PU;CI9;AA9,0,90;EA9,9;PM0;PD9,0,9,9;PM2;FP;EP;PM0;PD9,0,9,9;PM1;PD7,7;PM2;FP;PG;" +
        rest;
    NullBuilder dropped(plot);
    dropped.EnterDocumentMode();
    EXPECT_EQ("result " + std::to_string(dropped.Interpret()) + '\n',
              Ops(plot).substr(Ops(plot).rfind("result")));
}

// A hyphen is one stroke in the middle of its letter: of 0.3 x 0.3 cm from 20, 60 to 100, 60.
TEST(Reading, Labels) {
    const std::string size = "SI0.3,0.3;";
    // clang-format off
    ExpectReadings("Line", {
        {"cells of one and a half widths", size + "LB--\3",
         {"Line 20 60 100 60", "Line 188 60 268 60"}, {"Line 20 60 100 60", "Line 200 60 280 60"}},
        {"LF goes down", size + "LB-\n-\3",
         {"Line 20 60 100 60", "Line 67 60 148 60"},
         {"Line 20 60 100 60", "Line 200 -180 280 -180"}},
        {"CR goes back over labels", size + "LB-\3LB-\r\n-\3",
         {"Line 20 60 100 60", "Line 188 60 268 60", "Line 67 60 148 60"},
         {"Line 20 60 100 60", "Line 200 60 280 60", "Line 20 -180 100 -180"}},
        {"a closing LF keeps its move", size + "LB-\n\3LB-\3",
         {"Line 20 60 100 60", "Line 188 60 268 60"},
         {"Line 20 60 100 60", "Line 200 -180 280 -180"}},
        {"a backspace overprints", size + "LB-\b-\3",
         {"Line 20 60 100 60", "Line 356 60 436 60"}, {"Line 20 60 100 60", "Line 20 60 100 60"}},
        {"tabs count from the carriage-return point", size + "LB-\3LB\t-\3",
         {"Line 20 60 100 60", "Line 356 60 436 60"},
         {"Line 20 60 100 60", "Line 1460 60 1540 60"}},
        {"a vertical tab goes up", size + "LB-\v-\3",
         {"Line 20 60 100 60", "Line 356 60 436 60"},
         {"Line 20 60 100 60", "Line 200 300 280 300"}},
        {"DV1 goes down", size + "DV1;LB--\3",
         {"Line 20 60 100 60", "Line -148 60 -67 60"},
         {"Line 20 60 100 60", "Line 20 -180 100 -180"}},
        {"centred by the letters, the pen stays", size + "PU500,0;LO4;LB--\3PD500,100;",
         {"Line 352 60 432 60", "Line 520 60 600 60", "Line 668 0 500 100"},
         {"Line 370 60 450 60", "Line 550 60 630 60", "Line 500 0 500 100"}},
        {"LO11 keeps half a character away", size + "LO11;LB-\3",
         {"Line 20 60 100 60"}, {"Line 80 120 160 120"}},
        {"CP counts lines upwards", size + "CP1,2;LB-\3",
         {"Line 428 60 508 60"}, {"Line 200 540 280 540"}},
        {"CP alone is CR and LF", size + "LB-\3CP;LB-\3",
         {"Line 20 60 100 60", "Line 67 60 148 60"}, {"Line 20 60 100 60", "Line 20 -180 100 -180"}},
        {"a later scale leaves the letters alone", size + "SC0,4,0,2,2;LB-\3",
         {"Line 80 120 400 120"}, {"Line 20 60 100 60"}},
        {"SI alone", "SI;LB-\3", {"Line 33 200 166 200"}, {"Line 18 75 94 75"}},
        {"DI alone", size + "DI0,1;DI;LB-\3", {"Line -60 20 -60 100"}, {"Line 20 60 100 60"}},
        {"ES alone", size + "ES1;ES;LB--\3",
         {"Line 20 60 100 60", "Line 356 60 436 60"}, {"Line 20 60 100 60", "Line 200 60 280 60"}},
        {"SR follows P1 and P2", "IP0,0,1000,1000;SR12,12;IP0,0,500,500;LB-\3",
         {"Line 20 60 100 60"}, {"Line 10 30 50 30"}},
    });
    // clang-format on
    // Set 36 has a letter of many strokes where others have the backslash: AD waits for SA.
    const std::string letter = size + "AD1,36;LB\\\3";
    EXPECT_EQ(OnlyOf(letter, {}, "Line").size(), 17U);
    EXPECT_EQ(OnlyOf(letter, Reading::Plotter(), "Line"), Lines{"Line 100 0 20 120"});
}

TEST(Reading, Areas) {
    const std::string kinds =
        "Line Polyline FilledPolygon FilledPolyPolygon Rectangle "
        "FilledRectangle SetColor SetFillType";
    // clang-format off
    ExpectReadings(kinds, {
        {"every sub-polygon is closed", "PM0;PD0,9,9,9;PM1;PU20,0;PD20,9,29,9;PM2;FP;",
         {"FilledPolyPolygon 2 4 3 : 0,0 0,9 9,9 0,0 20,0 20,9 29,9"},
         {"FilledPolyPolygon 2 4 4 : 0,0 0,9 9,9 0,0 20,0 20,9 29,9 20,0"}},
        {"every edge", "PU5,0;PM0;PD5,9;PU9,9;PD9,0;PM1;PU20,0;PD20,9,29,9;PM2;EP;",
         {"Polyline 2 : 5,0 5,9"},
         {"Polyline 2 : 5,0 5,9", "Polyline 3 : 9,9 9,0 5,0", "Polyline 4 : 20,0 20,9 29,9 20,0"}},
        {"RA hatched", "FT3,4,0;RA10,10;", {"FilledRectangle 0 0 10 10"},
         {"Line 0 0 10 0", "Line 0 4 10 4", "Line 0 8 10 8"}},
        {"RR hatched both ways from the anchor", "FT4,6,0;AC3,3;RR10,10;",
         {"FilledRectangle 0 0 10 10"},
         {"Line 0 3 10 3", "Line 0 9 10 9", "Line 3 0 3 10", "Line 9 0 9 10"}},
        {"hatches end at the window", "FT3,4,0;IW5,0,20,6;RA10,10;", {"FilledRectangle 0 0 10 10"},
         {"Line 5 0 10 0", "Line 5 4 10 4"}},
        {"areas end at the window", "IW5,0,20,6;RA10,10;",
         {"FilledRectangle 0 0 10 10"},
         {"FilledPolygon 5 : 10,6 5,6 5,0 10,0 10,6"}},
        {"colours are shaded", "SP2;FT10,20;RA10,10;",
         {"SetColor 0x0000FF", "FilledRectangle 0 0 10 10"},
         {"SetColor 0x0000FF", "SetColor 0xCCCCFF",
          "FilledPolygon 5 : 0,0 10,0 10,10 0,10 0,0", "SetColor 0x0000FF"}},
        {"shading 0 is nothing", "SP2;FT10,0;RR10,10;",
         {"SetColor 0x0000FF", "FilledRectangle 0 0 10 10"}, {"SetColor 0x0000FF"}},
        {"RA with a pattern", "FT11,2;RA10,10;",
         {"Rectangle 0 0 10 10"},
         {"SetFillType 3 2", "FilledPolygon 5 : 0,0 10,0 10,10 0,10 0,0", "SetFillType 0 0"}},
        {"WG hatched", "FT3,4,0;WG10,0,90;",
         {"FilledPolygon 26 : 0,0 10,0 9,0 9,1 9,2 9,2 9,3 9,4 8,4 8,5 8,5 7,6 7,6 6,7 6,7 5,8 5,8 4,8 3,9 3,9 2,9 1,9 1,9 0,9 0,10 0,0"},
         {"Line 0 0 9 0", "Line 0 4 8 4", "Line 0 8 4 8"}},
        {"WG by its chord", "WG100,0,90,90;",
         {"FilledPolygon 26 : 0,0 100,0 99,6 99,13 97,20 96,27 93,34 91,40 88,46 84,52 80,58 76,64 71,69 66,74 61,78 55,82 50,86 43,89 37,92 30,95 24,97 17,98 10,99 3,99 0,100 0,0"},
         {"FilledPolygon 4 : 0,0 100,0 0,100 0,0"}},
        {"PE's rectangles hatched", "FT3,4,0;PE9\xBF\xBF\xD3\xD3;",
         {"FilledRectangle 0 0 10 10"},
         {"Line 0 0 10 0", "Line 0 4 10 4", "Line 0 8 10 8"}},
        {"FP1 fills what is wound around twice", "PM0;PD0,9,9,9,9,0;PM1;PU3,3;PD3,6,6,6,6,3;PM2;FP1;FP;",
         {"FilledPolyPolygon 2 5 4 : 0,0 0,9 9,9 9,0 0,0 3,3 3,6 6,6 6,3",
          "FilledPolyPolygon 2 5 4 : 0,0 0,9 9,9 9,0 0,0 3,3 3,6 6,6 6,3"},
         {"FilledPolygon 5 : 9,9 0,9 0,0 9,0 9,9",
          "FilledPolyPolygon 2 5 5 : 0,0 0,9 9,9 9,0 0,0 3,3 3,6 6,6 6,3 3,3"}},
        {"FP1 hatches by its rule, too", "FT3,4,0;AC1,1;PM0;PD0,9,9,9,9,0;PM1;PU3,3;PD3,6,6,6,6,3;PM2;FP1;",
         {"Line 0 4 3 4", "Line 6 4 9 4", "Line 0 8 9 8"},
         {"Line 0 1 9 1", "Line 0 5 9 5"}},
        {"EW", "EW10,0,4;",
         {},
         {"Polyline 5 : 0,0 10,0 9,0 9,0 0,0"}},
        {"EA in the window, then EP", "IW0,0,20,6;EA10,10;EP;",
         {"Rectangle 0 0 10 10"},
         {"Line 0 0 10 0", "Line 10 0 10 6", "Line 0 6 0 0", "Line 0 0 10 0", "Line 10 0 10 6",
          "Line 0 6 0 0"}},
    });
    // clang-format on
}

TEST(Reading, LinesAndPens) {
    // clang-format off
    ExpectReadings("SetLineType SetLineStyle", {
        {"DF forgets UL", "UL1,50,50;DF;LT1;",
         {"SetLineType 2 : 50 50"}, {"SetLineType 2 : 0 493"}},
        {"UL without any length", "UL2,0,0;LT2;",
         {"SetLineType 2 : 0 0"}, {"SetLineType 2 : 246 247"}},
        {"dots only", "LT0;",
         {"SetLineStyle 2"}, {"SetLineType 2 : 0 30000"}},
        {"a length in millimetres", "LT2,10,1;",
         {"SetLineStyle 1"},
         {"SetLineType 2 : 200 200"}},
        {"percent of the distance", "IP0,0,3000,4000;LT3,2;LT;LT99;",
         {"SetLineStyle 1", "SetLineStyle 0", "SetLineStyle -32768"},
         {"SetLineType 2 : 70 30", "SetLineStyle 0", "SetLineType 2 : 70 30"}},
        {"negative types fit each segment", "LT-2,10,1;PD1000,0;PU0,0;PD1000,0;PD1000,300;",
         {"SetLineStyle 1"},
         {"SetLineType 2 : 200 200", "SetLineType 2 : 167 166", "SetLineType 2 : 150 150"}},
        {"LT99 brings adaptive types back", "LT-2,10,1;LT;LT99;PD300,0;",
         {"SetLineStyle 1", "SetLineStyle 0", "SetLineStyle -32768"},
         {"SetLineType 2 : 200 200", "SetLineStyle 0", "SetLineType 2 : 200 200",
          "SetLineType 2 : 150 150"}},
        {"UL", "UL2,30,10;LT2,4,1;",
         {"SetLineType 2 : 120 40"},
         {"SetLineType 2 : 120 40"}},
        {"behind a label", "LT2,10,1;LB-\3",
         {"SetLineStyle 1", "SetLineStyle 0", "SetLineStyle 1"},
         {"SetLineType 2 : 200 200", "SetLineStyle 0", "SetLineType 2 : 200 200"}},
    });
    ExpectReadings("SetLineWidth", {
        {"relative widths", "IP0,0,3000,4000;WU1;PW2;", {"SetLineWidth 10"},
         {"SetLineWidth 14", "SetLineWidth 5", "SetLineWidth 100"}},
        {"pens are 0.35 mm wide", "PW1;PW;PW1;WU0;PW1;IN;", {"SetLineWidth 40", "SetLineWidth 0", "SetLineWidth 40"},
         {"SetLineWidth 14", "SetLineWidth 40", "SetLineWidth 14", "SetLineWidth 40",
          "SetLineWidth 14", "SetLineWidth 40", "SetLineWidth 0", "SetLineWidth 14"}},
        {"DF leaves the width", "PW1;DF;", {"SetLineWidth 40", "SetLineWidth 0"},
         {"SetLineWidth 14", "SetLineWidth 40", "SetLineWidth 0", "SetLineWidth 40"}},
        {"a stroke weight is no width", "SD6,2;LB\3", {"SetLineWidth 2", "SetLineWidth 0"},
         {"SetLineWidth 14", "SetLineWidth 14"}},
    });
    ExpectReadings("EndPage SetPen SetColor SetLineWidth SetLineType", {
        {"behind a page", "SP2;PW1;LT2,10,1;PD9,9;PG;",
         {"SetColor 0x0000FF", "SetLineWidth 0", "SetPen 2", "SetLineWidth 40", "EndPage 1",
          "SetColor 0x000000", "SetLineWidth 0"},
         {"SetLineWidth 14", "SetColor 0x0000FF", "SetLineWidth 14", "SetPen 2", "SetLineWidth 40",
          "SetLineType 2 : 200 200", "EndPage 1", "SetColor 0x000000", "SetLineWidth 0",
          "SetLineWidth 40", "SetColor 0x0000FF", "SetLineType 2 : 200 200", "SetLineWidth 40",
          "SetPen 2"}},
    });
    // clang-format on
}

TEST(Reading, ArcsAndCurves) {
    // clang-format off
    ExpectReadings("Line Polyline Arc Circle", {
        {"an arc with the pen up", "PU10,0;AA0,0,90;PD0,0;",
         {"Line 10 0 10 0", "Arc 0 0 10 0.0 1.57079632", "Line 0 10 0 10", "Line 0 10 0 0"},
         {"Line 0 10 0 0"}},
        {"AR of nothing", "PD;AR10,0,0;",
         {"Line 0 0 0 0", "Line 0 0 0 0", "Arc 10 0 10 3.14159265 0.0", "Line 0 0 0 0"},
         {"Line 0 0 0 0"}},
        {"three points with the pen up", "AT5,5,10,0;PD20,0;",
         {"Arc 5 0 5 3.14159265 -3.14159265", "Line 10 0 10 0", "Line 10 0 20 0"},
         {"Line 10 0 20 0"}},
        {"more than a turn", "PU10,0;PD;AA0,0,450;PD0,0;",
         {"Line 10 0 10 0", "Line 10 0 10 0", "Arc 0 0 10 0.0 6.2831853", "Line 10 0 0 10",
          "Line 0 10 0 0"},
         {"Line 10 0 10 0", "Line 10 0 10 0", "Arc 0 0 10 0.0 6.2831853", "Line 10 0 10 0",
          "Line 10 0 0 0"}},
        {"chord angles", "CI100,90;CI100,100;CI100,5;PD100,0;AA0,0,90,45;",
         {"Circle 0 0 100", "Circle 0 0 100", "Circle 0 0 100", "Line 0 0 100 0",
          "Line 100 0 100 0", "Arc 0 0 100 0.0 1.57079632", "Line 0 100 0 100"},
         {"Polyline 5 : 100,0 0,100 -100,0 0,-100 100,0",
          "Polyline 5 : 100,0 0,100 -100,0 0,-100 100,0", "Circle 0 0 100", "Line 0 0 100 0",
          "Line 100 0 100 0", "Polyline 3 : 100,0 70,70 0,100", "Line 0 100 0 100"}},
        {"CT1: the chord's middle lies 100 off the arc", "CT1;CI100,100;CT;CI100,180;CI100,100;",
         {"Circle 0 0 100", "Circle 0 0 100", "Circle 0 0 100"},
         {"Polyline 3 : 100,0 -100,0 100,0", "Polyline 3 : 100,0 -100,0 100,0",
          "Polyline 5 : 100,0 0,100 -100,0 0,-100 100,0"}},
        {"three points by chords", "PD;RT100,100,200,0,90;",
         {"Line 0 0 0 0", "Arc 100 0 100 3.14159265 -3.14159265", "Line 200 0 200 0"},
         {"Line 0 0 0 0", "Polyline 3 : 0,0 100,100 200,0", "Line 200 0 200 0"}},
        {"an adaptive type goes along chords", "LT-2,10,1;CI100,90;",
         {"Circle 0 0 100"},
         {"Line 100 0 0 100", "Line 0 100 -100 0", "Line -100 0 0 -100", "Line 0 -100 100 0"}},
        {"a curve with the pen up", "BZ0,12,12,12,12,0;PD20,0;",
         {"Polyline 12 : 0,0 0,2 0,4 1,6 3,8 4,8 6,9 7,8 8,8 10,6 11,4 12,0", "Line 12 0 20 0"},
         {"Line 12 0 20 0"}},
        {"a curve has twelve steps", "PD;BZ0,12,12,12,12,0;",
         {"Line 0 0 0 0", "Polyline 12 : 0,0 0,2 0,4 1,6 3,8 4,8 6,9 7,8 8,8 10,6 11,4 12,0"},
         {"Line 0 0 0 0",
          "Polyline 13 : 0,0 0,2 0,4 1,6 3,8 4,8 6,9 7,8 8,8 10,6 11,4 11,2 12,0"}},
        
    });
    // clang-format on
    EXPECT_EQ(OnlyOf("PM0;CI100,90;PM2;EP;", Reading::Plotter(), "Polyline"),
              Lines{"Polyline 5 : 100,0 0,100 -100,0 0,-100 100,0"});
    EXPECT_EQ(OnlyOf("IW-9,0,9,1;CI5;", {}, "Circle").size(), 1U);
    EXPECT_EQ(OnlyOf("IW-9,0,9,1;CI5;", Reading::Plotter(), "Circle Line").size(), 18U);
    // Each plot fills a run and more; the second run begins where the first one ends.
    std::string curves = "PD;BZ";
    for (int i = 0; i < 10; ++i) curves += "1,1,2,2,3,3,";
    std::string encoded = "PE";  // 300 steps to the right
    for (int i = 0; i < 300; ++i) encoded += "\xC1\xBF";
    for (const std::string& plot : {curves + ";", encoded + ";"}) {
        const auto joined = [&plot](const Reading& reading) {
            const Lines runs = OnlyOf(plot, reading, "Polyline");
            if (runs.size() != 2) return std::string("not two runs");
            const std::string end = runs[0].substr(runs[0].rfind(' '));
            return std::string(runs[1].find(" :" + end + " ") == std::string::npos ? "no" : "yes");
        };
        EXPECT_EQ(joined({}), "no") << plot;
        EXPECT_EQ(joined(Reading::Plotter()), "yes") << plot;
    }
}

// A row of eight dots at 1016 dots an inch.
std::string DotRow(const std::string& byte) { return "\033*b1W" + byte; }

TEST(Reading, Pictures) {
    const std::string start = "@PJL ENTER LANGUAGE=HPGL2\n\033%0A\033*t1016R\033*r8S";
    const std::string rows = DotRow("\xF0") + DotRow("\x0F") + DotRow("\xAA");
    // clang-format off
    ExpectReadings("Raster EndPage", {
        {"ESC*rC ends a picture", start + rows + "\033*rC" + rows,
         {"Raster 0 0 9 -5 0 0 8x6x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000,AA000000,0F000000,F0000000"},
         {"Raster 0 11206 8 11203 0 0 8x3x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000",
          "Raster 0 11203 8 11200 0 0 8x3x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000"}},
        {"ESC E ends a picture", start + rows + "\033E\033*t1016R" + rows,
         {"Raster 0 0 9 -2 0 0 8x3x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000"},
         {"Raster 0 11206 8 11203 0 0 8x3x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000",
          "EndPage 1",
          "Raster 0 11206 8 11203 0 0 8x3x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000"}},
        {"raster operation 51", start + "\033*l51O" + rows,
         {},
         {"Raster 0 11206 8 11203 0 204 8x3x1 colors=000000,FFFFFF rows=AA000000,0F000000,F0000000"}},
        {"a PCL job", "@PJL ENTER LANGUAGE=PCL\n\033%0A\033*t1016R\033*r8S" + rows,
         {},
         {"Raster 0 11206 8 11203 0 0 8x3x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000"}},
        {"along the longer side", "PS40,20;" + start + rows,
         {"Raster 0 0 4 9 0 0 3x8x1 colors=FFFFFF,000000 rows=A0000000,80000000,A0000000,80000000,60000000,40000000,60000000,40000000"},
         {"Raster 0 0 3 8 0 0 3x8x1 colors=FFFFFF,000000 rows=A0000000,80000000,A0000000,80000000,60000000,40000000,60000000,40000000"}},
        {"turned back by RO90", "PS20,40;RO90;" + start + rows,
         {"Raster 0 0 4 9 0 0 3x8x1 colors=FFFFFF,000000 rows=A0000000,80000000,A0000000,80000000,60000000,40000000,60000000,40000000"},
         {"Raster 20 40 17 32 0 0 3x8x1 colors=FFFFFF,000000 rows=40000000,C0000000,40000000,C0000000,20000000,A0000000,20000000,A0000000"}},
        {"turned over by RO180", "PS20,40;RO180;" + start + rows,
         {"Raster 0 0 9 -2 0 0 8x3x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000"},
         {"Raster 40 0 32 3 0 0 8x3x1 colors=FFFFFF,000000 rows=0F000000,F0000000,55000000"}},
        {"behind the pen", "PS900,800;PU254,508;\033%1A\033*t1016R\033*r8S" + rows,
         {"Raster 254 508 258 517 0 0 3x8x1 colors=FFFFFF,000000 rows=A0000000,80000000,A0000000,80000000,60000000,40000000,60000000,40000000"},
         {"Raster 254 508 257 516 0 0 3x8x1 colors=FFFFFF,000000 rows=A0000000,80000000,A0000000,80000000,60000000,40000000,60000000,40000000"}},
        {"as wide as the widest row", "\033*t1016R\033*b2M\033*b3W\x01\xF0\x01\033*b2W\xFD\x0F\033*b0M" + rows,
         {},
         {"Raster 0 11206 32 11201 0 0 32x5x1 colors=FFFFFF,000000 rows=AA000000,0F000000,F0000000,0F0F0F0F,F0010000"}},
    });
    // Pixels of four bits, three a row; planes of red, green and blue; planes of four inks.
    ExpectReadings("Raster", {
        {"four bits turned over", "PS20,40;RO180;\033%0A\033*t1016R\033*r3S\033*v6W" + std::string("\0\1\4\4\4\4", 6) + "\033*b2W\x12\x30" + "\033*b2W\x45\x60" + "\033*b2W\x78\x90",
         {"Raster 0 0 4 -2 0 0 3x3x4 colors=000000,0000FF,00FF00,00FFFF,FF0000,FF00FF,FFFF00,FFFFFF,000000,0000FF,00FF00,00FFFF,FF0000,FF00FF,FFFF00,000000 rows=78900000,45600000,12300000"},
         {"Raster 40 0 37 3 0 0 3x3x4 colors=000000,0000FF,00FF00,00FFFF,FF0000,FF00FF,FFFF00,FFFFFF,000000,0000FF,00FF00,00FFFF,FF0000,FF00FF,FFFF00,000000 rows=32100000,65400000,98700000"}},
    });
    const auto planes = [](const std::string& plot) {
        const Lines lines = OnlyOf(plot, Reading::Plotter(), "Raster");
        return lines.empty() ? std::string() : lines[0].substr(lines[0].find("colors=") + 7, 20) + lines[0].substr(lines[0].find(" rows="));
    };
    const auto plane = [](const std::string& byte) { return "\033*b1V" + byte; };
    const std::string light = plane("\xF0") + plane("\x3C") + DotRow("\x0F");
    EXPECT_EQ(planes("\033*r3U\033*t1016R\033*r8S\033*r3T" + light + light + light),
              "000000,0000FF,00FF00 rows=0101030306060404,0101030306060404,0101030306060404");
    const std::string ink = plane("\x0F") + plane("\xF0") + plane("\xC0") + DotRow("\xAA");
    EXPECT_EQ(planes("\033*r-4U\033*t1016R\033*r8S" + ink + ink + ink),
              "FFFFFF,000000,FFFF00 rows=0E060A0209010901,0E060A0209010901,0E060A0209010901");
    const std::string mono = "PC0,0,0,255;PC1,255,0,0;\033*r1U\033*t1016R\033*r8S" + rows;
    EXPECT_EQ(planes(mono), "FFFFFF,000000 rows=A rows=AA000000,0F000000,F0000000");
    ExpectReadings("Line", {
        {"ESC E leads to the raster language", "PD5,5;\033EPD6,6;\033%0BPD7,7;",
         {"Line 0 0 5 5", "Line 5 5 6 6", "Line 6 6 7 7"},
         {"Line 0 0 5 5", "Line 0 0 7 7"}},
        {"so do the escapes of fonts", "\033(8UPD6,6;\033%0BPD7,7;",
         {"Line 0 0 6 6", "Line 6 6 7 7"}, {"Line 0 0 7 7"}},
        {"the pen stands below the picture", "PS40,20;" + start + rows + "\033%1BPD9,9;",
         {"Line 3 0 9 9"}, {"Line 3 0 9 9"}},
    });
    // clang-format on
}

}  // namespace
}  // namespace qm
