// The display list: what is appended comes back in order with the right style; records keep to
// their sizes; chunk edges and empty arrays do no harm.
#include "host/display_list.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/host/list_text.h"

namespace {

using namespace qm;

struct RecordCase {
    const char* name;
    std::function<void(DisplayList&)> append;
    const char* text;
    std::size_t bytes;
    bool empty;
};

void PrintTo(const RecordCase& row, std::ostream* out) { *out << row.name; }

const PointI kSquare[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}};
const std::int32_t kLengths[] = {3, 2};
const std::uint8_t kBytes[] = {1, 2, 3, 4, 5};
const std::int32_t kGaps[] = {8, 2, 1};

const RecordCase kRecords[] = {
    {"line",
     [](auto& l) {
         l.AppendLine({1, 2}, {3, 4});
     },
     "Lines 1,2 3,4\n", 20, false},
    {"chain",
     [](auto& l) {
         l.AppendLine({0, 0}, {5, 5});
         l.AppendLine({5, 5}, {6, 7});
         l.AppendLine({6, 7}, {6, 7});
         l.AppendLine({0, 0}, {1, 1});
     },
     "Lines 0,0 5,5 6,7 6,7\nLines 0,0 1,1\n", 56, false},
    {"rectangles",
     [](auto& l) {
         l.AppendRectangle({{9, 8}, {-7, -6}}, false);
         l.AppendRectangle({{1, 2}, {3, 4}}, true);
     },
     "Rectangle 0 9,8 -7,-6\nRectangle 1 1,2 3,4\n", 40, false},
    {"circle",
     [](auto& l) {
         l.AppendCircle({1, 2}, 3, false);
     },
     "Circle 0 1,2 3\n", 16, false},
    {"arc",
     [](auto& l) {
         l.AppendArc({{1, 2}, 3, 4, 90.0F, -45.5F});
     },
     "Arc 1,2 3 4 90 -45.5\n", 28, false},
    {"polygon",
     [](auto& l) {
         l.AppendPolygon({kSquare, 5}, true);
     },
     "Polygon 1 0,0 10,0 10,10 0,10 0,0\n", 48, false},
    {"polygon without points",
     [](auto& l) {
         l.AppendPolygon({nullptr, 0}, false);
     },
     "Polygon 0\n", 8, false},
    {"rings",
     [](auto& l) {
         l.AppendPolyPolygon({kLengths, 2, {kSquare, 5}}, true);
     },
     "PolyPolygon 1 3 2 0,0 10,0 10,10 0,10 0,0\n", 60, false},
    {"text",
     [](auto& l) {
         l.AppendText({{1, 2}, {3, 4}}, "hello");
     },
     "Text 1,2 3,4 hello\n", 32, false},
    {"picture",
     [](auto& l) {
         l.AppendPicture({{1, 2}, {3, 4}}, 252, {kBytes, 5});
     },
     "Picture 1,2 3,4 252 1 2 3 4 5\n", 36, false},
    {"pattern leaves the list empty",
     [](auto& l) {
         l.DefineFillPattern({7, 9, 1, {kBytes, 2}});
     },
     "Pattern 7 9x1 1 2\n", 24, true},
    {"clip leaves the list empty",
     [](auto& l) {
         l.AppendClipRegion({kSquare, 2});
         l.EndClipRegion();
     },
     "Clip 0,0 10,0\nEndClip\n", 28, true},
};

class Record : public testing::TestWithParam<RecordCase> {};

TEST_P(Record, ComesBackInItsSize) {
    DisplayList list;
    EXPECT_TRUE(list.IsEmpty());
    GetParam().append(list);
    EXPECT_EQ(Printed(list), GetParam().text);
    EXPECT_EQ(list.UsedBytes(), GetParam().bytes);
    EXPECT_EQ(list.IsEmpty(), GetParam().empty);
}

INSTANTIATE_TEST_SUITE_P(All, Record, testing::ValuesIn(kRecords));

TEST(DisplayList, TracksEveryAttributeInAtMostEightBytes) {
    DisplayList list;
    list.AppendColour(RecordKind::kDrawColour, 0xFF0102);
    list.AppendColour(RecordKind::kFillColour, 5);
    list.AppendValue(RecordKind::kLayer, 3);
    list.AppendValue(RecordKind::kPen, 255);
    list.AppendValue(RecordKind::kLineWidth, 14);
    list.AppendValue(RecordKind::kLineAttributes, 0x1200);
    list.AppendValue(RecordKind::kDrawMode, 9);
    list.AppendFillStyle(3, -1);
    list.AppendLineDash(kGaps, 3);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.UsedBytes(), 2 * 4U + 6 * 8U + 16U);
    const std::string text = Printed(list);
    EXPECT_EQ(text.substr(text.rfind("pen")),
              "pen 255 layer 3 colour 16711938 5 line 0 14 4608 mode 9 fill 3 -1 "
              "dash 8 2 1\n");
}

TEST(DisplayList, StyleAndDashReplaceEachOther) {
    DisplayList list;
    list.AppendValue(RecordKind::kLineStyle, 2);
    list.AppendLineDash(kGaps, 2);
    list.AppendValue(RecordKind::kLineStyle, 4);
    list.AppendLineDash(kGaps, 0);
    const std::string text = Printed(list);
    std::istringstream lines(text);
    std::string line;
    std::vector<std::string> tails;
    while (std::getline(lines, line)) {
        tails.push_back(line.substr(line.find("line "), 7) + line.substr(line.find(" dash")));
    }
    EXPECT_EQ(tails, (std::vector<std::string>{"line 2  dash", "line 0  dash 8 2", "line 4  dash",
                                               "line 0  dash"}));
}

// Sums what it sees, so that a lost or repeated record at a chunk edge shows.
class Summing final : public DisplayListVisitor {
  public:
    void Lines(const DrawingStyle& style, PointSpan points) override {
        for (std::size_t i = 1; i < points.count; ++i) {
            ++lines;
            sum += points[i].x;
            EXPECT_EQ(points[i].x, points[i - 1].x + 1);
        }
        pen = style.pen;
    }
    void Polygon(const DrawingStyle&, PointSpan points, bool) override {
        polygonPoints += points.count;
    }

    std::int64_t sum = 0;
    std::size_t lines = 0;
    std::size_t polygonPoints = 0;
    std::int32_t pen = 0;
};

TEST(DisplayList, ManyChunks) {
    DisplayList list;
    list.AppendValue(RecordKind::kPen, 7);
    constexpr std::int32_t kLines = 1000000;
    for (std::int32_t i = 0; i < kLines; ++i) {
        list.AppendLine({i, 0}, {i + 1, 0});
        if (i % 1000 == 0) list.AppendValue(RecordKind::kPen, i);
    }
    const std::vector<PointI> large(400000);  // more than a chunk holds
    list.AppendPolygon({large.data(), large.size()}, false);
    list.AppendLine({0, 0}, {1, 0});
    EXPECT_GT(list.ChunkCount(), 5U);
    Summing sums;
    Play(list, sums);
    EXPECT_EQ(sums.lines, 1000001U);
    EXPECT_EQ(sums.sum, std::int64_t{kLines} * (kLines + 1) / 2 + 1);
    EXPECT_EQ(sums.polygonPoints, large.size());
    EXPECT_EQ(sums.pen, 999000);
    EXPECT_LT(list.UsedBytes(), 8U * 1000000 + 8U * 400000 + 40000);
}

}  // namespace
