// Polygon mode and the outline of what it recorded.
#include "interpreter/attributes/polygon.h"

#include "tests/interpreter/ops_table.h"

namespace qm {
namespace {

TEST(Polygon, Edge) {
    // clang-format off
    ExpectOperations({
        {"closed by its start point", "PM0;PD9,0,9,9;PM2;EP;", {"Polyline 4 : 0,0 9,0 9,9 0,0"}},
        {"EP leaves polygon mode", "PM0;PD9,0,9,9;EP;PD5,5;",
         {"Polyline 4 : 0,0 9,0 9,9 0,0", "Line 9 9 5 5"}},
        {"EP keeps the buffer", "PM0;PD9,0,9,9;PM2;EP;EP;",
         {"Polyline 4 : 0,0 9,0 9,9 0,0", "Polyline 4 : 0,0 9,0 9,9 0,0"}},
        {"two vertices draw nothing", "PM0;PM2;EP;", {}},
        {"with the pen up the closing point is no edge", "PM0;PD9,0,9,9;PU;PM2;EP;",
         {"Polyline 3 : 0,0 9,0 9,9"}},
        {"one run a sub-polygon", "PM0;PD9,0,9,9;PM1;PU20,0;PD30,0,30,9;PM2;EP;",
         {"Polyline 4 : 0,0 9,0 9,9 0,0", "Polyline 2 : 30,0 30,9"}},
        {"a lone point is joined to the move before it", "PM0;PD9,0,9,9;PM1;PU20,0;PD30,0;PM2;EP;",
         {"Polyline 4 : 0,0 9,0 9,9 0,0", "Polyline 2 : 20,0 30,0"}},
        {"the first vertex alone", "PM0;PU5,5,6,6;PM2;EP;", {"Polyline 1 : 0,0"}},
        {"a gap inside a sub-polygon ends it and all behind it",
         "PM0;PD9,0;PU9,9;PD0,9,0,5;PM1;PD7,7,8,8;PM2;EP;", {"Polyline 2 : 0,0 9,0"}},
        {"scaled", "IP0,0,100,100;SC0,10,0,10;PM0;PD1,0,1,1;PM2;EP;",
         {"Polyline 4 : 0,0 10,0 10,10 0,0"}},
        {"through a window edge by edge", "IW-1,-1,5,5;PM0;PD9,0,9,9;PM2;EP;",
         {"Line 0 0 5 0", "Line 5 5 0 0"}},
    });
    // clang-format on
}

TEST(Polygon, ModeSteps) {
    // clang-format off
    ExpectOperations({
        {"PM1 and PM2 without PM0 are ignored", "PM1;PM2;PD5,0;EP;", {"Line 0 0 5 0"}},
        {"PM3 is ignored", "PM0;PM3;PD9,0,9,9;PM2;EP;", {"Polyline 4 : 0,0 9,0 9,9 0,0"}},
        {"PM2 puts pen and pen state back", "PU1,1;PM0;PD9,0,9,9;PM2;PA5,5;PD6,6;",
         {"Line 5 5 6 6"}},
        {"PM0 starts afresh", "PM0;PD9,0,9,9;PM0;PD5,5,5,0;PM2;EP;",
         {"Polyline 4 : 9,9 5,5 5,0 9,9"}},
        {"RA and EA forget the polygon, ER and RR do not",
         "PM0;PD9,0,9,9;PM2;ER1,1;RR1,1;EP;EA1,1;EP;", {"Rectangle 0 0 1 1",
         "FilledRectangle 0 0 1 1", "Polyline 4 : 0,0 9,0 9,9 0,0", "Rectangle 0 0 1 1"}},
    });
    // clang-format on
}

TEST(Polygon, Capacity) {
    std::string plot = "PM0;PD";
    for (int i = 1; i <= 15000; ++i) plot += std::to_string(i) + "," + std::to_string(i % 7) + ",";
    const std::vector<std::string> operations = OperationsOf(plot + ";PM2;EP;");
    ASSERT_EQ(operations.size(), 1U);
    EXPECT_EQ(operations[0].rfind("Polyline 14999 : 0,0 1,1 ", 0), 0U);
    EXPECT_EQ(operations[0].substr(operations[0].size() - 8), " 14998,4");
}

// Each PM1 takes four bytes; an EP must not walk through all the numbers.
TEST(Polygon, ManyEmptySubPolygons) {
    std::string plot = "PM0;PD9,0,9,9;";
    for (int i = 0; i < 20000; ++i) plot += "PM1;";
    plot += "PD5,5,6,6;PM2;";
    std::vector<std::string> expected;
    for (int i = 0; i < 20000; ++i) {
        plot += "EP;";
        expected.insert(expected.end(), {"Polyline 4 : 0,0 9,0 9,9 0,0", "Polyline 2 : 5,5 6,6"});
    }
    EXPECT_EQ(OperationsOf(plot), expected);
}

}  // namespace
}  // namespace qm
