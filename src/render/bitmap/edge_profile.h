// EdgeProfile: how much of a dot lies on one side of a straight edge, looked up by distance and
// direction. Exact for edges without ends. Test: tests/render/bitmap/page_painter_test.cpp.
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
    // One for all.
    static const EdgeProfile& Known() {
        static const EdgeProfile profile;
        return profile;
    }

    // The number of a unit vector's direction, along the edge or across it, and a unit vector of
    // that number, between 0 and 45 degrees.
    static int DirectionOf(double x, double y);
    static PointD DirectionAt(int direction);
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
