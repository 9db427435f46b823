// EdgeProfile: how much of a dot lies on one side of a straight edge, by distance and direction.
// Exact for edges and lines without ends. Test: tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "common/numbers.h"

namespace qm::bitmap {

class EdgeProfile {
  public:
    static constexpr int kStepsPerDot = 128;
    // Further than this from an edge a dot is covered whole or not at all: half a diagonal of it.
    static constexpr double kReach = 0.75;
    static constexpr int kDirections = 17;

    // Coverages 0 to 255 by the distance from a line's middle in steps; 0 behind the end.
    struct Line {
        static constexpr int kSteps = 224;  // half a width of 1 and the reach
        std::array<std::array<std::uint8_t, kSteps>, kDirections> coverage{};
    };

    EdgeProfile();

    // Of a unit vector along the edge, or across it.
    static int DirectionOf(double x, double y);
    // `inside`: distance from the edge in dots, positive when the dot's centre is inside.
    unsigned Coverage(int direction, double inside) const {
        if (inside >= kReach) return 255;
        if (inside <= -kReach) return 0;
        return edge_[static_cast<std::size_t>(direction)]
                    [static_cast<std::size_t>(TruncateToInt32((inside + kReach) * kStepsPerDot))];
    }
    // Of lines `halfWidth` dots to either side, 0.5 to 1, which is rounded to 1/64. Made when it is
    // first asked for.
    const Line& LineOf(double halfWidth);

  private:
    static constexpr int kWidths = 33;

    std::array<std::array<std::uint8_t, 193>, kDirections> edge_{};
    std::array<std::unique_ptr<Line>, kWidths> lines_;
};

}  // namespace qm::bitmap
