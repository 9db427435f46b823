// Raster mode as whole plots: entering and leaving, every escape group, picture set-up, placement.
#include <gtest/gtest.h>

#include "raster/escape_table.h"
#include "tests/interpreter/ops_table.h"
#include "tests/interpreter/plot_reader.h"
#include "tests/raster/raster_plots.h"

namespace qm {
namespace {

const std::string kWhiteBlack = " colors=FFFFFF,000000 ";

// The line of the picture kEight in the rectangle `corners`.
std::string Eight(const std::string& corners, int rop = 0) {
    return "Raster " + corners + " 0 " + std::to_string(rop) + " 8x3x1" + kWhiteBlack + kStored;
}

TEST(RasterMode, EnterAndLeave) {
    const std::string upright = Eight("0 0 9 -2");
    // clang-format off
    ExpectOperations({
        {"ESC%0B", kStart + kEight + "\033%0BPD;", {upright, "Line 0 0 0 0"}},
        {"ESC%B", kStart + kEight + "\033%BPD;", {upright, "Line 0 0 0 0"}},
        {"universal exit", kStart + kEight + "\033%-12345XPD;", {upright, "Line 0 0 0 0"}},
        {"universal exit, small x", kStart + kEight + "\033%-12345xPD;", {upright, "Line 0 0 0 0"}},
        {"another value is no exit", kStart + "\033%-1X\033%0APD;" + kEight, {upright}},
        {"from ESC*", kJob + "\033*t1016R" + kEight + "\033%0BPD;", {upright, "Line 0 0 0 0"}},
        {"from ESC&", kJob + "\033&a0H\033*t1016R" + kEight, {upright}},
        {"ESC* and a blank is a device control", kJob + "\033* \033%0A:PD;", {"Line 0 0 0 0"}},
        {"ESC p and ESC c do nothing", kJob + "\033pPD;\033cPD;", {"Line 0 0 0 0", "Line 0 0 0 0"}},
        {"text and unknown sequences are ignored",
         kStart + "PD;IN\033=\0339\033&k2W\033&f1X\033(8U\033(@\033(s3T" + kEight + "PD;",
         {upright}},
        {"ESC breaks a sequence off", kStart + "\033*r5\033\033*\033*r8s3T" + kRows, {upright}},
        {"line ends inside sequences",
         kStart + "\033\n*r8s\r\n3T\033*b1\nW\xF0\033*b1W\x0F\033*b1W\xAA", {upright}},
        {"a fraction is read over", kStart + "\033*r8.75s3.0T" + kRows, {upright}},
        {"open pictures are finished on leaving", kStart + "\033*r8S" + kRows + "\033%0B",
         {upright}},
        {"open pictures are finished at the end of input", kStart + "\033*r8S" + kRows, {upright}},
        {"ESC*rC is no end",
         kStart + "\033*r8S" + Row("\xF0") + "\033*rC" + Row("\x0F") + Row("\xAA"), {upright}},
    });
    // clang-format on
}

TEST(RasterMode, CountedDataHidesEscapes) {
    const std::string exit = "\033%0BPD;";
    ASSERT_EQ(exit.size(), 7U);
    std::vector<OpsRow> rows;
    for (const std::string command :
         {"*b7W", "*b7V", "*c7W", "*o7W", "&l7W", "&p7X", "&b7W", "&n7W", "(f7W", "(s7W", ")s7W",
          ")f7W", "*v7W", "*x7W", "&z7W", "*b4m7W", "*b5m7W", "*b9m7W"}) {
        rows.push_back(
            {command, "\033%0A\033" + command + exit + "\033%0BPU;PD;", {"Line 0 0 0 0"}});
    }
    for (const std::string command : {"*p7W", "*r7W", "&k7W", "&p7W", "*b-7W", "*c-7W"}) {
        rows.push_back({command, "\033%0A\033" + command + exit + "PU;", {"Line 0 0 0 0"}});
    }
    ExpectOperations(rows);
}

TEST(RasterMode, PositionsAndTurns) {
    const auto quarter = [](const std::string& corners, const std::string& rows) {
        return "Raster " + corners + " 0 0 3x8x1" + kWhiteBlack + rows;
    };
    // Column x of the rows F0, 0F, AA, bit 7 first.
    const std::string columns =
        "rows=A0000000,80000000,A0000000,80000000,60000000,40000000,"
        "60000000,40000000";
    const std::string plain = "\033%0A\033*t1016R" + kEight;
    // clang-format off
    ExpectOperations({
        {"no job header: half a turn", plain,
         {"Raster 0 0 -7 4 0 0 8x3x1" + kWhiteBlack + "rows=0F000000,F0000000,55000000"}},
        {"landscape without RO: the turn of 90 and the sign of 270", "PS200,100;" + plain,
         {quarter("0 0 4 9", columns)}},
        {"RO 90 in portrait", "PS100,200;RO90;" + plain, {quarter("0 0 4 9", columns)}},
        {"RO 90 in landscape: from the top of the page", "PS200,100;RO90;\033*t300R" + kEight,
         {"Raster 0 200 28 191 0 0 8x3x1" + kWhiteBlack + kStored}},
        {"position A is x, B is y downward", kStart + "\033*b7Y\033*p5X" + kEight,
         {Eight("7 -5 16 -7")}},
        {"RO 270 turns no picture", "PS100,200;RO270;\033%0A\033*t1016R" + kEight,
         {Eight("0 0 9 -2")}},
        {"RO 90 in portrait exchanges them",
         "PS100,200;RO90;\033%0A\033*t1016R\033*b7Y\033*p5X" + kEight,
         {quarter("5 7 9 16", columns)}},
        {"relative moves",
         kStart + "\033*b7Y\033*b-3Y\033*b+1Y\033*p5X\033*p-2X\033*p+2y+1Y" + kEight,
         {Eight("8 -3 17 -5")}},
        {"decipoints", kStart + "\033&a720H\033&a-72v+360V" + kEight,
         {Eight("406 -1016 415 -1018")}},
        {"units", kStart + "\033&u508D\033*p5x6Y" + kEight, {Eight("12 -10 21 -12")}},
        {"units of 0 are dots again", kStart + "\033&u508d0d-1D\033*p5x6Y" + kEight,
         {Eight("6 -5 15 -7")}},
        {"the position goes along with the resolution",
         kJob + "\033%0A\033*t100R\033*p50X\033*t1016R" + kEight, {Eight("0 -508 9 -510")}},
        {"pictures follow one another", kStart + kEight + kRows,
         {Eight("0 0 9 -2"), Eight("0 -3 9 -5")}},
        {"along x when turned", "PS200,100;" + plain + kRows,
         {quarter("0 0 4 9", columns), quarter("3 0 7 9", columns)}},
        {"the raster language keeps its position", kStart + kEight + "\033%0BPD5,5;\033%0A" + kRows,
         {Eight("0 0 9 -2"), "Line 0 0 5 5", Eight("0 -3 9 -5")}},
        {"ESC%1A starts at the pen", kJob + "PU20,30;\033%1A\033*t1016R" + kEight,
         {Eight("20 30 29 28")}},
        {"the last digit decides", kJob + "PU20,30;\033%10A\033*t1016R" + kEight, {Eight("0 0 9 -2")}},
        {"in plotter units", kJob + "IP0,0,100,100;SC0,10,0,10;PU2,3;\033%1A\033*t1016R" + kEight,
         {Eight("20 30 29 28")}},
        {"ESC%1B moves the pen behind the picture", kStart + "\033*b7Y" + kEight + "\033%1BPD0,0",
         {Eight("7 0 16 -2"), "Line 7 -3 0 0"}},
        {"ESC%2B does not", kStart + "\033*b7Y" + kEight + "\033%2BPD0,0",
         {Eight("7 0 16 -2"), "Line 0 0 0 0"}},
        {"behind an open picture", kStart + "\033*r8S" + kRows + "\033%1BPD;",
         {Eight("0 0 9 -2"), "Line 0 -3 0 -3"}},
        {"half units round up", "\033%0A\033*t96R\033*p774X\033%1BPD;", {"Line 0 -8191 0 -8191"}},
        {"in user units",
         kJob + "IP0,0,100,100;SC0,10,0,10;\033%0A\033*t1016R\033*b20y30Y\033*p-40X\033%1BPD0,0",
         {"Line 30 40 0 0"}},
        {"a new plot size moves again, in dots of the job",
         "RO90;PS200,100;\033*t1016R" + kEight + "\033%0BPS508,100;\033%0A" + kRows,
         {"Raster 0 200 9 198 0 0 8x3x1" + kWhiteBlack + kStored, "Raster 0 150 9 148 0 0 8x3x1" +
         kWhiteBlack + kStored}},
    });
    // clang-format on
}

TEST(RasterMode, SizesAndVisibility) {
    const std::string two = "\033*r8s2T" + Row("\xF0") + Row("\x0F");
    // clang-format off
    ExpectOperations({
        {"destination size", kStart + "\033*r8s3T\033*t72h360V" + kRows, {Eight("0 0 103 -507")}},
        {"width alone scales both", kStart + "\033*r8s3T\033*t-72H" + kRows,
         {Eight("0 0 103 -37")}},
        {"height alone counts for nothing", kStart + "\033*r8s3T\033*t72V" + kRows,
         {Eight("0 0 9 -2")}},
        {"a new source height voids the height", kStart + "\033*r8s3T\033*t72h360V\033*r3T" + kRows,
         {Eight("0 0 103 -37")}},
        {"a new source size voids it", kStart + "\033*t72h72V" + kEight, {Eight("0 0 9 -2")}},
        {"the resolution of the end counts", kStart + "\033*r8S" + kRows + "\033*t508R",
         {Eight("0 0 17 -5")}},
        {"a resolution of 1", kStart + "\033*t1R" + kEight, {Eight("0 0 8129 -3047")}},
        {"a resolution of 0 is none", kStart + "\033*t0R\033*t-5R" + kEight, {Eight("0 0 9 -2")}},
        {"width from the plot size", kJob + "PS100,8;RO1;\033*t1016R\033*r3T" + kRows,
         {"Raster 0 98 9 96 0 0 8x3x1" + kWhiteBlack + kStored}},
        {"two units across too", kStart + "\033*r2s3T" + kRows, {}},
        {"three are not", kStart + "\033*r3s3T" + kRows,
         {"Raster 0 0 4 -2 0 0 3x3x1" + kWhiteBlack + "rows=A0000000,00000000,E0000000"}},
        {"two units are too small, but move on", kStart + two + kEight, {Eight("0 -2 9 -4")}},
        {"a row that was not stored counts",
         kStart + "\033*r8s3T" + Row("\xF0") + "\033*b7M" + Row("\x0F") + "\033*b0M" + Row("\xAA"),
         {"Raster 0 0 9 -2 0 0 8x3x1" + kWhiteBlack + "rows=AA000000,00000000,F0000000"}},
        {"no row, no picture", kStart + "\033*r8s2T\033*b7M" + Row("1") + Row("2") + kEight, {}},
        {"no width, no picture", kStart + "\033*r3T" + kRows, {}},
        {"jobs in PCL have no pictures", "@PJL ENTER LANGUAGE=PCL\n\033%0A" + kEight, {}},
        {"unless vectors are named too", "@PJL ENTER LANGUAGE=PCL\n" + kStart + kEight,
         {Eight("0 0 9 -2")}},
        {"resolution of the job", "@PJL SET RESOLUTION=508\n" + kJob + "\033%0A" + kEight,
         {Eight("0 0 17 -5")}},
    });
    // clang-format on
}

TEST(RasterMode, MergeModes) {
    // clang-format off
    ExpectOperations({
        {"mask pen", kStart + "\033*l160O\033%0B", {"SetDrawMode 9"}},
        {"168 behind its picture", kStart + "\033*l168O" + kEight + "\033%0B",
         {Eight("0 0 9 -2", 168), "SetDrawMode 9"}},
        {"open pictures come first", kStart + "\033*r8S\033*l252O" + kRows + "\033%0B",
         {Eight("0 0 9 -2", 252), "SetDrawMode 13"}},
        {"unchanged at the end", kStart + "\033*l252o0O\033%0B", {}},
        {"255 is the last", kStart + "\033*l255O" + kEight + "\033%0B",
         {Eight("0 0 9 -2", 255), "SetDrawMode 13"}},
        {"out of range", kStart + "\033*l256o-1O\033%0B", {}},
        {"no draw: invisible, but moves on",
         kStart + "\033*l170O" + kEight + "\033*l51O" + kRows + "\033*l0O" + kRows,
         {Eight("0 -6 9 -8")}},
        {"stays for vectors", kStart + "\033*l170O\033%0BPD5,5;", {"SetDrawMode 13"}},
    });
    // clang-format on
}

TEST(RasterMode, PrinterReset) {
    const std::string ended = "EndPage 1";
    // clang-format off
    ExpectOperations({
        {"ends a page with a picture, keeps the source size",
         kStart + "\033*b7Y" + kEight + "\033E\033*t1016R" + kRows, {Eight("7 0 16 -2"),
         "EndPage 1", "SetColor 0x000000", "SetPatternLength 8 0xFFFFFFFF", Eight("0 0 9 -2")}},
        {"an empty page stays", kStart + "\033E\033*t1016R" + kEight, {Eight("0 0 9 -2")}},
        {"an open picture is overwritten and takes the new resolution",
         kStart + "\033*r8S" + Row("\x11") + Row("\x22") + "\033E" + kRows, {Eight("0 0 28 -9")}},
        {"forgets the destination size", kStart + "\033*r8s3T\033*t72h360V\033E\033*t1016R" + kRows, {Eight("0 0 9 -2")}},
        {"one bit again", kStart + "\033*r-3U\033E\033*t1016R" + kEight,
         {"Raster 0 0 9 -2 0 0 8x3x1 colors=FFFFFF,FFFF00 " + kStored}},
        {"outside raster mode it is ignored", "PD;\033EPD;", {"Line 0 0 0 0", "Line 0 0 0 0"}},
    });
    // clang-format on
}

// A plot with every kind of transfer.
std::string Exercise() {
    return kStart +
           "\033*v6W\0\0\3\1\1\1\033*v9a8b7c1I\033*p0P\033&u300D\033*r9s0T\033*t720h720V"s +
           Row("\xF0\x80", 'V') + Row("\xF1\x80", 'V') + Row("\x81\xFF") + "\033%1BPD9,9;\033%1A" +
           "\033E\033*r16s4T\033*b5m17W\0\0\2\1\2\4\0\1\3\0\3\x20\3\4\5\0\1"s +
           "\033*b4m10W\0\0\0\x10\1\2\3\4\5\6"s +
           "\033*b2m2W\xFF\7\033*b3m2W\1\x9\033*b10m4W\xE7\xFF\1\2"s +
           "\033*c2W\033E\033*p1P\033(8U\033(s3b2Wab\033&p2Xab\033*l168O\033%-12345X@PJL\nPG;";
}

TEST(RasterMode, CutAnywhereItEnds) {
    const std::string plot = Exercise();
    EXPECT_NE(Ops(plot).find("EndPage 1"), std::string::npos);
    for (std::size_t size = 0; size < plot.size(); ++size) {
        EXPECT_NE(Ops(plot.substr(0, size)).find("result "), std::string::npos) << size;
        PlotReader detection(plot.substr(0, size));
        detection.State().raster.documentMode = false;
        detection.Detect();
        EXPECT_TRUE(detection.State().drawing.out.PageEmpty()) << size;
    }
}

TEST(RasterMode, AbortEndsItAndFinishesThePicture) {
    const std::string rest(20000, 'x');
    const std::string plot = kStart + "\033*r8S" + kRows + Row(rest) + "\033%0BPD;";
    PlotReader reader(plot);
    reader.abortAt = 50;
    reader.Interpret();
    EXPECT_TRUE(reader.input.aborted);
    EXPECT_EQ(reader.State().raster.picture, nullptr);
    EXPECT_FALSE(reader.State().drawing.out.PageEmpty());
    EXPECT_EQ(reader.progress.back(), 50);
}

TEST(RasterMode, OutsideDocumentModeEverythingIsReadAndNothingMade) {
    PlotReader reader(kStart + kEight + "\033%1BPD9,9;");
    reader.State().raster.documentMode = false;
    reader.Interpret();
    EXPECT_EQ(reader.State().drawing.motion.penPos.x, 9.0);
    EXPECT_EQ(reader.State().raster.picture, nullptr);
    EXPECT_EQ(reader.State().raster.currentRow, 0);
    EXPECT_EQ(reader.State().raster.frame.sourceWidth, 8);
}

TEST(RasterMode, DetectionReadsOverRasterData) {
    const std::string data(600, '\1');
    PlotReader plot("\033%0A" + Row(data) + "\033%0BIN;SP1;PU;PD;PU;");
    EXPECT_EQ(plot.Detect(), 1);
    EXPECT_EQ(PlotReader("\033pX\033%0BIN;SP1;PU;PD;PU;").Detect(), 1);
}

TEST(RasterMode, ClaimsCostNothing) {
    const std::string huge = "\033*r2147483647s2147483647T";
    // clang-format off
    ExpectOperations({
        {"a row of 2 GiB", kStart + huge + "\033*b2147483647W\1", {}},
        {"positions wrap", kStart + "\033*b2147483647y+9Y\033*p-2147483647X\033*t1r1016R\033%1B",
         {}},
        {"digits wrap", kStart + "\033*b99999999999W", {}},
        {"a row of any depth", kStart + "\033*v6W\0\1\xFF\0\0\0"s + huge + Row("1"), {}},
        {"no depth", kStart + "\033*v6W\0\1\0\0\0\0"s + kEight, {}},
    });
    // clang-format on
}

TEST(RasterMode, PicturesStopWhenTheBudgetIsSpent) {
    for (const std::int64_t bytes : {100, 1000}) {
        PlotReader reader(kStart + kEight);
        reader.State().raster.entered = true;
        reader.State().raster.budget = {WorkBudget(bytes), WorkBudget()};
        reader.Interpret();
        EXPECT_EQ(reader.State().drawing.out.PageEmpty(), bytes == 100);
    }
}

TEST(EscapeTable, NoSequenceTwice) {
    for (const Escape& escape : AllEscapes()) {
        const auto handler = FindEscapeHandler(static_cast<std::uint8_t>(escape.group[0]),
                                               static_cast<std::uint8_t>(escape.group[1]),
                                               static_cast<std::uint8_t>(escape.letter));
        EXPECT_EQ(handler, escape.handler) << escape.syntax;
    }
}

}  // namespace
}  // namespace qm
