// Lines with hard edges: which dots they draw.
#include "render/bitmap/hard_lines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "tests/render/bitmap/drawn_page.h"

namespace {

using namespace qm;
using namespace qm::bitmap;

constexpr std::int32_t kSheetSide = 40;  // of the page, in dots

struct Drawn {
    Band band{kSheetSide, kSheetSide};
    HardLines lines{band};

    Drawn(double halfWidth, const DotBox& bounds) {
        band.Start(0, kSheetSide);
        lines.SetBounds(bounds);
        lines.Begin(halfWidth, 0);
    }
    bool At(std::int32_t x, std::int32_t y) const { return band.Row(y)[x].colour == 0; }
};

// Lines of any length, direction and width, some across the bounds.
TEST(HardLines, DrawTheDotsWhoseCentresLieOnThem) {
    std::uint32_t seed = 1;
    const auto next = [&](double from, double to) {
        seed = seed * 1664525 + 1013904223;
        return from + (to - from) * (seed >> 8) / 0x1000000;
    };
    for (int i = 0; i < 1000; ++i) {
        const double halfWidth = i % 2 == 0 ? 0.5 : next(0.5, 4.0);
        const double reach = i % 3 == 0 ? 3.0 : 50.0;
        const PointD from{next(-5, kSheetSide + 5), next(-5, kSheetSide + 5)};
        const PointD to{i % 7 == 0 ? from.x : from.x + next(-reach, reach),
                        i % 11 == 0 ? from.y : from.y + next(-reach, reach)};
        if (DistanceToLine(from, to, to) + 2.0 * halfWidth < 2.0) continue;
        Drawn drawn(halfWidth, {3, 2, kSheetSide, kSheetSide - 4});
        drawn.lines.Add(from, to);
        for (std::int32_t y = 0; y < kSheetSide; ++y) {
            for (std::int32_t x = 0; x < kSheetSide; ++x) {
                const bool isIn = x >= 3 && y >= 2 && y < kSheetSide - 4;
                const double away = DistanceToLine({x + 0.5, y + 0.5}, from, to) - halfWidth;
                if (std::abs(away) < 1e-7) continue;
                ASSERT_EQ(drawn.At(x, y), isIn && away < 0.0) << i;
            }
        }
    }
}

struct DotsCase {
    const char* name;
    PointD from;
    PointD to;
    std::string dots;  // of the first four rows, four each
};

TEST(HardLines, DrawDotsOnTheirEdgeAndSpecksBetweenCentres) {
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    const DotsCase cases[] = {
        {"both sides on centres", {2, 1.5}, {2, 2.5}, "     ##  ##     "},
        {"long, both sides on centres", {2, -9}, {2, 30}, " ##  ##  ##  ## "},
        {"flat, both sides on centres", {-9, 1}, {30, 1}, "########        "},
        {"a speck on a centre", {1.5, 1.5}, {1.5, 1.5}, "     #          "},
        {"a speck between centres", {2.01, 2.01}, {2.01, 2.01}, "          #     "},
        {"a speck that shows in the row above", {1.5, 2.01}, {1.5, 2.0}, "     #   #      "},
        {"no number", {none, 1}, {none, none}, "                "},
        {"endless", {-kInfinite, 1}, {kInfinite, 1}, "########        "},
        {"far away", {-1e300, 1}, {1.5, 1e300}, "                "},
    };
    for (const DotsCase& row : cases) {
        Drawn drawn(0.5, {0, 0, kSheetSide, kSheetSide});
        drawn.lines.Add(row.from, row.to);
        std::string dots;
        for (std::int32_t i = 0; i < 16; ++i) dots += drawn.At(i % 4, i / 4) ? '#' : ' ';
        EXPECT_EQ(dots, row.dots) << row.name;
    }
}

}  // namespace
