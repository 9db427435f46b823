// Pen moves, arcs, circles and curves, by the operations that come of them.
#include <gtest/gtest.h>

#include <algorithm>

#include "interpreter/arcs.h"
#include "tests/interpreter/ops_table.h"

namespace qm {
namespace {

std::size_t CountOf(const std::vector<std::string>& lines, const std::string& start) {
    return static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(),
                      [&start](const std::string& line) { return line.rfind(start, 0) == 0; }));
}

TEST(Vectors, PenMoves) {
    // clang-format off
    ExpectOperations({
        {"absolute and relative", "PU10,10;PD20,10;PR5,5,1,1;PA0,0;",
         {"Line 10 10 20 10", "Line 20 10 25 15", "Line 25 15 26 16", "Line 26 16 0 0"}},
        {"dots", "PU5,5;PD;PA;PU;PA;", {"Line 5 5 5 5", "Line 5 5 5 5"}},
        {"relative with the pen up", "PU10,10;PR5,5;PD;", {"Line 15 15 15 15"}},
        {"half a pair is read over", "PD1,2,3;PU;", {"Line 0 0 1 2"}},
        {"letters in lower case", "pu10,10;pd20,20;", {"Line 10 10 20 20"}},
        {"an unknown mnemonic loses its first letter", "XPD5,5;", {"Line 0 0 5 5"}},
        {"a blank between letters is no command", "P D5,5;", {}},
        {"no exponent form", "PD1e3,1;", {"Line 0 0 0 0"}},
        {"no slot for ZZ", "ZZPD;", {"Line 0 0 0 0"}},
        {"polygon mode draws nothing", "PM0;PD10,10,20,20;CI5;AA0,0,90;PM2;PD;", {"Line 0 0 0 0"}},
    });
    // clang-format on
}

TEST(Vectors, Arcs) {
    const std::string ring = "PU100,0;AA0,0,360;";
    // clang-format off
    ExpectOperations({
        {"a native full turn", ring,
         {"Line 100 0 100 0", "Arc 0 0 100 0.0 6.2831853", "Line 100 0 100 0"}},
        {"no sweep, AA", "PU100,0;AA0,0,0;", {}},
        {"no sweep, AR", "PU100,0;AR-100,0,0;",
         {"Line 100 0 100 0", "Arc 0 0 100 0.0 0.0", "Line 100 0 100 0"}},
        {"pen at the centre", "PU5,5;AA5,5,90;AR0,0,90;", {}},
        {"two numbers", "PU100,0;AA0,0;PD;", {"Line 100 0 100 0"}},
        {"more than a turn: arc limited, end not", "PU100,0;AA0,0,450;",
         {"Line 100 0 100 0", "Arc 0 0 100 0.0 6.2831853", "Line 100 0 0 100"}},
        {"clockwise", "PU100,0;AA0,0,-90;",
         {"Line 100 0 100 0", "Arc 0 0 100 0.0 -1.57079632", "Line 0 -100 0 -100"}},
        {"scaled alike", "SC0,2,0,2,2;PU100,0;AA0,0,90;",
         {"Line 200 0 200 0", "Arc 0 0 200 0.0 1.57079632", "Line 0 200 0 200"}},
        {"through three points", "PU100,0;AT0,100,-100,0;",
         {"Arc 0 0 100 0.0 3.14159265", "Line -100 0 -100 0"}},
        {"through three points, clockwise", "PU100,0;RT-100,-100,-200,0;",
         {"Arc 0 0 100 0.0 -3.14159265", "Line -100 0 -100 0"}},
        {"inside the window", "IW-101,-100,101,100;" + ring,
         {"Line 100 0 100 0", "Arc 0 0 100 0.0 6.2831853", "Line 100 0 100 0"}},
    });
    // clang-format on
}

