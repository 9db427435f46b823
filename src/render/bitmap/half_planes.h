// HalfPlanes: how much of four dots lies on one side of a straight edge, exactly, by their distance
// from it. Test: tests/render/bitmap/stroke_quality_test.cpp.
#pragma once

#include <algorithm>
#include <cmath>

#include "render/bitmap/dot_quad.h"

namespace qm::bitmap {

// For edges of one direction and those at right angles to it.
class HalfPlanes {
  public:
    // `x` and `y`: a unit vector along the edge or across it.
    HalfPlanes(double x, double y) {
        constexpr double kFlattest = 1e-3;
        const double longer = std::max(std::abs(x), std::abs(y));
        const double shorter = std::max(std::min(std::abs(x), std::abs(y)), kFlattest);
        reach_ = AllFour(static_cast<float>((longer + shorter) / 2.0));
        straight_ = AllFour(static_cast<float>((longer - shorter) / 2.0));
        curve_ = AllFour(static_cast<float>(1.0 / (2.0 * longer * shorter)));
    }

    // The part, 0 to 1, that lies behind an edge which is `away` dots, not negative, in front of
    // the dot's centre: a corner of the dot, or between two parallel sides a strip that is the
    // difference of two corners.
    QuadFloats Beyond(QuadFloats away) const {
        const QuadFloats corner = AtLeast(reach_ - away, 0.0F);
        const QuadFloats rest = AtLeast(straight_ - away, 0.0F);
        return (corner * corner - rest * rest) * curve_;
    }
    // The part that lies inside, of a dot whose centre does `inside` dots.
    QuadFloats Inside(QuadFloats inside) const {
        const QuadFloats beyond = Beyond(Absolute(inside));
        return inside > AllFour(0.0F) ? 1.0F - beyond : beyond;
    }

  private:
    QuadFloats reach_;
    QuadFloats straight_;
    QuadFloats curve_;
};

}  // namespace qm::bitmap
