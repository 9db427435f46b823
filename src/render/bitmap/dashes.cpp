#include "render/bitmap/dashes.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

constexpr double kFinest = 0.25;  // dots, the average of a pattern's lengths

}  // namespace

double DistanceOf(PointD from, PointD to) { return Length(to.x - from.x, to.y - from.y); }

DashPattern PatternOf(const std::vector<double>& lengths, double dotsPerUnit) {
    DashPattern pattern;
    double dashes = 0.0;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const double length = lengths[i] * dotsPerUnit;
        pattern.lengths.push_back(length);
        pattern.period += length;
        if (i % 2 == 0) dashes += length;
    }
    if (pattern.lengths.empty()) return pattern;
    if (pattern.period < kFinest * static_cast<double>(pattern.lengths.size())) {
        pattern.lengths.clear();
        pattern.part = pattern.period > 0.0 ? dashes / pattern.period : 1.0;
    }
    return pattern;
}

double DashCutter::FirstRepetition(double seenFrom) const {
    // One more than needed: rounding must not leave out a dash.
    return std::max(0.0, std::floor((seenFrom + phase_) / pattern_.period) - 1.0);
}

void DashCutter::MoveOn(double length) { phase_ = std::fmod(phase_ + length, pattern_.period); }

DashCutter::Stretch DashCutter::InRows(PointD from, PointD to, double length) const {
    const double fall = (to.y - from.y) / length;
    if (fall == 0.0) {
        const bool inside = from.y >= top_ && from.y <= bottom_;
        return inside ? Stretch{0.0, length} : Stretch{length, 0.0};
    }
    const double a = (top_ - from.y) / fall;
    const double b = (bottom_ - from.y) / fall;
    return {std::min(a, b), std::max(a, b)};
}

}  // namespace qm::bitmap
