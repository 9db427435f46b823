#include "render/pdf/path_writer.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "render/svg_path.h"

namespace qm::pdf {

namespace {

constexpr double kTurn = 360.0;
// From this radius on, curves lie on whole plotter units as lines do.
constexpr double kWholeUnitsRadius = 250.0;
// The exact factor: a cut one would leave a gap in a full turn.
constexpr double kPi = 3.14159265358979323846;

// Degrees of a Bezier curve whose distance from the arc stays below half a plotter unit, which is
// 1/80 mm.
double StepFor(double radius) {
    constexpr double kQuarterTurnRadius = 1800.0;
    constexpr double kSixthTurnRadius = 20000.0;
    if (radius <= kQuarterTurnRadius) return 90.0;
    return radius <= kSixthTurnRadius ? 60.0 : 15.0;
}

struct Direction {
    double cosine;
    double sine;
};

Direction DirectionOf(double degrees) {
    const double radians = degrees * kPi / 180.0;
    return {std::cos(radians), std::sin(radians)};
}

}  // namespace

void PathWriter::Polyline(PointSpan points, bool close) {
    if (points.count == 0) return;
    const bool joined = open_ && !close && points[0] == at_;
    if (!joined) Place(points[0], 'm');
    for (std::size_t i = 1; i < points.count; ++i) Place(points[i], 'l');
    if (points.count == 1) Place(points[0], 'l');
    if (close) out_ << "h\n";
    segments_ += points.count;
    at_ = points[points.count - 1];
    open_ = !close;
}

void PathWriter::Rectangle(const BoxI& box) {
    out_ << std::int64_t{box.a.x} - origin_.x << std::int64_t{box.a.y} - origin_.y
         << std::int64_t{box.b.x} - box.a.x << std::int64_t{box.b.y} - box.a.y << "re\n";
    segments_ += 4;
    open_ = false;
}

void PathWriter::Arc(const ArcShape& arc) {
    const bool whole = IsWholeEllipse(arc);
    const double start = whole ? 0.0 : double{arc.start};
    const double span = whole ? kTurn : double{arc.span};
    const double radiusX = arc.radiusX;
    const double radiusY = arc.radiusY;
    const double centreX = double{1} * arc.centre.x - origin_.x;
    const double centreY = double{1} * arc.centre.y - origin_.y;
    const double largest = std::max(std::abs(radiusX), std::abs(radiusY));
    const double pieces = std::max(1.0, std::ceil(std::abs(span) / StepFor(largest)));
    const double step = span / pieces;
    const Direction turn = DirectionOf(step);
    // 4/3 of the tangent of a quarter of the step.
    const double halfTangent = turn.sine / (1.0 + turn.cosine);
    const double reach =
        4.0 / 3.0 * halfTangent / (1.0 + std::sqrt(1.0 + halfTangent * halfTangent));
    const bool fine = largest < kWholeUnitsRadius;
    const auto put = [&](double x, double y) {
        if (fine) {
            out_.Tenths(centreX + radiusX * x).Tenths(centreY + radiusY * y);
        } else {
            out_.Whole(centreX + radiusX * x).Whole(centreY + radiusY * y);
        }
    };
    Direction at = whole ? Direction{1.0, 0.0} : DirectionOf(start);
    put(at.cosine, at.sine);
    out_ << "m\n";
    if (span == 0.0 || largest == 0.0) {
        put(at.cosine, at.sine);
        out_ << "l\n";
    } else {
        for (std::int32_t i = TruncateToInt32(pieces); i > 0; --i) {
            const Direction to{at.cosine * turn.cosine - at.sine * turn.sine,
                               at.sine * turn.cosine + at.cosine * turn.sine};
            put(at.cosine - reach * at.sine, at.sine + reach * at.cosine);
            put(to.cosine + reach * to.sine, to.sine - reach * to.cosine);
            put(to.cosine, to.sine);
            out_ << "c\n";
            at = to;
            ++segments_;
        }
        if (whole) out_ << "h\n";
    }
    ++segments_;
    open_ = false;
}

}  // namespace qm::pdf