TEST(Vectors, ArcsThatAreNoCirclesOrTouchTheWindowBecomeSegments) {
    const auto stretched = OperationsOf("SC0,1,0,2,2;PU100,0;AA0,0,360;");
    ASSERT_EQ(stretched.size(), 3U);
    EXPECT_EQ(stretched[1].rfind("Polyline 92 : 100,0 ", 0), 0U);
    // Points of the circle stand at 100 and -100 across, at 99 and -99 along.
    for (const char* edge :
         {"-100,-200,200,200", "-200,-99,200,200", "-200,-200,100,200", "-200,-200,200,99"}) {
        const auto touching = OperationsOf("IW" + std::string(edge) + ";PU100,0;AA0,0,360;");
        EXPECT_EQ(CountOf(touching, "Line"), touching.size()) << edge;
    }
}

TEST(Vectors, CollinearPointsHaveTheirCentreFarAway) {
    const CircleThrough circle = ThreePointCentre({0, 0}, {1, 1}, {2, 2});
    EXPECT_EQ(circle.centre.x, 1e8);
    EXPECT_EQ(circle.centre.y, 1e8);
}

TEST(Vectors, Circles) {
    ExpectOperations({
        {"native", "PU7.9,7;CI100.9;CI-5;PD;", {"Circle 7 7 100", "Circle 7 7 -5", "Line 7 7 7 7"}},
        {"scaled alike", "SC0,2,0,2,2;PU1,1;CI10;", {"Circle 2 2 20"}},
        {"a window does not clip it", "IW0,0,1,1;CI10;", {"Circle 0 0 10"}},
        {"no radius", "CI;", {}},
    });
    const auto stretched = OperationsOf("SC0,1,0,2,2;CI10;");
    ASSERT_EQ(stretched.size(), 1U);
    EXPECT_EQ(stretched[0].rfind("Polyline 91 : 10,0 ", 0), 0U);
    EXPECT_EQ(stretched[0].substr(stretched[0].size() - 5), " 10,0");
}

TEST(Vectors, Curves) {
    const std::string still = " 0,0 0,0 0,0 0,0 0,0 0,0 0,0 0,0 0,0 0,0 0,0 0,0";
    // clang-format off
    ExpectOperations({
        // t = 11/12 is left out: the step to the end is twice as long as the others.
        {"a straight one", "PU0.5,0;BZ4.5,0,8.5,0,12.5,0;PD;",
         {"Polyline 12 : 0,0 1,0 2,0 3,0 4,0 5,0 6,0 7,0 8,0 9,0 10,0 12,0", "Line 12 0 12 0"}},
        {"an incomplete segment only moves the pen", "BZ1,1,2,2;PD;", {"Line 2 2 2 2"}},
        {"... also behind a complete one", "BZ0,0,0,0,0,0,7,7;PD;",
         {"Polyline 12 :" + still, "Line 7 7 7 7"}},
        {"relative to each segment's start", "BR0,0,0,0,9,9,0,0,0,0,1,1;",
         OperationsOf("BZ0,0,0,0,9,9,9,9,9,9,10,10;")},
    });
    // clang-format on
}

TEST(Vectors, LongCurvesAreSentInRunsOf99Points) {
    std::string plot = "BR";
    for (int i = 0; i < 9; ++i) plot += "0,0,0,0,1,1,";
    const auto nine = OperationsOf(plot);  // 9 x 11 points and the end, alone in its run
    ASSERT_EQ(nine.size(), 2U);
    EXPECT_EQ(CountOf(nine, "Polyline 99 :"), 1U);
    EXPECT_EQ(nine[1], "Polyline 1 : 9,9");
}

TEST(Vectors, ACurveThatIsDrawnWhileItIsReadComesOutAsOneThatIsNot) {
    // More control points than are kept at once: every run but the last is full, and no point is
    // doubled or lost.
    std::string plot = "BR";
    const int segments = 9000;
    for (int i = 0; i < segments; ++i) plot += "0,0,0,0,1,0,";
    const auto lines = OperationsOf(plot + ";PD;");
    EXPECT_EQ(CountOf(lines, "Polyline 99 :"), static_cast<std::size_t>(segments * 11 / 99));
    EXPECT_EQ(lines[lines.size() - 2], "Polyline 1 : 9000,0");
    EXPECT_EQ(lines.back(), "Line 9000 0 9000 0");
}

}  // namespace
}  // namespace qm
