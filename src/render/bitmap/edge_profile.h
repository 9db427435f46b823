// EdgeProfile: how much of a dot lies on one side of a straight edge, by distance and direction.
// Exact for edges and lines without ends. Test: tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/geometry.h"
#include "common/numbers.h"

namespace qm::bitmap {

class EdgeProfile {
  public:
    static constexpr int kStepsPerDot = 128;
    // Further than this from an edge a dot is covered whole or not at all: half a diagonal of it.
    static constexpr double kReach = 0.75;
    static constexpr int kDirections = 17;

    EdgeProfile();

    // The number of a unit vector's direction, along the edge or across it, and a unit vector of
    // that number, between 0 and 45 degrees.
    static int DirectionOf(double x, double y);
    static PointD DirectionAt(int direction);
    // 0 to 255: of a dot whose centre lies `away` dots from the middle of an endless line,
    // `halfWidth` (at least 0.5) dots to either side.
    static std::uint8_t CoverageOfLine(int direction, double halfWidth, double away);
    // Coverages of a dot from kReach outside to kReach inside in steps, the last one being whole.
    const std::uint8_t* Edge(int direction) const {
        return edge_[static_cast<std::size_t>(direction)].data();
    }
    // `inside`: distance from the edge in dots, positive when the dot's centre is inside.
    unsigned Coverage(int direction, double inside) const {
        if (inside >= kReach) return 255;
        if (inside <= -kReach) return 0;
        return edge_[static_cast<std::size_t>(direction)]
                    [static_cast<std::size_t>(TruncateToInt32((inside + kReach) * kStepsPerDot))];
    }

  private:
    std::array<std::array<std::uint8_t, 193>, kDirections> edge_{};
};

}  // namespace qm::bitmap
