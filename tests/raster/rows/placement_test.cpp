// Placement of finished pictures: angles and signs, sizes, positions, what is left out.
#include "raster/rows/placement.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace qm {
namespace {

// "angle x0,y0,x1,y1 A,B", with "hidden" in front of pictures that are not placed.
std::string Place(const PlacementInput& input) {
    const Placement p = PlacePicture(input);
    std::ostringstream text;
    text << (p.visible ? "" : "hidden ") << p.angle << ' ' << p.x0 << ',' << p.y0 << ',' << p.x1
         << ',' << p.y1 << ' ' << p.offsetA << ',' << p.offsetB;
    return text.str();
}

// 100 x 50 dots at 127 dpi: 8 plotter units a dot; A = 10, B = 20.
PlacementInput Base() {
    PlacementInput input;
    input.resolution = 127;
    input.sourceWidth = 100;
    input.rows = 50;
    input.offsetA = 10;
    input.offsetB = 20;
    return input;
}

TEST(Placement, AnglesAndPositions) {
    const struct {
        const char* name;
        int rotation;
        bool orientation, jobHeader, turn;
        const char* expected;
    } rows[] = {
        {"plain", 0, false, false, false, "180 80,-160,-719,241 10,-30"},
        {"job header", 0, false, true, false, "0 80,-160,881,-559 10,70"},
        {"landscape", 0, true, false, false, "270 80,-160,481,641 60,20"},
        {"landscape turned: the sign stays", 0, true, true, true, "90 80,-160,481,641 60,20"},
        {"RO 90 in portrait", 90, false, true, false, "270 160,80,561,881 60,20"},
        {"RO 90 in landscape", 90, true, false, false, "0 80,-160,881,-559 10,70"},
        {"RO 180", 180, false, false, false, "0 80,-160,881,-559 10,70"},
    };
    for (const auto& row : rows) {
        PlacementInput input = Base();
        input.plotRotation = row.rotation;
        input.orientation = row.orientation;
        input.jobHeader = row.jobHeader;
        input.turn = row.turn;
        EXPECT_EQ(Place(input), row.expected) << row.name;
    }
}

TEST(Placement, DestinationSizes) {
    PlacementInput input = Base();
    input.jobHeader = true;
    input.destinationHeight = 360;
    EXPECT_EQ(Place(input), "0 80,-160,881,-559 10,70") << "a height alone does not count";
    input.destinationWidth = 720;
    EXPECT_EQ(Place(input), "0 80,-160,1097,-667 10,84");
    input.destinationHeight = 0;
    EXPECT_EQ(Place(input), "0 80,-160,1097,-667 10,84") << "the height follows the width's scale";
    input.pageOriginY = 1000;
    EXPECT_EQ(Place(input), "0 80,840,1097,333 10,84");
}

TEST(Placement, PicturesThatLeaveNoMark) {
    PlacementInput input = Base();
    input.jobHeader = true;
    for (const int merge : {170, 51}) {
        input.mergeMode = merge;
        EXPECT_EQ(Place(input), "hidden 0 80,-160,881,-559 10,70") << merge;
    }
    input.mergeMode = 252;
    input.resolution = 1016;
    input.rows = 2;
    EXPECT_EQ(Place(input), "hidden 0 10,-20,111,-21 10,22") << "two plotter units high";
    input.rows = 3;
    EXPECT_EQ(Place(input), "0 10,-20,111,-22 10,23");
}

TEST(Placement, AbsurdStatesStayDefined) {
    PlacementInput input = Base();
    input.resolution = 0;
    input.offsetB = INT32_MIN;
    EXPECT_EQ(PlacePicture(input).x0, INT32_MIN);
    input.resolution = 1;
    input.rows = INT32_MAX;
    input.destinationWidth = 1e300;
    EXPECT_EQ(PlacePicture(input).x1, INT32_MIN);
}

}  // namespace
}  // namespace qm
