// The display list: what is filed comes back, in little memory, and parts of it can be left out.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/display_list_player.h"
#include "host/page_summary.h"

namespace {

using namespace qm;

// Sums what it sees, so that a lost or repeated record at the edge of a part shows.
class Summing final : public DisplayListVisitor {
  public:
    void Lines(const DrawingStyle& drawn, PointSpan points) override {
        for (std::size_t i = 1; i < points.count; ++i) {
            ++lines;
            sum += points[i].x;
            EXPECT_EQ(points[i].x, points[i - 1].x + 1);
        }
        style = drawn;
    }
    void Polygon(const DrawingStyle&, PointSpan points, bool) override {
        polygonPoints += points.count;
    }

    std::int64_t sum = 0;
    std::size_t lines = 0;
    std::size_t polygonPoints = 0;
    DrawingStyle style;
};

TEST(DisplayList, ManyParts) {
    DisplayList list;
    list.AppendValue(RecordKind::kPen, 7);
    constexpr std::int32_t kLines = 1000000;
    for (std::int32_t i = 0; i < kLines; ++i) {
        list.AppendLine({i, 0}, {i + 1, 0});
        if (i % 1000 == 0) list.AppendValue(RecordKind::kPen, i);
    }
    const std::vector<PointI> large(400000);  // more than a part holds
    list.AppendPolygon({large.data(), large.size()}, false);
    list.AppendLine({0, 0}, {1, 0});
    EXPECT_GT(list.Parts().size(), 5U);
    Summing sums;
    Play(list, sums);
    EXPECT_EQ(sums.lines, 1000001U);
    EXPECT_EQ(sums.sum, std::int64_t{kLines} * (kLines + 1) / 2 + 1);
    EXPECT_EQ(sums.polygonPoints, large.size());
    EXPECT_EQ(sums.style.pen, 999000);
    EXPECT_LT(list.UsedBytes(), 2U * 1000000 + 2U * 400000 + 60000);
    list.Finish();
    EXPECT_TRUE(list.Rest().empty());
    Summing finished;
    Play(list, finished);
    EXPECT_EQ(finished.sum, sums.sum);
}

// What leaves no mark: attributes of a few bytes each, patterns and clip regions.
TEST(DisplayList, StateIsSmallAndLeavesTheListEmpty) {
    const std::int32_t gaps[] = {8, 2, 1};
    const std::uint8_t bits[] = {1, 2};
    DisplayList list;
    list.AppendColour(RecordKind::kDrawColour, 0xFF0102);
    list.AppendValue(RecordKind::kLineWidth, 9);
    list.AppendFillStyle(3, -1);
    EXPECT_EQ(list.UsedBytes(), 4U + 2U + 3U);
    list.AppendLineDash(gaps, 3);
    list.DefineFillPattern({7, 9, 1, {bits, 2}});
    list.AppendClipRegion({nullptr, 0});
    list.EndClipRegion();
    list.AppendValue(RecordKind::kLineStyle, 4);
    EXPECT_TRUE(list.IsEmpty());
    list.AppendLine({0, 0}, {1, 0});
    Summing sums;
    Play(list, sums);
    EXPECT_EQ(sums.style.dashCount, 0U) << "a style replaces dashes";
    EXPECT_EQ(sums.style.lineStyle, 4);
}

// The points of all records, the chains separated, and which parts were offered.
class Recording final : public DisplayListVisitor {
  public:
    // Joins what long chains are cut into.
    void Lines(const DrawingStyle& style, PointSpan points) override {
        lengths.push_back(points.count);
        if (runs.empty() || !(runs.back().back() == points[0])) return Add(style, points);
        runs.back().insert(runs.back().end(), points.begin() + 1, points.end());
    }
    void Polygon(const DrawingStyle& style, PointSpan points, bool) override { Add(style, points); }
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool) override {
        Add(style, rings.points);
    }
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius, bool) override {
        const PointI points[] = {centre, {radius, 0}};
        Add(style, {points, 2});
    }
    void Arc(const DrawingStyle& style, const ArcShape& arc) override {
        const PointI points[] = {arc.centre, {arc.radiusX, arc.radiusY}};
        Add(style, {points, 2});
    }
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool) override {
        const PointI points[] = {box.a, box.b};
        Add(style, {points, 2});
    }
    void Text(const DrawingStyle& style, const BoxI& box, std::string_view text) override {
        Rectangle(style, box, false);
        texts += text;
    }
    void ClipRegion(PointSpan points) override { Add({}, points); }
    bool Wants(const PartCover& cover) override {
        covers.push_back(cover);
        return cover.minX < leaveOutFrom;
    }

    std::vector<std::vector<PointI>> runs;
    std::vector<std::size_t> lengths;  // of what runs of lines were cut into
    std::vector<std::int32_t> pens;
    std::vector<std::uint32_t> colours;
    std::string texts;
    std::vector<PartCover> covers;
    std::int64_t leaveOutFrom = INT64_MAX;

  private:
    void Add(const DrawingStyle& style, PointSpan points) {
        runs.emplace_back(points.begin(), points.end());
        pens.push_back(style.pen);
        colours.push_back(style.drawColour);
    }
};

