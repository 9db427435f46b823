// Dashes: cuts lines into the dashes of a pattern. Test: tests/render/bitmap/dashes_test.cpp.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/geometry.h"

namespace qm::bitmap {

// A dash pattern in dots of a page.
struct DashPattern {
    std::vector<double> lengths;  // dash, gap, dash, ...; an even number, empty for a solid line
    double period = 0.0;          // their sum
    double part = 1.0;            // of a line that dashes cover
};

// `lengths` as DashesOf gives them, in units of `dotsPerUnit` dots. A pattern whose lengths are on
// average below a quarter of a dot comes out empty, `part` telling how dense it is: nothing of it
// could be seen, and a page could hold any number of its dashes.
DashPattern PatternOf(const std::vector<double>& lengths, double dotsPerUnit);

// Calls emit(points) for each dash of lines that reaches into rows `top` to `bottom`. Takes time
// for the dashes that do, and for each line, not for those in between. Each dash lies where it
// would lie with any other rows.
class DashCutter {
  public:
    // `pattern` has lengths and outlives this.
    DashCutter(const DashPattern& pattern, double top, double bottom)
        : pattern_(pattern), top_(top), bottom_(bottom) {}

    template <typename Emit>
    void Cut(const std::vector<PointD>& points, const Emit& emit) {
        phase_ = 0.0;
        for (std::size_t i = 1; i < points.size(); ++i) CutLine(points[i - 1], points[i], emit);
        End(emit);
    }

  private:
    // Places along a line between which it is in the rows.
    struct Stretch {
        double from = 0.0;
        double to = 0.0;
    };
    Stretch InRows(PointD from, PointD to, double length) const;
    double FirstRepetition(double seenFrom) const;
    void MoveOn(double length);

    template <typename Emit>
    void End(const Emit& emit) {
        if (!dash_.empty()) emit(dash_);
        dash_.clear();
    }
    template <typename Emit>
    void CutLine(PointD from, PointD to, const Emit& emit);

    const DashPattern& pattern_;
    double top_;
    double bottom_;
    double phase_ = 0.0;  // place in the pattern where the line at hand begins
    std::vector<PointD> dash_;
};

double DistanceOf(PointD from, PointD to);

template <typename Emit>
void DashCutter::CutLine(PointD from, PointD to, const Emit& emit) {
    const double length = DistanceOf(from, to);
    if (length == 0.0) return;
    const auto pointAt = [&](double place) {
        return PointD{from.x + (to.x - from.x) * (place / length),
                      from.y + (to.y - from.y) * (place / length)};
    };
    const Stretch seen = InRows(from, to, length);
    const double last = std::min(length, seen.to);
    double repetition = FirstRepetition(seen.from);
    if (repetition > 0.0) End(emit);
    for (bool more = true; more; repetition += 1.0) {
        double place = repetition * pattern_.period - phase_;
        for (std::size_t i = 0; more && i < pattern_.lengths.size(); i += 2) {
            const double dashEnd = place + pattern_.lengths[i];
            more = place < length && place <= last;
            if (more && dashEnd >= 0.0) {
                if (place >= 0.0) {
                    End(emit);
                    dash_.push_back(pointAt(place));
                } else if (dash_.empty()) {
                    dash_.push_back(from);
                }
                dash_.push_back(dashEnd < length ? pointAt(dashEnd) : to);
                if (dashEnd < length) End(emit);
            }
            place = dashEnd + pattern_.lengths[i + 1];
        }
    }
    MoveOn(length);
}

}  // namespace qm::bitmap
