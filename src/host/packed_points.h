// Numbers and points as the bytes of a display list.
//
// Numbers are written in groups of seven bits, those near zero in one byte. Points are written as
// differences from the point in front of them, in blocks; all differences of a block have the same
// size, which the largest decides, because that reads several times as fast as a size for each:
// 2 bytes a point within 127 units, 3 within 2047, 4 within 32767, else 8. Differences wrap, so
// every point can follow every other. The bytes never leave the process: the readers trust them,
// and numbers of several bytes have the processor's order. Test: tests/host/packed_points_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "common/geometry.h"
#include "common/numbers.h"

namespace qm {

inline constexpr std::size_t kMaxNumberBytes = 5;
inline constexpr std::size_t kMaxPointBytes = 8;

// Small magnitudes of both signs as small numbers: 0, -1, 1, -2, ... to 0, 1, 2, 3, ...
inline std::uint32_t FoldSign(std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    return (bits << 1) ^ (0U - (bits >> 31));
}
inline std::int32_t UnfoldSign(std::uint32_t folded) {
    return static_cast<std::int32_t>((folded >> 1) ^ (0U - (folded & 1U)));
}

// Write at `at`, where there must be room for the kMax... bytes, and return the byte behind.
inline std::uint8_t* PutCount(std::uint8_t* at, std::uint32_t value) {
    for (; value >= 0x80; value >>= 7) *at++ = static_cast<std::uint8_t>(value | 0x80);
    *at++ = static_cast<std::uint8_t>(value);
    return at;
}
inline std::uint8_t* PutNumber(std::uint8_t* at, std::int32_t value) {
    return PutCount(at, FoldSign(value));
}
// `point` as it lies from `last`, which then is `point`.
inline std::uint8_t* PutPoint(std::uint8_t* at, PointI point, PointI& last) {
    at = PutNumber(at, WrapSubtract(point.x, last.x));
    at = PutNumber(at, WrapSubtract(point.y, last.y));
    last = point;
    return at;
}

// Read what the functions above wrote and move `at` behind it.
inline std::uint32_t TakeCount(const std::uint8_t*& at) {
    std::uint32_t value = *at & 0x7FU;
    for (unsigned shift = 7; *at++ >= 0x80; shift += 7) value |= (*at & 0x7FU) << shift;
    return value;
}
inline std::int32_t TakeNumber(const std::uint8_t*& at) { return UnfoldSign(TakeCount(at)); }
inline PointI TakePoint(const std::uint8_t*& at, PointI& last) {
    last.x = WrapAdd(last.x, TakeNumber(at));
    last.y = WrapAdd(last.y, TakeNumber(at));
    return last;
}

// Points in a block at most.
inline constexpr std::size_t kBlockPoints = 63;

// What is to be known of a block: the form of its differences (0 to 3) and the box around its
// points and the one in front of them.
struct BlockShape {
    unsigned form = 0;
    BoxI box;
};
// `points[-1]` must exist; `count` may be 0.
BlockShape ShapeOf(const PointI* points, std::size_t count);
// Writes the differences of points[0], points[1], ... from the points in front of them.
std::uint8_t* PutBlock(std::uint8_t* at, const PointI* points, std::size_t count, unsigned form);
// Reads them into points[0], points[1], ...; points[-1] must hold what it held.
const std::uint8_t* TakeBlock(const std::uint8_t* at, PointI* points, std::size_t count,
                              unsigned form);

// Any number of points above 0 and their end: the first from `last`, which then is the last one,
// the others in blocks. `box` becomes the box around them.
std::uint8_t* PutRun(std::uint8_t* at, const PointI* points, std::size_t count, PointI& last,
                     BoxI& box);
constexpr std::size_t MaxRunBytes(std::size_t count) {
    return 2 * kMaxNumberBytes + count * kMaxPointBytes + count / kBlockPoints + 1;
}
// The blocks of a run alone. A block's first byte holds its form and its points; a full one says
// that another follows.
inline std::uint8_t BlockHead(unsigned form, std::size_t count) {
    return static_cast<std::uint8_t>((form << 6) | static_cast<unsigned>(count));
}
inline unsigned FormInHead(std::uint8_t head) { return head >> 6; }
inline std::size_t CountInHead(std::uint8_t head) { return head & 0x3FU; }

}  // namespace qm
