// The two readings of one plot: what the engine makes of it and what a plotter draws.
#include "interpreter/reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

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
        {"a short IW", "PU1,2,3,4;IW0,0,1;PD5,5;",
         {}, {"Line 3 4 5 5"}},
    });
    // clang-format on
    Reading roll = Reading::Plotter();
    roll.sheet = {{0.0, 0.0}, {800.0, 400.0}, {6.0, 6.0}};
    EXPECT_EQ(OnlyOf("SC0,1,0,1;PD1,1;", roll, "Line"), Lines{"Line 0 0 800 400"});
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

}  // namespace
}  // namespace qm
