#include "render/bitmap/stroke_outline.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

// A mitre is not longer than so many half widths, else the join is bevelled (the language's 5 line
// widths).
constexpr double kMitreLimit = 5.0;
// How far the corners of a polygon may lie beside the circle it stands for, in dots.
constexpr double kJoinRoundness = 0.05;

PointD Scaled(PointD vector, double by) { return {vector.x * by, vector.y * by}; }
PointD Across(PointD along) { return {along.y, -along.x}; }

int StepsOf(double radius, double angle) {
    const double step =
        2.0 * std::acos(std::max(0.0, 1.0 - kJoinRoundness / std::max(radius, 0.1)));
    return std::clamp(TruncateToInt32(std::ceil(angle / step)), 1, 1000);
}

}  // namespace

bool StrokeOutline::IsOutside(PointD a, PointD b, double reach) const {
    return std::max(a.y, b.y) + reach < bounds_.top || std::min(a.y, b.y) - reach > bounds_.bottom;
}

void StrokeOutline::Flush() {
    area_.AddRing(ring_.data(), ring_.size());
    ring_.clear();
}

void StrokeOutline::Add(const std::vector<PointD>& points, bool closed) {
    bool hasFirst = false;
    Line first;
    Line last;
    for (std::size_t i = 1; i < points.size(); ++i) {
        Line line{points[i - 1], points[i], {}};
        const PointD way = line.to - line.from;
        const double length = Length(way.x, way.y);
        if (length == 0.0) continue;
        line.along = Scaled(way, 1.0 / length);
        AddBody(line);
        if (hasFirst) {
            AddJoin(last, line);
        } else {
            first = line;
            hasFirst = true;
        }
        last = line;
    }
    if (!hasFirst) {
        if (!points.empty()) AddDisc(points.front());
        return;
    }
    if (closed) return AddJoin(last, first);
    AddEnd(first.from, Scaled(first.along, -1.0));
    AddEnd(last.to, last.along);
}

void StrokeOutline::AddDisc(PointD centre) {
    if (IsOutside(centre, centre, shape_.halfWidth)) return;
    const int steps = std::max(8, StepsOf(shape_.halfWidth, kTwoPi));
    for (int i = 0; i < steps; ++i) {
        const double angle = kTwoPi * i / steps;
        ring_.push_back({centre.x + shape_.halfWidth * std::cos(angle),
                         centre.y + shape_.halfWidth * std::sin(angle)});
    }
    Flush();
}

void StrokeOutline::AddBody(const Line& line) {
    if (IsOutside(line.from, line.to, shape_.halfWidth)) return;
    const PointD side = Scaled(Across(line.along), shape_.halfWidth);
    ring_ = {line.from + side, line.to + side, line.to - side, line.from - side};
    Flush();
}

// Half a disc, or a rectangle.
void StrokeOutline::AddEnd(PointD end, PointD outward) {
    if (shape_.cap == LineCap::kButt || IsOutside(end, end, 2.0 * shape_.halfWidth)) return;
    const PointD side = Scaled(Across(outward), shape_.halfWidth);
    const PointD reach = Scaled(outward, shape_.halfWidth);
    if (shape_.cap == LineCap::kSquare) {
        ring_ = {end + side, end + side + reach, end - side + reach, end - side};
        return Flush();
    }
    const int steps = std::max(4, StepsOf(shape_.halfWidth, kTwoPi / 2.0));
    for (int i = 0; i <= steps; ++i) {
        const double angle = kTwoPi / 2.0 * i / steps;
        ring_.push_back(end + Scaled(side, std::cos(angle)) + Scaled(reach, std::sin(angle)));
    }
    Flush();
}

// The wedge between two lines on the outer side of their corner; with the bodies of the lines it
// has no dots in common.
void StrokeOutline::AddJoin(const Line& line, const Line& next) {
    const double turn = line.along.x * next.along.y - line.along.y * next.along.x;
    const double straight = line.along.x * next.along.x + line.along.y * next.along.y;
    if (turn == 0.0 && straight > 0.0) return;
    const PointD corner = next.from;
    if (IsOutside(corner, corner, kMitreLimit * shape_.halfWidth)) return;
    // The outer side lies across from where the second line turns to.
    const double outer = turn > 0.0 ? shape_.halfWidth : -shape_.halfWidth;
    const PointD from = Scaled(Across(line.along), outer);
    const PointD to = Scaled(Across(next.along), outer);
    if (shape_.join == LineJoin::kRound) return AddPie(corner, from, to);
    ring_ = {corner, corner + from};
    // The tip of a mitre lies half widths / cosine of half the turn away.
    const double cosine = std::sqrt(std::max(0.0, (1.0 + straight) / 2.0));
    if (shape_.join == LineJoin::kMitre && cosine * kMitreLimit >= 1.0) {
        ring_.push_back(corner + Scaled(from + to, 1.0 / (2.0 * cosine * cosine)));
    }
    ring_.push_back(corner + to);
    Flush();
}

void StrokeOutline::AddPie(PointD centre, PointD from, PointD to) {
    const double turn = std::atan2(from.x * to.y - from.y * to.x, from.x * to.x + from.y * to.y);
    const int steps = StepsOf(shape_.halfWidth, std::abs(turn));
    const PointD beside{-from.y, from.x};
    ring_ = {centre, centre + from};
    for (int i = 1; i < steps; ++i) {
        const double angle = turn * i / steps;
        ring_.push_back(centre + Scaled(from, std::cos(angle)) + Scaled(beside, std::sin(angle)));
    }
    ring_.push_back(centre + to);
    Flush();
}

}  // namespace qm::bitmap
