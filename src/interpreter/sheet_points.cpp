// Scaling as a plotter does it; see coordinates.h.

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "interpreter/coordinates.h"
#include "interpreter/lexer.h"
#include "interpreter/pages.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

namespace qm {

namespace {

// P1 and P2 of the sheet while `rotation` is in force.
Box<double> PointsTurnedBy(std::int32_t rotation, const Sheet& sheet, const PageState& page) {
    Box<double> points{sheet.p1, sheet.p2};
    if (page.plotSizeGiven && page.plotLength > 0 && page.plotWidth > 0) {
        points = {{0.0, 0.0},
                  {static_cast<double>(std::max(page.plotLength, page.plotWidth)),
                   static_cast<double>(std::min(page.plotLength, page.plotWidth))}};
    }
    if (rotation % 180 != 0) {
        std::swap(points.a.x, points.a.y);
        std::swap(points.b.x, points.b.y);
    }
    return points;
}

// `p` on a sheet of `size` whose coordinates turn by `degrees` clockwise: where the same place of
// the paper is then.
PointD TurnedBack(PointD p, std::int32_t degrees, PointD size) {
    switch (degrees) {
        case 90:
            return {p.y, size.x - p.x};
        case 180:
            return {size.x - p.x, size.y - p.y};
        case 270:
            return {size.y - p.y, p.x};
        default:
            return p;
    }
}

// Type 1: equal units in x and y; what the range leaves of one side is shared out.
void MakeIsotropic(CoordinateState& c) {
    const double factor = std::min(std::fabs(c.scaleX), std::fabs(c.scaleY));
    const auto shrink = [factor](double& scale, double& corner, double distance, double share) {
        const double rest = distance * (1.0 - factor / std::fabs(scale));
        scale = std::copysign(factor, scale);
        corner -= rest * share / 100.0 / scale;
    };
    shrink(c.scaleX, c.userMinX, c.p2.x - c.p1.x, c.userScale.left);
    shrink(c.scaleY, c.userMinY, c.p2.y - c.p1.y, c.userScale.bottom);
}

// The scale of the last SC on the P1 and P2 in force. False, and nothing changed, when it has none.
bool ApplyScale(CoordinateState& c) {
    const auto& range = c.userScale.range;
    const bool factors = c.userScale.type == 2;
    const double x = factors ? range[1] : (c.p2.x - c.p1.x) / (range[1] - range[0]);
    const double y = factors ? range[3] : (c.p2.y - c.p1.y) / (range[3] - range[2]);
    if (!std::isfinite(x) || !std::isfinite(y) || x == 0.0 || y == 0.0) return false;
    c.scaleX = x;
    c.scaleY = y;
    c.userMinX = range[0];
    c.userMinY = range[2];
    if (c.userScale.type == 1) MakeIsotropic(c);
    c.scaleOn = true;
    return true;
}

}  // namespace

Box<double> DefaultPoints(const Sheet& sheet, const PageState& page, const CoordinateState& c) {
    return PointsTurnedBy(c.rotation + c.turn, sheet, page);
}

void MovePoints(const Box<double>& points, CoordinateState& c, PenMotion& motion) {
    const PointD pen = c.ToPlotterReal(motion.penPos);
    c.p1 = points.a;
    c.p2 = points.b;
    c.p1p2Distance = Length(c.p2.x - c.p1.x, c.p2.y - c.p1.y);
    if (c.scaleOn) c.scaleOn = ApplyScale(c);
    motion.penPos = c.FromPlotter(pen);
}

void PlacePoints(const Parameters& in, int given, const Sheet& sheet, const PageState& page,
                 CoordinateState& c, PenMotion& motion) {
    if (given == 0) return MovePoints(DefaultPoints(sheet, page, c), c, motion);
    if (given < 2) return;
    const PointD p1 = in.PointAt(0);
    MovePoints({p1, given == 4 ? in.PointAt(2) : p1 + (c.p2 - c.p1)}, c, motion);
}

void PlacePointsInPercent(const Parameters& in, int given, const Sheet& sheet,
                          const PageState& page, CoordinateState& c, PenMotion& motion) {
    const Box<double> whole = DefaultPoints(sheet, page, c);
    if (given == 0) return MovePoints(whole, c, motion);
    if (given < 2) return;
    const auto at = [&](PointD percent) {
        return PointD{whole.a.x + (whole.b.x - whole.a.x) * percent.x / 100.0,
                      whole.a.y + (whole.b.y - whole.a.y) * percent.y / 100.0};
    };
    const PointD p1 = at(in.PointAt(0));
    MovePoints({p1, given == 4 ? at(in.PointAt(2)) : p1 + (c.p2 - c.p1)}, c, motion);
}

void TurnCoordinates(std::int32_t angle, const PageState& page, Drawing& drawing) {
    if (angle % 90 != 0) return;
    const auto positive = [](std::int32_t degrees) { return (degrees % 360 + 360) % 360; };
    CoordinateState& c = drawing.coordinates;
    if (drawing.out.PageEmpty()) {
        c.rotation = positive(angle);
        return;
    }
    // Where the pen is on the sheet as the page began, then on the sheet as it is from now on. P1
    // and P2 lie as far from their edges of the sheet as from the opposite ones.
    const Box<double> points = PointsTurnedBy(c.rotation, drawing.reading.sheet, page);
    const PointD size = points.a + points.b;
    const PointD turnedSize = c.turn % 180 == 0 ? size : PointD{size.y, size.x};
    const PointD place =
        TurnedBack(c.ToPlotterReal(drawing.motion.penPos), positive(-c.turn), turnedSize);
    c.turn = positive(angle - c.rotation);
    drawing.motion.penPos = c.FromPlotter(TurnedBack(place, c.turn, size));
    drawing.out.Turn(c.turn, {TruncateToInt32(size.x), TruncateToInt32(size.y)});
}

void ScaleFromPoints(Parameters& in, CoordinateState& c, PenMotion& motion) {
    const int given = in.GetParams(7);
    const PointD pen = c.ToPlotterReal(motion.penPos);
    if (given == 0) {
        c.scaleOn = false;
        motion.penPos = pen;
    }
    if (given < 4) return;
    const UserScale before = c.userScale;
    const auto& v = in.slots;
    c.userScale = {{v[0], v[1], v[2], v[3]}, given > 4 ? TruncateToInt32(v[4]) : 0, 50.0, 50.0};
    if (given == 7) {
        c.userScale.left = std::clamp(v[5], 0.0, 100.0);
        c.userScale.bottom = std::clamp(v[6], 0.0, 100.0);
    }
    if (c.userScale.type < 0 || c.userScale.type > 2 || !ApplyScale(c)) {
        c.userScale = before;
        return;
    }
    motion.penPos = c.FromPlotter(pen);
}

}  // namespace qm
