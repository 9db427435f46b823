// Scaling, windows and clipping, by the coordinates that come out.
#include "interpreter/coordinates.h"

#include <gtest/gtest.h>

#include "interpreter/plot_notes.h"
#include "tests/interpreter/ops_table.h"
#include "tests/interpreter/plot_reader.h"

namespace qm {
namespace {

TEST(Coordinates, Scaling) {
    // clang-format off
    ExpectOperations({
        {"SC needs a full IP", "SC0,100,0,100;PD100,100;", {"Line 0 0 100 100"}},
        {"four numbers of IP", "IP0,0,4000,4000;SC0,100,0,100;PD100,100;", {"Line 0 0 4000 4000"}},
        {"a short IP takes the permission back", "IP0,0,4000,4000;IP1,1;SC0,1,0,1;PD9,9;",
         {"Line 0 0 9 9"}},
        {"point factor needs no IP", "SC1,2,1,3,2;PU1,1;PD11,11;", {"Line 0 0 20 30"}},
        {"zero range changes nothing", "IP0,0,100,100;SC5,5,0,10;PD7,7;", {"Line 0 0 7 7"}},
        {"unknown type changes nothing", "IP0,0,100,100;SC0,1,0,1,3;PD7,7;", {"Line 0 0 7 7"}},
        {"isotropic is not", "IP0,0,100,200;SC0,1,0,1,1;PD1,1;", {"Line 0 0 100 200"}},
        {"truncation toward zero", "SC0,1,0,1,2;PU0.9,-0.9;PD-0.9,1.9;", {"Line 0 0 0 1"}},
        {"SC; keeps the place", "SC0,10,0,10,2;PU5,5;SC;PD0,0;", {"Line 50 50 0 0"}},
        {"SC converts the pen", "PU50,50;SC0,10,0,10,2;PD0,0;", {"Line 50 50 0 0"}},
        {"SC twice converts it twice", "PU50,50;SC0,10,0,10,2;SC0,10,0,10,2;PD0,0;",
         {"Line 5 5 0 0"}},
        {"IP under scaling moves the origin only", "IP0,0,100,100;SC0,10,0,10;IP5,5,6,6;PD1,1;",
         {"Line 5 5 15 15"}},
        {"a factor of 0", "SC0,0,0,0,2;PD1,1;", {"Line -2147483648 -2147483648 0 0"}},
        {"beyond 32 bits", "SC0,1e,0;SC0,99999,0,99999,2;PD99999,-99999;",
         {"Line 0 0 -2147483648 -2147483648"}},
        {"IR moves both points and counts from PS",
         "PS20000,10000;IP0,0,100,100;IR50,50;SC0,1,0,1;PD1,1;", {"Line 0 0 5100 10100"}},
        {"IR with four numbers", "PS2000,1000;IP0,0,100,100;IR50,50,60,60;SC0,1,0,1;PU0,0;PD1,1;",
         {"Line 0 0 100 100"}},
    });
    // clang-format on
}

TEST(Coordinates, NotesSayWhetherAScaleWasIgnored) {
    const struct {
        const char* plot;
        bool ignored;
    } rows[] = {{"SC0,100,0,100;PD100,100;", true},
                {"IP0,0,4000,4000;SC0,100,0,100;PD100,100;", false},
                {"SC1,2,1,3,2;SC;SC0,1,0,1,3;", false},
                {"SC0,9,0,9;IP0,0,9,9;SC0,9,0,9;", true}};
    for (const auto& row : rows) {
        PlotReader reader(row.plot);
        reader.Interpret();
        EXPECT_EQ(reader.Notes().scaleIgnored, row.ignored) << row.plot;
    }
}

TEST(Coordinates, Window) {
    // clang-format off
    ExpectOperations({
        {"clips lines", "IW0,0,100,100;PU-50,50;PD150,50;", {"Line 0 50 100 50"}},
        {"corners in any order", "IW100,100,0,0;PU-50,50;PD150,50;", {"Line 0 50 100 50"}},
        {"edges are inside", "IW0,0,100,100;PU0,100;PD100,100;", {"Line 0 100 100 100"}},
        {"outside", "IW0,0,100,100;PU0,101;PD100,101;PU-10,50;PD-5,200;", {}},
        {"above counts before right", "IW0,0,10,10;PU0,3;PD11,15;", {"Line 0 3 6 10"}},
        {"switched off", "IW0,0,1,1;IW;PD5,5;", {"Line 0 0 5 5"}},
        {"old slots fill a short IW", "PU300,400;IW1,2,30,40;IW5,6;PU0,20;PD99,20;",
         {"Line 5 20 30 20"}},
        {"a later SC does not move it", "IW0,0,10,10;SC0,10,0,10,2;PD2,2;", {"Line 0 0 10 10"}},
        {"polylines become their pieces", "IW0,0,10,10;BZ0,30,30,30,30,0;",
         {"Line 0 0 0 6", "Line 0 6 1 10"}},
    });
    // clang-format on
}

TEST(Coordinates, ClippingSurvivesExtremes) {
    const ClipWindow window{-10, -10, 10, 10};
    const struct {
        PointI a;
        PointI b;
    } rows[] = {
        {{INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MAX}},
        {{INT32_MAX, INT32_MIN}, {INT32_MIN, INT32_MAX}},
        {{INT32_MIN, 0}, {INT32_MAX, 0}},
    };
    for (auto [a, b] : rows) {
        ASSERT_TRUE(ClipSegment(window, a, b));
        for (const PointI p : {a, b}) {
            EXPECT_TRUE(p.x >= -10 && p.x <= 10 && p.y >= -10 && p.y <= 10) << p.x << "," << p.y;
        }
    }
}

}  // namespace
}  // namespace qm
