// Numbers and points as bytes, there and back.
#include "host/packed_points.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace qm;

struct NumberRow {
    std::int32_t value;
    std::ptrdiff_t bytes;
};

TEST(PackedPoints, NumbersNearZeroAreShort) {
    const NumberRow rows[] = {{0, 1},        {-1, 1},         {63, 1},      {-64, 1},
                              {64, 2},       {8191, 2},       {-8192, 2},   {8192, 3},
                              {1 << 20, 4},  {-(1 << 27), 4}, {1 << 27, 5}, {INT32_MAX, 5},
                              {INT32_MIN, 5}};
    for (const NumberRow& row : rows) {
        std::uint8_t bytes[kMaxNumberBytes];
        EXPECT_EQ(PutNumber(bytes, row.value) - bytes, row.bytes) << row.value;
        const std::uint8_t* at = bytes;
        EXPECT_EQ(TakeNumber(at), row.value);
        EXPECT_EQ(at - bytes, row.bytes) << row.value;
    }
}

struct BlockRow {
    const char* name;
    PointI difference;
    unsigned form;
    std::ptrdiff_t bytes;  // of a point
};

TEST(PackedPoints, TheLargestDifferenceDecides) {
    const BlockRow rows[] = {
        {"none", {0, 0}, 0, 2},
        {"a byte, up", {127, 127}, 0, 2},
        {"a byte, down", {-128, -128}, 0, 2},
        {"x beyond a byte", {128, 0}, 1, 3},
        {"y beyond a byte", {0, -129}, 1, 3},
        {"twelve bits", {2047, -2048}, 1, 3},
        {"twelve bits, the other way", {-2048, 2047}, 1, 3},
        {"x beyond twelve bits", {2048, 0}, 2, 4},
        {"sixteen bits", {-32768, 32767}, 2, 4},
        {"y beyond sixteen bits", {0, -32769}, 3, 8},
        {"all bits", {INT32_MAX, INT32_MIN}, 3, 8},
    };
    for (const BlockRow& row : rows) {
        const auto moved = [&](PointI from) {
            return PointI{WrapAdd(from.x, row.difference.x), WrapAdd(from.y, row.difference.y)};
        };
        const PointI first{INT32_MAX, INT32_MIN};  // from where most differences wrap
        const std::vector<PointI> points = {first, moved(first), moved(first), moved(moved(first))};
        const BlockShape shape = ShapeOf(&points[1], 3);
        EXPECT_EQ(shape.form, row.form) << row.name;
        for (const PointI p : points) {
            EXPECT_TRUE(shape.box.a.x <= p.x && shape.box.a.y <= p.y && p.x <= shape.box.b.x &&
                        p.y <= shape.box.b.y)
                << row.name;
        }
        std::uint8_t bytes[3 * kMaxPointBytes];
        EXPECT_EQ(PutBlock(bytes, &points[1], 3, row.form) - bytes, 3 * row.bytes) << row.name;
        std::vector<PointI> taken = {first, {}, {}, {}};
        EXPECT_EQ(TakeBlock(bytes, &taken[1], 3, row.form) - bytes, 3 * row.bytes) << row.name;
        EXPECT_TRUE(taken == points) << row.name;
    }
}

}  // namespace