void AppendOneByOne(DisplayList& list, const PointI* points, std::size_t count) {
    for (std::size_t i = 1; i < count; ++i) list.AppendLine(points[i - 1], points[i]);
}

// Returns how many chains were cut in two.
std::size_t ExpectAlike(const DisplayList& list, const DisplayList& other) {
    Recording recording;
    Recording expected;
    Play(list, recording);
    Play(other, expected);
    EXPECT_EQ(recording.lengths, expected.lengths);
    EXPECT_TRUE(recording.runs == expected.runs);
    return expected.lengths.size() - expected.runs.size();
}

// Chains of all lengths around those of a block, and the extremes between records of all kinds.
TEST(DisplayList, GivesBackEveryPoint) {
    DisplayList list;
    std::vector<std::vector<PointI>> expected;
    for (const std::int32_t step : {1, 2000, 30000, INT32_MAX}) {
        for (const std::size_t points : {2U, 33U, 34U, 63U, 64U, 65U, 126U, 127U, 128U, 300U}) {
            std::vector<PointI> run(points);
            for (std::size_t i = 1; i < points; ++i) {
                run[i] = {WrapAdd(run[i - 1].x, step), WrapSubtract(run[i - 1].y, step / 2)};
                list.AppendLine(run[i - 1], run[i]);
            }
            expected.push_back(run);
            list.AppendValue(RecordKind::kPen, 0);
        }
    }
    const PointI least{INT32_MIN, INT32_MIN};
    const PointI most{INT32_MAX, INT32_MAX};
    const std::vector<PointI> extremes = {least, most, least, {0, 0}};
    const PointSpan points{extremes.data(), extremes.size()};
    const std::int32_t lengths[] = {3, 1};
    list.AppendPolygon(points, true);
    list.AppendPolygon({}, true);
    list.AppendPolyPolygon({lengths, 2, points}, true);
    list.AppendRectangle({most, least}, false);
    list.AppendText({most, least}, "text");
    list.AppendCircle(most, INT32_MIN, false);
    list.AppendArc({least, INT32_MIN, INT32_MAX, 0.0F, 1.0F});
    list.AppendClipRegion(points);
    const std::vector<std::vector<PointI>> others = {extremes,
                                                     {},
                                                     extremes,
                                                     {most, least},
                                                     {most, least},
                                                     {most, {INT32_MIN, 0}},
                                                     {least, {INT32_MIN, INT32_MAX}},
                                                     extremes};
    expected.insert(expected.end(), others.begin(), others.end());
    for (const char* state : {"open", "finished"}) {
        Recording recording;
        Play(list, recording);
        EXPECT_TRUE(recording.runs == expected) << state;
        EXPECT_EQ(recording.texts, "text");
        list.Finish();
    }
}

// Chains are cut where the supply of words ends, which shows in what is written of them.
TEST(DisplayList, LinesGivenTogetherAreCutAsTheyAreOneByOne) {
    DisplayList together;
    DisplayList single;
    PointI at;
    for (std::size_t count = 2; count < 300; ++count) {
        std::vector<PointI> run(count, at);
        for (std::size_t i = 1; i < count; ++i) {
            run[i] = {run[i - 1].x + 1, static_cast<std::int32_t>(i)};
        }
        AppendOneByOne(single, run.data(), count);
        together.AppendLines({run.data(), count});
        if (count % 5 != 0) at = run.back();
    }
    EXPECT_GT(ExpectAlike(together, single), 0U) << "some are cut";
}

