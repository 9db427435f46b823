// Bezier curves: commands BZ and BR, drawn as runs of segments whatever the pen state is.
//
// Tests: tests/interpreter/curves_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/geometry.h"

namespace qm {

class HPGLRead;

// Turns cubic segments into points and sends them in runs; in polygon mode every point is drawn
// into the polygon.
class BezierEmitter {
  public:
    explicit BezierEmitter(HPGLRead& reader) : reader_(reader) {}

    // One segment by its four control points, current units: its start and the points at t = 1/12
    // ... 10/12.
    void Segment(const PointD* control);
    // The last segment's end, and what is left in the run.
    void Finish(PointD end);

  private:
    void Add(PointD point);

    // A run is sent when it holds this many points. Quirk: the segment that would join two runs is
    // not drawn.
    static constexpr std::size_t kRunLength = 99;

    HPGLRead& reader_;
    std::array<PointI, kRunLength> run_;
    std::size_t count_ = 0;
};

}  // namespace qm
