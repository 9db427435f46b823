// Plain geometry: points and boxes, in current units as doubles and in plotter units as 32-bit
// integers.
#pragma once

#include <cstdint>

namespace qm {

template <typename T>
struct Point {
    T x{};
    T y{};
};

// In current units: user units while scaling is on, plotter units otherwise.
using PointD = Point<double>;
// In plotter units (1/1016 inch), as the drawing operations receive it. The builder and the host
// pass arrays of it on as pairs of 32-bit integers, so it must stay two of them without padding.
using PointI = Point<std::int32_t>;
static_assert(sizeof(PointI) == 2 * sizeof(std::int32_t));

template <typename T>
bool operator==(Point<T> a, Point<T> b) {
    return a.x == b.x && a.y == b.y;
}
inline PointD operator+(PointD a, PointD b) { return {a.x + b.x, a.y + b.y}; }
inline PointD operator-(PointD a, PointD b) { return {a.x - b.x, a.y - b.y}; }

// A rectangle between two opposite corners, in no given order.
template <typename T>
struct Box {
    Point<T> a;
    Point<T> b;
};
using BoxI = Box<std::int32_t>;

}  // namespace qm
