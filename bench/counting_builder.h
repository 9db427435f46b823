// CountingBuilder: drops every drawing operation but counts lines, points and pictures, so that
// nothing is optimised away and a wrong reading shows. What the benchmarks measure with it is
// reading alone.
#pragma once

#include "interpreter/null_builder.h"

namespace qm {

class CountingBuilder final : public NullBuilder {
  public:
    using NullBuilder::NullBuilder;

    std::uint64_t primitives = 0;

    void Line(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override { ++primitives; }
    void Circle(std::int32_t, std::int32_t, std::int32_t) override { ++primitives; }
    void FilledPolyPolygon(PointI*, const std::int32_t*, std::int32_t) override { ++primitives; }
    void Polyline(std::int32_t, PointI*) override { ++primitives; }
    void FilledPolygon(std::int32_t, PointI*) override { ++primitives; }
    void Raster(std::int32_t, std::int32_t, std::int32_t, std::int32_t, void* bitmap, std::int32_t,
                std::int32_t) override {
        ++primitives;
        GlobalFree(bitmap);
    }
};

}  // namespace qm
