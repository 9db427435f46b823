// Filled polygons in a soft-clip window, and the clipper's adapter.
#include <algorithm>
#include <cmath>
#include <random>

#include "interpreter/attributes/polygon.h"
#include "tests/interpreter/ops_table.h"

extern "C" {
#include <gpc.h>
}

namespace qm {
namespace {

double TwiceArea(const Contour& c) {
    double area = 0.0;
    for (std::size_t i = 0; i < c.size(); ++i) {
        const PointI a = c[i];
        const PointI b = c[(i + 1) % c.size()];
        area += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
    }
    return area;
}

// Contours without what a clipper may choose: counter-clockwise from the lowest point, sorted.
std::vector<std::string> Canonical(std::vector<Contour> contours) {
    std::vector<std::string> texts;
    for (Contour& c : contours) {
        if (TwiceArea(c) < 0.0) std::reverse(c.begin(), c.end());
        std::rotate(
            c.begin(),
            std::min_element(c.begin(), c.end(),
                             [](PointI a, PointI b) { return a.y != b.y ? a.y < b.y : a.x < b.x; }),
            c.end());
        std::string text;
        for (const PointI p : c) text += std::to_string(p.x) + "," + std::to_string(p.y) + " ";
        texts.push_back(text);
    }
    std::sort(texts.begin(), texts.end());
    return texts;
}

TEST(Clip, Contours) {
    // clang-format off
    const struct {
        const char* name;
        Contour polygon;
        std::vector<std::string> contours;
    } rows[] = {
        {"a corner", {{50, 50}, {150, 50}, {150, 150}, {50, 150}, {50, 50}},
         {"50,50 100,50 100,100 50,100 "}},
        {"all around", {{-50, -50}, {150, -50}, {150, 150}, {-50, 150}},
         {"0,0 100,0 100,100 0,100 "}},
        {"beside", {{150, 0}, {160, 0}, {160, 10}}, {}},
        {"around the corner, nothing inside", {{90, 120}, {120, 90}, {120, 120}}, {}},
        {"a comb comes apart",
         {{10, 50}, {10, 150}, {90, 150}, {90, 50}, {80, 50}, {80, 120}, {20, 120}, {20, 50}},
         {"10,50 20,50 20,100 10,100 ", "80,50 90,50 90,100 80,100 "}},
        {"crossings are truncated", {{0, 0}, {200, 0}, {0, 3}}, {"0,0 100,0 100,1 0,3 "}},
        {"a line", {{0, 0}, {200, 200}, {0, 0}}, {}},
        {"one place", {{200, 200}, {200, 200}, {200, 200}}, {}},
        {"the whole range",
         {{INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MIN}, {INT32_MAX, INT32_MAX}},
         {"0,0 100,0 100,100 "}},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(Canonical(ClipPolygon(row.polygon, {0, 0, 100, 100})), row.contours) << row.name;
    }
    EXPECT_TRUE(ClipPolygon(rows[0].polygon, {60, 60, 60, 90}).empty()) << "a window of no width";
}

TEST(Clip, ReachesOutside) {
    constexpr ClipWindow kWindow{0, 10, 20, 30};
    EXPECT_FALSE(ReachesOutside({{0, 10}, {20, 10}, {20, 30}, {0, 30}}, kWindow));
    for (const PointI p : {PointI{-1, 20}, PointI{21, 20}, PointI{5, 9}, PointI{5, 31}}) {
        EXPECT_TRUE(ReachesOutside({{5, 20}, p}, kWindow));
    }
}

bool Covers(const std::vector<Contour>& contours, double x, double y) {
    bool inside = false;
    for (const Contour& c : contours) {
        for (std::size_t i = 0; i < c.size(); ++i) {
            const PointI a = c[i];
            const PointI b = c[(i + 1) % c.size()];
            if ((a.y > y) == (b.y > y)) continue;
            const double width = static_cast<double>(b.x) - a.x;
            if (x < a.x + width * (y - a.y) / (static_cast<double>(b.y) - a.y)) inside = !inside;
        }
    }
    return inside;
}

// Random self-crossing polygons keep their even-odd area: 1000 vertices meet each other too often
// for the exact clipper. Crossings are truncated, so points close to an edge may differ.
TEST(Clip, KeepsTheEvenOddArea) {
    constexpr ClipWindow kWindow{-50000, -60000, 70000, 40000};
    std::mt19937 random(7);
    const auto coordinate = [&random] {
        return static_cast<std::int32_t>(random() % 200000) - 100000;
    };
    for (const int vertices : {3, 4, 8, 20, 1000}) {
        Contour polygon;
        for (int i = 0; i < vertices; ++i) polygon.push_back({coordinate(), coordinate()});
        const std::vector<Contour> clipped = ClipPolygon(polygon, kWindow);
        for (const Contour& c : clipped) EXPECT_FALSE(ReachesOutside(c, kWindow));
        if (vertices == 1000) {
            EXPECT_EQ(clipped.size(), 1U);
        }
        int wrong = 0;
        for (int i = 0; i < 200; ++i) {
            const double x = coordinate() + 0.5;
            const double y = coordinate() + 0.5;
            const bool inWindow =
                x > kWindow.xMin && x < kWindow.xMax && y > kWindow.yMin && y < kWindow.yMax;
            wrong += Covers(clipped, x, y) != (inWindow && Covers({polygon}, x, y));
        }
        EXPECT_LT(wrong, vertices == 1000 ? 12 : 2) << vertices;
    }
}

TEST(Clip, Commands) {
    // clang-format off
    ExpectOperations({
        {"inside the window nothing changes", "IW0,0,99,99;PM0;PD9,0,9,9;PM2;FP;",
         {"SetLineWidth 0", "FilledPolygon 4 : 0,0 9,0 9,9 0,0", "SetLineWidth 0"}},
        {"outside nothing is drawn", "IW50,50,99,99;PM0;PD9,0,9,9;PM2;FP;",
         {"SetLineWidth 0", "SetLineWidth 0"}},
        {"several polygons are not clipped",
         "IW0,0,5,5;PM0;PD9,0,9,9;PM1;PU20,0;PD30,0,30,9,20,0;PM2;FP;", {"SetLineWidth 0",
         "FilledPolyPolygon 2 4 4 : 0,0 9,0 9,9 0,0 20,0 30,0 30,9 20,0", "SetLineWidth 0"}},
        {"hatch lines neither", "IW0,0,5,5;FT3,20;PM0;PD40,0,40,40,0,40;PM2;FP;",
         {"SetLineWidth 0", "Line 0 20 40 20", "SetLineWidth 0"}},
    });
    // clang-format on
    const std::vector<std::string> wedge = OperationsOf("IW0,0,50,50;WG100,0,90;");
    ASSERT_EQ(wedge.size(), 1U);
    EXPECT_EQ(wedge[0].rfind("FilledPolygon 4 : ", 0), 0U) << wedge[0];
}

// A polygon of the largest size whose edges all cross, and one that runs back and forth on a line.
TEST(Clip, ManyMeetings) {
    Contour star;
    Contour line;
    for (int i = 0; i < 14999; ++i) {
        const double angle = i * 3.1413;
        star.push_back({static_cast<std::int32_t>(2e9 * std::cos(angle)),
                        static_cast<std::int32_t>(2e9 * std::sin(angle))});
        line.push_back({i % 2 * 100, 0});
    }
    EXPECT_EQ(ClipPolygon(star, {-1000000, -1000000, 1000000, 1000000}).size(), 1U);
    for (const Contour& c : ClipPolygon(line, {10, -10, 20, 10})) EXPECT_EQ(TwiceArea(c), 0.0);
}

TEST(Clip, AdapterMarksHolesAndFreesTwice) {
    gpc_vertex outer[] = {{0.0, 0.0}, {9.0, 0.0}, {9.0, 9.0}, {0.0, 9.0}};
    gpc_vertex inner[] = {{3.0, 3.0}, {6.0, 3.0}, {6.0, 6.0}, {3.0, 6.0}};
    gpc_vertex window[] = {{-1.0, -1.0}, {10.0, -1.0}, {10.0, 10.0}, {-1.0, 10.0}};
    gpc_vertex_list ring[] = {{4, outer}, {4, inner}};
    gpc_vertex_list windowContour{4, window};
    int holes[] = {0, 1};
    gpc_polygon subject{2, holes, ring};
    gpc_polygon clip{1, holes, &windowContour};
    gpc_polygon result{};
    gpc_polygon_clip(GPC_INT, &subject, &clip, &result);
    ASSERT_EQ(result.num_contours, 2);
    EXPECT_EQ(result.hole[0] + result.hole[1], 1);
    gpc_free_polygon(&result);
    EXPECT_EQ(result.num_contours, 0);
    gpc_free_polygon(&result);
}

}  // namespace
}  // namespace qm
