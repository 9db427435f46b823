// Plain geometry types: points in current units (doubles) and in plotter units (32-bit integers).
#pragma once

#include <cstdint>

namespace qm {

// A point in current units: user units while scaling is on, plotter units otherwise.
struct PointD {
    double x = 0.0;
    double y = 0.0;
};

inline PointD operator+(PointD a, PointD b) { return {a.x + b.x, a.y + b.y}; }
inline PointD operator-(PointD a, PointD b) { return {a.x - b.x, a.y - b.y}; }

// A point in plotter units (1/1016 inch), as the drawing operations receive it. The builder and the
// host pass arrays of it on as pairs of 32-bit integers, so it must stay two of them without
// padding.
struct PointI {
    std::int32_t x = 0;
    std::int32_t y = 0;
};
static_assert(sizeof(PointI) == 2 * sizeof(std::int32_t));

inline bool operator==(PointI a, PointI b) { return a.x == b.x && a.y == b.y; }

}  // namespace qm
