// What is left of pages that ask for too much, and that others stay whole.
#include "render/bitmap/page_work.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "host/page_summary.h"

namespace {

using namespace qm;
using namespace qm::bitmap;

constexpr std::uint64_t kBytes = 1000;
constexpr BoxI kPage{{0, 0}, {40000, 40000}};

void Dashes(DisplayList& list) {
    const std::int32_t lengths[] = {4, 4};
    list.AppendLineDash(lengths, 2);
}

struct Row {
    const char* name;
    std::function<void(DisplayList&)> draw;  // one of kTimes
    std::uint64_t PageSummary::*count;
    std::uint64_t least;  // of them that stay
    std::uint64_t most;
    const char* note;
};

constexpr int kTimes = 1000;
constexpr char kNotAll[] =
    "P asks for too much for its size at this resolution; not all of it is drawn";
constexpr char kNoDashes[] =
    "P asks for too much for its size at this resolution; some dashes are not drawn";

// clang-format off
const Row kRows[] = {
    {"short lines", [](auto& l) { l.AppendLine({0, 0}, {9, 9}); l.AppendLine({5, 0}, {0, 9}); },
     &PageSummary::lines, 2 * kTimes, 2 * kTimes, ""},
    {"long lines", [](auto& l) { l.AppendLine(kPage.a, {20000, 20000}); l.AppendLine({5, 0}, {0, 9}); },
     &PageSummary::lines, 2 * kTimes, 2 * kTimes, ""},
    {"very long lines", [](auto& l) { for (int i = 0; i < 20; ++i) { l.AppendLine(kPage.a, kPage.b); l.AppendLine({5, 0}, {0, 9}); } },
     &PageSummary::lines, 2000, 8000, kNotAll},
    {"a chain of them", [](auto& l) { for (int i = 0; i < 20; ++i) { l.AppendLine(kPage.a, kPage.b); l.AppendLine(kPage.b, kPage.a); } },
     &PageSummary::lines, 1000, 3000, kNotAll},
    {"wide lines", [](auto& l) { l.AppendValue(RecordKind::kLineWidth, 4000); l.AppendLine(kPage.a, kPage.b); },
     &PageSummary::lines, 50, 900, kNotAll},
    {"dashes", [](auto& l) { Dashes(l); l.AppendLine({0, 0}, {10000, 10000}); l.AppendLine({5, 0}, {0, 9}); },
     &PageSummary::lines, 2 * kTimes, 2 * kTimes, kNoDashes},
    {"areas", [](auto& l) { l.AppendRectangle(kPage, true); },
     &PageSummary::rectangles, 10, 40, kNotAll},
    {"circles", [](auto& l) { l.AppendCircle({20000, 20000}, 20000, true); },
     &PageSummary::circles, 8, 40, kNotAll},
    {"thin polygons", [](auto& l) { const PointI p[] = {{0, 0}, {1000, 1000}, {990, 1000}}; l.AppendPolygon({p, 3}, true); },
     &PageSummary::polygons, kTimes, kTimes, ""},
    {"polygons", [](auto& l) { const PointI p[] = {{0, 0}, {40000, 40000}, {0, 40000}}; l.AppendPolygon({p, 3}, true); },
     &PageSummary::polygons, 16, 80, kNotAll},
    {"patterns", [](auto& l) { l.AppendFillStyle(3, 1); l.AppendRectangle(kPage, true); },
     &PageSummary::rectangles, 0, 2, kNotAll},
    {"arcs in many bands", [](auto& l) { l.AppendCircle({20000, 20000}, 20000, false); },
     &PageSummary::circles, 40, 120, kNotAll},
};
// clang-format on

TEST(PageWork, WhatFollowsTheAllowanceIsLeftOut) {
    for (const Row& row : kRows) {
        DisplayList list;
        for (int i = 0; i < kTimes; ++i) row.draw(list);
        std::string said;
        PageSource page;
        page.drawing = &list;
        page.name = "P";
        page.sourceBytes = kBytes;
        PageOptions options;
        options.dpi = 100.0;
        options.note = [&](const std::string& note) { said = note; };
        const PageRaster raster = RasterOf(page, options, "a PNG");
        const auto part = AffordablePart(page, options, raster, 64);
        EXPECT_EQ(said, row.note) << row.name;
        EXPECT_EQ(part.has_value(), !said.empty()) << row.name;
        const PageSummary summary = Summarise(part ? *part : list);
        EXPECT_GE(summary.*row.count, row.least) << row.name;
        EXPECT_LE(summary.*row.count, row.most) << row.name;
        page.sourceBytes = 0;
        EXPECT_FALSE(AffordablePart(page, options, raster, 64)) << row.name;
    }
}

TEST(PageWork, PagesOfAPlotShareIt) {
    DisplayList list;
    for (int i = 0; i < 16; ++i) list.AppendRectangle(kPage, true);
    PageSource page;
    page.drawing = &list;
    page.sourceBytes = kBytes;
    BitmapBudget budget;
    PageOptions options;
    options.dpi = 100.0;
    options.budget = &budget;
    const PageRaster raster = RasterOf(page, options, "a PNG");
    EXPECT_FALSE(AffordablePart(page, options, raster, 64));
    EXPECT_LT(budget.work, 0.4);
    const auto second = AffordablePart(page, options, raster, 64);
    ASSERT_TRUE(second);
    EXPECT_LT(Summarise(*second).rectangles, 8U);
}

}  // namespace
