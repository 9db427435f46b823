#include "render/bitmap/edge_profile.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

constexpr double kSineOf45 = 0.70710678;

struct Direction {
    double larger = 1.0;  // the parts of a unit vector across the edge
    double smaller = 0.0;
};

Direction DirectionAt(int index) {
    const double smaller = kSineOf45 * index / (EdgeProfile::kDirections - 1);
    return {std::sqrt(1.0 - smaller * smaller), smaller};
}

// The part of a square of side 1 whose middle lies `inside` dots inside a straight edge.
double Covered(const Direction& across, double inside) {
    const double reach = (across.larger + across.smaller) / 2.0;
    const double straight = (across.larger - across.smaller) / 2.0;
    if (inside >= reach) return 1.0;
    if (inside <= -reach) return 0.0;
    if (std::abs(inside) <= straight) return 0.5 + inside / across.larger;
    // A corner is cut off, or is all that is covered.
    const double depth = reach - std::abs(inside);
    const double corner = depth * depth / (2.0 * across.larger * across.smaller);
    return inside > 0.0 ? 1.0 - corner : corner;
}

std::uint8_t AsByte(double part) {
    return static_cast<std::uint8_t>(RoundToInt32(std::clamp(part, 0.0, 1.0) * 255.0));
}

}  // namespace

EdgeProfile::EdgeProfile() {
    for (int direction = 0; direction < kDirections; ++direction) {
        auto& row = edge_[static_cast<std::size_t>(direction)];
        for (std::size_t step = 0; step < row.size(); ++step) {
            const double inside = (static_cast<double>(step) + 0.5) / kStepsPerDot - kReach;
            row[step] = AsByte(Covered(DirectionAt(direction), inside));
        }
    }
}

int EdgeProfile::DirectionOf(double x, double y) {
    const double smaller = std::min(std::abs(x), std::abs(y));
    return std::clamp(RoundToInt32(smaller / kSineOf45 * (kDirections - 1)), 0, kDirections - 1);
}

const EdgeProfile::Line& EdgeProfile::LineOf(double halfWidth) {
    const int index = std::clamp(RoundToInt32((halfWidth - 0.5) * 64.0), 0, kWidths - 1);
    std::unique_ptr<Line>& line = lines_[static_cast<std::size_t>(index)];
    if (line) return *line;
    line = std::make_unique<Line>();
    const double half = 0.5 + index / 64.0;
    for (int direction = 0; direction < kDirections; ++direction) {
        const Direction across = DirectionAt(direction);
        auto& row = line->coverage[static_cast<std::size_t>(direction)];
        // The last one stays 0.
        for (std::size_t step = 0; step + 1 < row.size(); ++step) {
            const double away = (static_cast<double>(step) + 0.5) / kStepsPerDot;
            row[step] = AsByte(Covered(across, half - away) + Covered(across, half + away) - 1.0);
        }
    }
    return *line;
}

}  // namespace qm::bitmap
