// Plain geometry: points and boxes, in current units as doubles and in plotter units as 32-bit
// integers, and the extent of what is drawn.
#pragma once

#include <algorithm>
#include <cstddef>
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

// Runs of lines that continue each other, their points one behind the other.
struct Strokes {
    const PointI* points = nullptr;
    std::size_t count = 0;                  // of all points
    const std::uint8_t* lengths = nullptr;  // points of each run, at least two
    std::size_t runs = 0;
};

// A rectangle between two opposite corners, in no given order.
template <typename T>
struct Box {
    Point<T> a;
    Point<T> b;
};
using BoxI = Box<std::int32_t>;

// The same rectangle from its lower left to its upper right corner.
template <typename T>
Box<T> Ordered(const Box<T>& box) {
    return {{std::min(box.a.x, box.b.x), std::min(box.a.y, box.b.y)},
            {std::max(box.a.x, box.b.x), std::max(box.a.y, box.b.y)}};
}

// The box around `count` points, at least one.
inline BoxI BoxAround(const PointI* points, std::size_t count) {
    BoxI box{points[0], points[0]};
    for (std::size_t i = 1; i < count; ++i) {
        box.a = {std::min(box.a.x, points[i].x), std::min(box.a.y, points[i].y)};
        box.b = {std::max(box.b.x, points[i].x), std::max(box.b.y, points[i].y)};
    }
    return box;
}

// The box around what was added, in plotter units; doubles, because a width or a radius may lead
// beyond 32 bits. All 0 while it is empty.
struct Extent {
    double minX = 0.0;
    double minY = 0.0;
    double maxX = 0.0;
    double maxY = 0.0;
    bool empty = true;

    void Add(double x, double y) {
        minX = empty ? x : std::min(minX, x);
        minY = empty ? y : std::min(minY, y);
        maxX = empty ? x : std::max(maxX, x);
        maxY = empty ? y : std::max(maxY, y);
        empty = false;
    }
    double Width() const { return maxX - minX; }
    double Height() const { return maxY - minY; }
};

}  // namespace qm
