// Counts, layers and extents of a page.
#include "host/page_summary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace qm;

TEST(PageSummary, ArcsReachAsFarAsTheirAngles) {
    // Around (10, 20) with radii 100 and 50.
    const struct {
        const char* name;
        float start, span;
        double minX, minY, maxX, maxY;
    } rows[] = {
        {"quarter", 0.0F, 90.0F, 10, 20, 110, 70},
        {"backwards over 0", 45.0F, -90.0F, 80.7, -15.4, 110, 55.4},
        {"over the left", 135.0F, 90.0F, -90, -15.4, -60.7, 55.4},
        {"many turns", 0.0F, 1e30F, -90, -30, 110, 70},
        {"no number", 0.0F, std::numeric_limits<float>::quiet_NaN(), -90, -30, 110, 70},
    };
    for (const auto& row : rows) {
        const Extent box = ArcExtent({{10, 20}, 100, 50, row.start, row.span});
        EXPECT_NEAR(std::abs(box.minX - row.minX) + std::abs(box.minY - row.minY) +
                        std::abs(box.maxX - row.maxX) + std::abs(box.maxY - row.maxY),
                    0, 0.2)
            << row.name;
    }
}

TEST(PageSummary, CountsByPenAndLayer) {
    DisplayList list;
    EXPECT_TRUE(Summarise(list).extent.empty);
    for (const std::int32_t pen : {2, 255, 256, 2}) {
        list.AppendValue(RecordKind::kLayer, pen + 3);
        list.AppendValue(RecordKind::kPen, pen);
        list.AppendText({{1000, 1000}, {2000, 2000}}, "x");
    }
    EXPECT_FALSE(Summarise(list).orderShows);
    list.AppendRectangle({{0, 0}, {1, 1}}, true);
    const PageSummary summary = Summarise(list);
    EXPECT_EQ(summary.byPen[2], 3U);
    EXPECT_EQ(summary.byPen[255], 1U);
    EXPECT_EQ(summary.layers, (std::vector<std::int32_t>{5, 258, 259}));
    EXPECT_EQ(summary.extent.maxX, 1.0) << "texts are not seen";
    EXPECT_TRUE(summary.orderShows);
}

// Outlines reach half a pen further, areas do not.
TEST(PageSummary, PenWidthsWidenOutlines) {
    static constexpr PointI kCorners[] = {{0, 0}, {40, 0}, {40, 20}};
    static constexpr std::int32_t kLengths[] = {3};
    // clang-format off
    const struct {
        const char* name;
        void (*append)(DisplayList&);
        double minX, maxY;
    } rows[] = {
        {"line", [](auto& l) { l.AppendLine({0, 0}, {40, 20}); }, -5, 25},
        {"rectangle", [](auto& l) { l.AppendRectangle({{40, 20}, {0, 0}}, false); }, -5, 25},
        {"filled rectangle", [](auto& l) { l.AppendRectangle({{40, 20}, {0, 0}}, true); }, 0, 20},
        {"circle", [](auto& l) { l.AppendCircle({20, 10}, 10, false); }, 5, 25},
        {"disc", [](auto& l) { l.AppendCircle({20, 10}, 10, true); }, 10, 20},
        {"arc", [](auto& l) { l.AppendArc({{20, 10}, 20, 10, 0, 180}); }, -5, 25},
        {"polyline", [](auto& l) { l.AppendPolygon({kCorners, 3}, false); }, -5, 25},
        {"polygon", [](auto& l) { l.AppendPolygon({kCorners, 3}, true); }, 0, 20},
        {"rings", [](auto& l) { l.AppendPolyPolygon({kLengths, 1, {kCorners, 3}}, false); }, -5, 25},
        {"areas", [](auto& l) { l.AppendPolyPolygon({kLengths, 1, {kCorners, 3}}, true); }, 0, 20},
    };
    // clang-format on
    for (const auto& row : rows) {
        DisplayList list;
        list.AppendValue(RecordKind::kLineWidth, 10);
        row.append(list);
        EXPECT_EQ(Summarise(list).extent.minX, row.minX) << row.name;
        EXPECT_EQ(Summarise(list).extent.maxY, row.maxY) << row.name;
    }
}

TEST(PageSummary, SurvivesTheLargestCoordinates) {
    DisplayList list;
    list.AppendLine({INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MAX});
    list.AppendCircle({INT32_MIN, 0}, INT32_MIN, false);
    const Extent extent = Summarise(list).extent;
    EXPECT_EQ(extent.minX, 2.0 * INT32_MIN);
    EXPECT_EQ(extent.Height(), 4294967295.0 + 1.0);
}

// Parts behind the first one are read where they can change it.
TEST(PageSummary, TheGistIsThatOfTheWholeList) {
    static constexpr std::uint8_t kBitmap[] = {0, 0, 0, 0};
    constexpr auto kWidth = RecordKind::kLineWidth;
    // clang-format off
    const struct {
        const char* name;
        void (*append)(DisplayList&);
    } rows[] = {
        {"nothing", [](auto&) {}},
        {"a line beyond", [](auto& l) { l.AppendLine({0, 0}, {-5, 0}); }},
        {"a wide line", [](auto& l) { l.AppendValue(kWidth, 10); l.AppendLine({1, 1}, {2, 2}); }},
        {"an arc beyond", [](auto& l) { l.AppendArc({{50, 50}, 50, 50, 0, 360}); }},
        {"a picture", [](auto& l) { l.AppendPicture({{1, 1}, {2, 2}}, 204, {kBitmap, 4}); }},
        {"a colour", [](auto& l) { l.AppendColour(RecordKind::kDrawColour, 0); }},
    };
    // clang-format on
    for (const bool white : {false, true}) {
        for (const auto& row : rows) {
            DisplayList list;
            if (white) list.AppendColour(RecordKind::kDrawColour, 0xFFFFFF);
            if (white) list.AppendColour(RecordKind::kFillColour, 0xFFFFFF);
            for (int i = 0; i < 20000; ++i) list.AppendRectangle({{0, 0}, {90, 90}}, false);
            row.append(list);
            for (int i = 0; i < 9000; ++i) list.AppendCircle({40, 40}, 2, false);
            list.Finish();
            const PageSummary whole = Summarise(list);
            const PageGist gist = GistOf(list);
            EXPECT_EQ(gist.extent.minX, whole.extent.minX) << row.name;
            EXPECT_EQ(gist.extent.minY, whole.extent.minY) << row.name;
            EXPECT_EQ(gist.extent.maxX, whole.extent.maxX) << row.name;
            EXPECT_EQ(gist.extent.maxY, whole.extent.maxY) << row.name;
            EXPECT_EQ(gist.onlyWhite, whole.onlyWhite) << row.name;
            EXPECT_EQ(gist.hasPictures, whole.pictures > 0) << row.name;
            EXPECT_TRUE(gist.hasOthers) << row.name;
        }
    }
}

}  // namespace
