#include "render/bitmap/edge_profile.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

constexpr double kSineOf45 = 0.70710678;

// The part of a square of side 1 whose middle lies `inside` dots inside a straight edge.
double Covered(PointD across, double inside) {
    const double reach = (across.x + across.y) / 2.0;
    const double straight = (across.x - across.y) / 2.0;
    if (inside >= reach) return 1.0;
    if (inside <= -reach) return 0.0;
    if (std::abs(inside) <= straight) return 0.5 + inside / across.x;
    // A corner is cut off, or is all that is covered.
    const double depth = reach - std::abs(inside);
    const double corner = depth * depth / (2.0 * across.x * across.y);
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

PointD EdgeProfile::DirectionAt(int direction) {
    const double smaller = kSineOf45 * direction / (kDirections - 1);
    return {std::sqrt(1.0 - smaller * smaller), smaller};
}

int EdgeProfile::DirectionOf(double x, double y) {
    const double smaller = std::min(std::abs(x), std::abs(y));
    const std::int32_t direction = TruncateToInt32(smaller / kSineOf45 * (kDirections - 1) + 0.5);
    return std::min(direction, kDirections - 1);
}

}  // namespace qm::bitmap