// Three strokes each, the last two of which may make one chain; between them lines that continue
// them, or that they continue.
TEST(DisplayList, LettersComeBackAsTheirLines) {
    constexpr std::int32_t kFar = INT32_MAX - 10;
    DisplayList letters;
    DisplayList single;
    std::size_t kept = 0;
    for (std::int32_t i = 0; i < 60000; ++i) {
        const std::int32_t size = 10 + i % 5;
        const std::int32_t gap = i % 19 == 0 ? 0 : 2;
        const PointI at{i % 31 == 0 ? kFar - i : 7 * i, i % 101};
        std::vector<PointI> points = {{0, 0}, {size, 0},    {size, size}, {3, 1},
                                      {3, 1}, {3, 1 + gap}, {0, 9},       {i % 4 - 2, 9}};
        for (PointI& point : points) point = {WrapAdd(point.x, at.x), WrapAdd(point.y, at.y)};
        const std::uint8_t lengths[] = {3, 2, 3};
        const PointI back = points.back();
        const PointI beside{WrapAdd(back.x, 1), back.y};
        const std::size_t before = letters.UsedBytes();
        BoxI box;
        letters.AppendLetter({points.data(), points.size(), lengths, 3}, box);
        kept += letters.UsedBytes() - before < 8 ? 1U : 0U;
        EXPECT_TRUE(box.a == BoxAround(points.data(), points.size()).a);
        EXPECT_TRUE(box.b == BoxAround(points.data(), points.size()).b);
        AppendOneByOne(single, &points[0], 3);
        AppendOneByOne(single, &points[3], 2);
        AppendOneByOne(single, &points[5], 3);
        for (DisplayList* list : {&letters, &single}) {
            if (i % 7 == 0) list->AppendLine(back, beside);
            if (i % 13 == 0) list->AppendLine(beside, {7 * i + 7, (i + 1) % 101});
            if (i % 17 == 0) list->AppendValue(RecordKind::kPen, i);
            if (i % 20000 == 0) list->Finish();
        }
    }
    EXPECT_GT(kept, 30000U);
    EXPECT_GT(ExpectAlike(letters, single), 0U) << "some are cut";
    EXPECT_EQ(Summarise(letters).lines, Summarise(single).lines);
    EXPECT_EQ(Summarise(letters).extent.maxX, Summarise(single).extent.maxX);
}

// Letters, as it were, far from each other; and lines of which none is like another.
TEST(DisplayList, PacksWhatRepeats) {
    DisplayList letters;
    DisplayList noise;
    std::uint32_t random = 1;
    std::vector<std::vector<PointI>> expected;
    const auto next = [&random] {
        random = random * 1664525U + 1013904223U;
        return static_cast<std::int32_t>(random >> 16);
    };
    for (int i = 0; i < 20000; ++i) {
        const PointI at{next(), next()};
        expected.push_back({at, {at.x, at.y + 40}, {at.x + 9, at.y}, {at.x + 9, at.y + 40}, at});
        letters.AppendLines({expected.back().data(), 5});
        noise.AppendLine({next(), next()}, {next(), next()});
    }
    letters.Finish();
    noise.Finish();
    std::size_t plain = 0;
    for (const DisplayList::Part& part : letters.Parts()) plain += part.size;
    EXPECT_LT(letters.UsedBytes(), plain * 3 / 4);
    for (const DisplayList::Part& part : noise.Parts()) EXPECT_EQ(part.packed, 0U);
    Recording recording;
    Play(letters, recording);
    EXPECT_TRUE(recording.runs == expected);
}

TEST(DisplayList, PartsCanBeLeftOut) {
    DisplayList list;
    const auto part = [&](std::int32_t pen, std::int32_t at) {
        list.AppendValue(RecordKind::kPen, pen);
        list.AppendValue(RecordKind::kLineWidth, 10 * pen);
        list.AppendColour(RecordKind::kDrawColour, 0xF0000000U + 0x10203U * unsigned(pen));
        list.AppendLine({at, 0}, {at + 10, 20});
        list.Finish();
    };
    part(1, 100);
    part(2, 5000);
    list.AppendLine({200, 0}, {210, 0});
    list.AppendCircle({300, 50}, INT32_MIN, false);
    list.Finish();
    part(3, 6000);
    const std::uint8_t bits[] = {1, 2};
    list.DefineFillPattern({1, 1, 1, {bits, 2}});
    part(4, 7000);
    Recording near;
    near.leaveOutFrom = 1000;
    Play(list, near);
    EXPECT_EQ(near.pens, (std::vector<std::int32_t>{1, 2, 2, 4})) << "definitions are played";
    EXPECT_EQ(near.colours, (std::vector<std::uint32_t>{0x10203, 0x20406, 0x20406, 0x4080C}));
    ASSERT_EQ(near.covers.size(), 4U);
    EXPECT_EQ(near.covers[0].minX, 100);
    EXPECT_EQ(near.covers[0].maxY, 20);
    EXPECT_EQ(near.covers[2].widestLine, 20) << "the width that a part begins with";
    EXPECT_EQ(near.covers[2].maxX, 300 + (std::int64_t{1} << 31));
}

}  // namespace
