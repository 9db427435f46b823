// StrokeOutline: lines of any width with their ends and joins as outlines in a CoverageArea, which
// makes one area of them. Test: tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <cstddef>
#include <vector>

#include "common/geometry.h"
#include "render/bitmap/coverage_area.h"
#include "render/line_look.h"

namespace qm::bitmap {

struct StrokeShape {
    double halfWidth = 0.5;  // dots, above 0
    LineCap cap = LineCap::kRound;
    LineJoin join = LineJoin::kRound;
};

class StrokeOutline {
  public:
    // Adds to `area`; parts without rows in common with `bounds` are left out.
    StrokeOutline(CoverageArea& area, const DotBox& bounds, const StrokeShape& shape)
        : area_(area), bounds_(bounds), shape_(shape) {}

    // The lines between points that follow each other, in dots of the page; points that are all the
    // same make a round dot.
    void Add(const std::vector<PointD>& points, bool closed);

  private:
    // A line's direction, a unit vector.
    struct Line {
        PointD from;
        PointD to;
        PointD along;
    };

    void AddDisc(PointD centre);
    void AddBody(const Line& line);
    void AddEnd(PointD end, PointD outward);
    void AddJoin(const Line& line, const Line& next);
    void AddPie(PointD centre, PointD from, PointD to);
    bool IsOutside(PointD a, PointD b, double reach) const;
    void Flush();

    CoverageArea& area_;
    DotBox bounds_;
    StrokeShape shape_;
    std::vector<PointD> ring_;
};

}  // namespace qm::bitmap
