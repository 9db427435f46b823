// Bezier curves, drawn as runs of segments. Handlers: BZ BR. Tests:
// tests/interpreter/vectors_test.cpp.
#include <array>
#include <cstddef>
#include <vector>

#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

namespace qm {

namespace {

// Cubic Bernstein weights at t = i / 12, i = 1 ... 11. Quirk: t = 11/12 is left out.
constexpr std::size_t kInnerPoints = 10;
constexpr std::size_t kAllInnerPoints = 11;
using Weights = std::array<double, 4>;
constexpr std::array<Weights, kAllInnerPoints> MakeBernstein() {
    std::array<Weights, kAllInnerPoints> table{};
    for (std::size_t i = 0; i < kAllInnerPoints; ++i) {
        const double t = static_cast<double>(i + 1) / 12.0;
        const double s = 1.0 - t;
        table[i] = {s * s * s, 3.0 * s * s * t, 3.0 * s * t * t, t * t * t};
    }
    return table;
}
constexpr std::array<Weights, kAllInnerPoints> kBernstein = MakeBernstein();

PointD Blend(const Weights& w, const PointD* p) {
    return {w[0] * p[0].x + w[1] * p[1].x + w[2] * p[2].x + w[3] * p[3].x,
            w[0] * p[0].y + w[1] * p[1].y + w[2] * p[2].y + w[3] * p[3].y};
}

// Turns cubic segments into points and sends them in runs; in polygon mode every point is drawn
// into the polygon.
class BezierEmitter {
  public:
    explicit BezierEmitter(Drawing& drawing)
        : drawing_(drawing),
          innerPoints_(drawing.reading.joinsRuns ? kAllInnerPoints : kInnerPoints) {}

    // One segment by its four control points, current units: its start and the points at t = 1/12
    // ... 10/12.
    void Segment(const PointD* control) {
        Add(control[0]);
        for (std::size_t i = 0; i < innerPoints_; ++i) Add(Blend(kBernstein[i], control));
    }
    // The last segment's end, and what is left in the run.
    void Finish(PointD end) {
        Add(end);
        if (count_ > 0) drawing_.EmitPolyline(count_, run_.data());
        count_ = 0;
    }

  private:
    void Add(PointD point) {
        if (drawing_.polygon.mode) return drawing_.DrawTo(point);
        run_[count_++] = drawing_.coordinates.ToPlotter(point);
        if (count_ < kRunLength) return;
        const PointI last = run_[count_ - 1];
        drawing_.EmitPolyline(count_, run_.data());
        count_ = 0;
        if (drawing_.reading.joinsRuns) run_[count_++] = last;
    }

    // A run is sent when it holds this many points. Quirk: the segment that would join two runs is
    // not drawn.
    static constexpr std::size_t kRunLength = 99;

    Drawing& drawing_;
    std::size_t innerPoints_;
    std::array<PointI, kRunLength> run_;
    std::size_t count_ = 0;
};

// Control points that are read before any of them is drawn. A longer curve is drawn as it is read,
// so that its memory stays bounded; the result is the same.
constexpr std::size_t kMaxBuffered = 3 * 4096 + 1;

// Draws the complete segments in `points` and keeps what the next segment starts with.
bool DrawSegments(BezierEmitter& emitter, std::vector<PointD>& points) {
    const std::size_t segments = (points.size() - 1) / 3;
    for (std::size_t k = 0; k < segments; ++k) emitter.Segment(&points[3 * k]);
    points.erase(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(3 * segments));
    return segments > 0;
}

// Reads control points up to the first incomplete pair. A rest that fills no segment draws nothing,
// but the pen ends at the last point read.
void DrawCurve(Parameters& in, Drawing& drawing, bool relative) {
    PointD base = relative ? drawing.motion.penPos : PointD{};
    std::vector<PointD> points{drawing.motion.penPos};
    // Quirk: drawn whatever the pen state is.
    const bool draws =
        !drawing.reading.drawsPenDown || drawing.motion.penDown || drawing.polygon.mode;
    BezierEmitter emitter(drawing);
    bool drawn = false;
    std::size_t read = 0;
    PointD point;
    while (in.GetPoint(point)) {
        points.push_back(point + base);
        if (++read % 3 == 0 && relative) base = points.back();
        if (points.size() < kMaxBuffered) continue;
        if (draws) {
            drawn = DrawSegments(emitter, points) || drawn;
        } else {
            points.erase(points.begin(), points.end() - 1);
        }
    }
    const PointD last = points.back();
    drawn = (draws && DrawSegments(emitter, points)) || drawn;
    if (drawn) emitter.Finish(points.front());
    drawing.motion.penPos = last;
}

}  // namespace

namespace handlers {

// BZ x1, y1, x2, y2, x3, y3 [...]
void BezierAbsolute(Parameters& in, Drawing& drawing) { DrawCurve(in, drawing, false); }

// BR dx1, dy1, dx2, dy2, dx3, dy3 [...]: each segment relative to its own start.
void BezierRelative(Parameters& in, Drawing& drawing) { DrawCurve(in, drawing, true); }

}  // namespace handlers
}  // namespace qm
