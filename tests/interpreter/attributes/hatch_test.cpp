// The hatch generator: exact lines of the axis-parallel families, covering of the oblique ones,
// limits.
#include "interpreter/attributes/hatch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "common/numbers.h"

namespace qm {
namespace {

constexpr HatchFamily kNone{};
constexpr double kUpright = 90 * kRadiansPerDegree;

struct Segment {
    PointI from, to;
};

std::vector<Segment> Segments(const PolygonGroups& area, HatchFamily family,
                              HatchFamily second = kNone) {
    std::vector<Segment> segments;
    const auto keep = [&segments](PointI a, PointI b) { segments.push_back({a, b}); };
    EXPECT_EQ(HatchPolygons(area, family, second, keep), HatchResult::kDone);
    return segments;
}

std::string Text(const std::vector<Segment>& segments) {
    std::ostringstream text;
    for (const Segment& s : segments) {
        text << s.from.x << ',' << s.from.y << '-' << s.to.x << ',' << s.to.y << ' ';
    }
    return text.str();
}

PolygonGroups One(std::vector<PointI> points) {
    const auto count = static_cast<std::int32_t>(points.size());
    return {std::move(points), {count}};
}

PolygonGroups Square(std::int32_t size) {
    return One({{0, 0}, {size, 0}, {size, size}, {0, size}, {0, 0}});
}

TEST(Hatch, AxisParallelLines) {
    const PolygonGroups diamond = One({{0, 10}, {10, 0}, {20, 10}, {10, 20}, {0, 10}});
    // clang-format off
    const PolygonGroups frame{{{0, 0}, {30, 0}, {30, 30}, {0, 30}, {0, 0},  // outside
                               {10, 10}, {20, 10}, {20, 20}, {10, 20}, {10, 10}}, {5, 5}};
    // clang-format on
    const PolygonGroups open{{{0, 0}, {9, 0}, {9, 9}, {0, 0}, {20, 0}, {20, 9}}, {4, 2}};
    // clang-format off
    const struct {
        const char* name;
        PolygonGroups area;
        HatchFamily family;
        const char* lines;
    } rows[] = {
        {"through the corners of a diamond", diamond, {0.0, 5.0},
         "5,5-15,5 0,10-20,10 5,15-15,15 "},
        {"upright", diamond, {kUpright, 5.0}, "5,5-5,15 10,0-10,20 15,5-15,15 "},
        {"minus 90 degrees", diamond, {-kUpright, 10.0}, "10,0-10,20 "},
        {"180 degrees is horizontal", diamond, {2 * kUpright, 10.0}, "0,10-20,10 "},
        {"32580 degrees too", diamond, {32580 * kRadiansPerDegree, 10.0}, "0,10-20,10 "},
        {"a hole: lower edges count, upper ones do not", frame, {0.0, 10.0},
         "0,10-10,10 20,10-30,10 0,20-30,20 "},
        {"an odd crossing is left over", open, {0.0, 3.0}, "3,3-9,3 6,6-9,6 "},
        {"crossings are truncated", One({{0, 0}, {10, 3}, {-10, 3}, {0, 0}}), {0.0, 1.0},
         "-3,1-3,1 -6,2-6,2 "},
        {"wider than the area", Square(10), {0.0, 11.0}, ""},
        {"no spacing", Square(10), {0.0, 0.0}, ""},
        {"negative spacing", Square(10), {0.0, -2.0}, ""},
        {"beyond 2e7 the box reaches back",
         One({{0, 20000105}, {8, 20000105}, {8, 20000205}, {0, 20000205}, {0, 20000105}}),
         {0.0, 100.0}, "0,20000200-8,20000200 "},
        {"beyond 2e7, upright",
         One({{20000105, 0}, {20000205, 0}, {20000205, 8}, {20000105, 8}, {20000105, 0}}),
         {kUpright, 100.0}, "20000200,0-20000200,8 "},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(Text(Segments(row.area, row.family)), row.lines) << row.name;
    }
}

TEST(Hatch, ObliqueLines) {
    const auto at = [](double degrees) {
        return Text(Segments(Square(100), {degrees * kRadiansPerDegree, 40.0}));
    };
    EXPECT_EQ(at(45.0), "0,43-56,100 13,0-100,86 69,0-100,30 ");
    EXPECT_EQ(at(-45.0), "56,0-0,56 100,13-13,100 100,69-69,100 ");
    EXPECT_EQ(at(30.0), "0,53-80,100 0,7-100,65 66,0-100,19 ");
    EXPECT_EQ(at(150.0), "79,0-0,46 100,34-0,92 100,80-66,100 ");
    EXPECT_EQ(at(-60.0), "46,0-0,79 92,0-34,100 100,66-80,100 ");
}

TEST(Hatch, SecondFamilyFollowsTheFirst) {
    EXPECT_EQ(Text(Segments(Square(10), {0.0, 5.0}, {kUpright, 5.0})), "0,5-10,5 5,0-5,10 ");
}

TEST(Hatch, Limits) {
    int sent = 0;
    const SegmentSink count = [&sent](PointI, PointI) { ++sent; };
    EXPECT_EQ(HatchPolygons({}, {0.0, 1.0}, kNone, count), HatchResult::kInvalidArgument);

    constexpr std::int32_t kMin = INT32_MIN, kMax = INT32_MAX;
    const PolygonGroups huge = One({{kMin, kMin}, {kMax, kMin}, {kMax, kMax}, {kMin, kMin}});
    for (const double angle : {0.0, kUpright, 1.0, -0.02}) {
        EXPECT_EQ(HatchPolygons(huge, {angle, 1.0}, kNone, count), HatchResult::kOutOfMemory);
    }
    EXPECT_EQ(sent, 0);
    // What the first family sent stays.
    EXPECT_EQ(HatchPolygons(huge, {0.0, 1e9}, {0.0, 1.0}, count), HatchResult::kOutOfMemory);
    EXPECT_EQ(sent, 4);
    EXPECT_EQ(Text(Segments(huge, {0.0, 2e9})),
              "-147483648,-147483648-2147483647,-147483648 "
              "1852516352,1852516352-2147483647,1852516352 ");
}

}  // namespace
}  // namespace qm
