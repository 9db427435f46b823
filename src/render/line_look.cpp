// See line_look.h.
#include "render/line_look.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "common/numbers.h"

namespace qm {

namespace {

constexpr std::int32_t kFlatEnds = 0x200;
constexpr std::int32_t kSquareEnds = 0x100;
constexpr std::int32_t kBevelJoins = 0x1000;
constexpr std::int32_t kMitreJoins = 0x2000;

// Dashes of 3 mm, dots of 0.25 mm, gaps of 1.25 mm for a pen of 0.35 mm or thinner.
constexpr double kDash = 120.0;
constexpr double kDot = 10.0;
constexpr double kGap = 50.0;
constexpr double kThinPen = 14.0;

std::vector<double> PredefinedDashes(std::int32_t lineStyle) {
    switch (lineStyle) {
        case 1:
            return {kDash, kGap};
        case 2:
            return {kDot, kGap};
        case 3:
            return {kDash, kGap, kDot, kGap};
        case 4:
            return {kDash, kGap, kDot, kGap, kDot, kGap};
        default:
            return {};
    }
}

}  // namespace

LineCap CapOf(std::int32_t lineAttributes) {
    if ((lineAttributes & kFlatEnds) != 0) return LineCap::kButt;
    return (lineAttributes & kSquareEnds) != 0 ? LineCap::kSquare : LineCap::kRound;
}

LineJoin JoinOf(std::int32_t lineAttributes) {
    if ((lineAttributes & kBevelJoins) != 0) return LineJoin::kBevel;
    return (lineAttributes & kMitreJoins) != 0 ? LineJoin::kMitre : LineJoin::kRound;
}

std::vector<double> DashesOf(const DrawingStyle& style) {
    if (style.dashCount == 0) {
        std::vector<double> dashes = PredefinedDashes(style.lineStyle);
        const double factor = std::max(1.0, style.lineWidth / kThinPen);
        for (double& length : dashes) length *= factor;
        return dashes;
    }
    std::vector<double> dashes(style.dash, style.dash + style.dashCount);
    for (double& length : dashes) length = std::max(length, 0.0);
    // Each repetition starts with the pen down: an odd list ends in a dash that the next one
    // continues.
    if (dashes.size() % 2 != 0) dashes.push_back(0.0);
    double gaps = 0.0;
    for (std::size_t i = 1; i < dashes.size(); i += 2) gaps += dashes[i];
    if (gaps <= 0.0) dashes.clear();
    return dashes;
}

bool IsDot(PointSpan points) {
    return std::all_of(points.begin(), points.end(), [&](PointI p) { return p == points[0]; });
}

bool IsWholeEllipse(const ArcShape& arc) {
    // Not 360: the factor between degrees and radians is cut, so a full turn comes as 359.99999.
    constexpr float kFullTurn = 359.999F;
    constexpr float kManyTurns = 1e6F;
    return !(std::abs(arc.span) < kFullTurn && std::abs(arc.start) < kManyTurns);
}

PointD PointOnArc(const ArcShape& arc, double degrees) {
    return {arc.centre.x + arc.radiusX * std::cos(degrees * kRadiansPerDegree),
            arc.centre.y + arc.radiusY * std::sin(degrees * kRadiansPerDegree)};
}

Blend BlendOfDrawMode(std::int32_t drawMode) {
    switch (drawMode) {
        case 6:  // inverts the paper
        case 7:  // exclusive or
            return Blend::kDifference;
        case 9:
            return Blend::kDarken;
        case 11:  // nothing
            return Blend::kNone;
        case 15:
            return Blend::kLighten;
        default:
            return Blend::kNormal;
    }
}

Blend BlendOfPicture(std::int32_t rasterOperation) {
    switch (rasterOperation) {
        case 0x88:  // source and paper, with and without the pattern
        case 0x80:
        case 0xA0:
        case 0xA8:
            return Blend::kDarken;
        case 0x66:
        case 0x5A:
            return Blend::kDifference;
        case 0xEE:
        case 0xFA:
            return Blend::kLighten;
        case 0xAA:  // the paper alone
            return Blend::kNone;
        default:
            return Blend::kNormal;
    }
}

}  // namespace qm
