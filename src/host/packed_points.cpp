// See packed_points.h.
#include "host/packed_points.h"

#include <algorithm>
#include <cstring>

namespace qm {

namespace {

// Differences are stored with this added, so that all of a form are unsigned.
constexpr std::int32_t kBias8 = 0x80;
constexpr std::int32_t kBias12 = 0x800;
constexpr std::int32_t kBias16 = 0x8000;

// Calls put(dx, dy) for each point.
template <typename Put>
void ForEachDifference(const PointI* points, std::size_t count, const Put& put) {
    PointI last = points[-1];
    for (std::size_t i = 0; i < count; ++i) {
        const PointI point = points[i];
        put(WrapSubtract(point.x, last.x), WrapSubtract(point.y, last.y));
        last = point;
    }
}

// Sets each point by what take() answers as its difference.
template <typename Take>
void AddDifferences(PointI* points, std::size_t count, const Take& take) {
    PointI last = points[-1];
    for (std::size_t i = 0; i < count; ++i) {
        const PointI difference = take();
        last = {WrapAdd(last.x, difference.x), WrapAdd(last.y, difference.y)};
        points[i] = last;
    }
}

}  // namespace

BlockShape ShapeOf(const PointI* points, std::size_t count) {
    std::uint32_t all = 0;
    PointI last = points[-1];
    PointI low = last;
    PointI high = last;
    for (std::size_t i = 0; i < count; ++i) {
        const PointI point = points[i];
        all |= FoldSign(WrapSubtract(point.x, last.x)) | FoldSign(WrapSubtract(point.y, last.y));
        low = {std::min(low.x, point.x), std::min(low.y, point.y)};
        high = {std::max(high.x, point.x), std::max(high.y, point.y)};
        last = point;
    }
    return {all < 0x100 ? 0U : all < 0x1000 ? 1U : all < 0x10000 ? 2U : 3U, {low, high}};
}

std::uint8_t* PutBlock(std::uint8_t* at, const PointI* points, std::size_t count, unsigned form) {
    switch (form) {
        case 0:
            ForEachDifference(points, count, [&](std::int32_t dx, std::int32_t dy) {
                at[0] = static_cast<std::uint8_t>(dx + kBias8);
                at[1] = static_cast<std::uint8_t>(dy + kBias8);
                at += 2;
            });
            return at;
        case 1:
            ForEachDifference(points, count, [&](std::int32_t dx, std::int32_t dy) {
                const auto x = static_cast<std::uint32_t>(dx + kBias12);
                const auto y = static_cast<std::uint32_t>(dy + kBias12);
                at[0] = static_cast<std::uint8_t>(x);
                at[1] = static_cast<std::uint8_t>((x >> 8) | (y << 4));
                at[2] = static_cast<std::uint8_t>(y >> 4);
                at += 3;
            });
            return at;
        case 2:
            ForEachDifference(points, count, [&](std::int32_t dx, std::int32_t dy) {
                const std::uint16_t both[] = {static_cast<std::uint16_t>(dx + kBias16),
                                              static_cast<std::uint16_t>(dy + kBias16)};
                std::memcpy(at, both, sizeof both);
                at += sizeof both;
            });
            return at;
        default:
            ForEachDifference(points, count, [&](std::int32_t dx, std::int32_t dy) {
                const std::int32_t both[] = {dx, dy};
                std::memcpy(at, both, sizeof both);
                at += sizeof both;
            });
            return at;
    }
}

const std::uint8_t* TakeBlock(const std::uint8_t* at, PointI* points, std::size_t count,
                              unsigned form) {
    switch (form) {
        case 0:
            AddDifferences(points, count, [&] {
                const PointI difference{at[0] - kBias8, at[1] - kBias8};
                at += 2;
                return difference;
            });
            return at;
        case 1:
            AddDifferences(points, count, [&] {
                const PointI difference{(at[0] | (at[1] & 0xF) << 8) - kBias12,
                                        (at[1] >> 4 | at[2] << 4) - kBias12};
                at += 3;
                return difference;
            });
            return at;
        case 2:
            AddDifferences(points, count, [&] {
                std::uint16_t both[2];
                std::memcpy(both, at, sizeof both);
                at += sizeof both;
                return PointI{both[0] - kBias16, both[1] - kBias16};
            });
            return at;
        default:
            AddDifferences(points, count, [&] {
                std::int32_t both[2];
                std::memcpy(both, at, sizeof both);
                at += sizeof both;
                return PointI{both[0], both[1]};
            });
            return at;
    }
}

std::uint8_t* PutRun(std::uint8_t* at, const PointI* points, std::size_t count, PointI& last,
                     BoxI& box) {
    at = PutPoint(at, points[0], last);
    box = {points[0], points[0]};
    ++points;
    --count;
    std::size_t block = 0;
    do {
        block = std::min(count, kBlockPoints);
        const BlockShape shape = ShapeOf(points, block);
        box.a = {std::min(box.a.x, shape.box.a.x), std::min(box.a.y, shape.box.a.y)};
        box.b = {std::max(box.b.x, shape.box.b.x), std::max(box.b.y, shape.box.b.y)};
        *at++ = BlockHead(shape.form, block);
        at = PutBlock(at, points, block, shape.form);
        points += block;
        count -= block;
    } while (block == kBlockPoints);
    last = points[-1];
    return at;
}

}  // namespace qm
