// See coordinates.h. Handlers: IP IR IW SC RO.
#include "interpreter/coordinates.h"

#include <algorithm>

#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/pages.h"
#include "interpreter/pen_motion.h"
#include "interpreter/plot_notes.h"
#include "interpreter/reading.h"

namespace qm {

namespace {

// Outcode bits, in the order in which they are tested.
constexpr unsigned kLeftOf = 1;
constexpr unsigned kAbove = 2;
constexpr unsigned kRightOf = 4;
constexpr unsigned kBelow = 8;

unsigned OutCode(const ClipWindow& window, PointI p) {
    unsigned code = 0;
    if (p.x < window.xMin) code |= kLeftOf;
    if (p.y > window.yMax) code |= kAbove;
    if (p.x > window.xMax) code |= kRightOf;
    if (p.y < window.yMin) code |= kBelow;
    return code;
}

std::int32_t CrossingAt(double edge, double from, double to, double otherFrom, double otherTo) {
    return TruncateToInt32(otherFrom + (otherTo - otherFrom) * (edge - from) / (to - from));
}

// Moves the outside point `p` of the segment p-q onto the window edge that the first bit of its
// code names.
void MoveOntoEdge(const ClipWindow& window, unsigned code, PointI& p, PointI q) {
    const bool vertical = (code & kLeftOf) != 0 || (code & (kAbove | kRightOf)) == kRightOf;
    if (vertical) {
        const std::int32_t edge = (code & kLeftOf) != 0 ? window.xMin : window.xMax;
        p.y = CrossingAt(edge, p.x, q.x, p.y, q.y);
        p.x = edge;
    } else {
        const std::int32_t edge = (code & kAbove) != 0 ? window.yMax : window.yMin;
        p.x = CrossingAt(edge, p.y, q.y, p.x, q.x);
        p.y = edge;
    }
}

// SC types 0 and 1: the factors that bring the corners of the user range onto P1 and P2. False, and
// nothing changed, for a range without width or height.
bool SetScaleFromRange(CoordinateState& c) {
    const double rangeX = c.userMaxX - c.userMinX;
    const double rangeY = c.userMaxY - c.userMinY;
    if (rangeX == 0.0 || rangeY == 0.0) return false;
    c.scaleX = (c.p2.x - c.p1.x) / rangeX;
    c.scaleY = (c.p2.y - c.p1.y) / rangeY;
    c.scaleOn = true;
    return true;
}

}  // namespace

bool ClipSegment(const ClipWindow& window, PointI& a, PointI& b) {
    // Four moves bring both ends inside; more could only come from points whose crossings overflow.
    for (int moves = 0; moves < 8; ++moves) {
        const unsigned codeA = OutCode(window, a);
        const unsigned codeB = OutCode(window, b);
        if ((codeA | codeB) == 0) return true;
        if ((codeA & codeB) != 0) return false;
        if (codeA != 0) {
            MoveOntoEdge(window, codeA, a, b);
        } else {
            MoveOntoEdge(window, codeB, b, a);
        }
    }
    return false;
}

namespace handlers {

// IP [p1x, p1y, p2x, p2y]; the scale factors stay until the next SC.
// Quirk: a short IP brings 0 and 10000 back, whatever the sheet, and forbids SC types 0 and 1.
void InputP1P2(Parameters& in, const Reading& reading, const PageState& page, CoordinateState& c,
               PenMotion& motion) {
    const int given = in.GetParams(4);
    if (reading.scalesFromSheet) return PlacePoints(in, given, reading.sheet, page, c, motion);
    c.ipGiven = given == 4;
    c.p1 = c.ipGiven ? in.PointAt(0) : PointD{0.0, 0.0};
    c.p2 = c.ipGiven ? in.PointAt(2) : PointD{10000.0, 10000.0};
    c.p1p2Distance = Length(c.p2.x - c.p1.x, c.p2.y - c.p1.y);
}

// IR x, y in percent of the PS size.
// Quirk: the offsets are added to P1 and P2, and nothing moves before a PS, when both sizes are 0.
void InputP1P2Relative(Parameters& in, const Reading& reading, const PageState& page,
                       CoordinateState& c, PenMotion& motion) {
    const int given = in.GetParams(4);
    if (reading.scalesFromSheet) {
        return PlacePointsInPercent(in, given, reading.sheet, page, c, motion);
    }
    if (given != 2) return;
    const PointD offset{in.slots[0] * page.plotWidth / 100.0,
                        in.slots[1] * page.plotLength / 100.0};
    c.p1 = c.p1 + offset;
    c.p2 = c.p2 + offset;
}

// IW [x0, y0, x1, y1]; without numbers the window is off.
// Quirk: with fewer than four numbers the others are what an earlier command left in the slots.
void InputWindow(Parameters& in, const Reading& reading, CoordinateState& c) {
    const int given = in.GetParams(4);
    if (reading.needsWholeWindow && given % 4 != 0) return;
    c.windowOn = given > 0;
    if (!c.windowOn) return;
    const PointI a = c.ToPlotter(in.PointAt(0));
    const PointI b = c.ToPlotter(in.PointAt(2));
    c.window = {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

// SC [xmin, xmax, ymin, ymax [, type]]; type 1 (isotropic) is treated as type 0, type 2 gives the
// factors themselves. Quirk: the pen position is taken for plotter units even when an earlier SC
// already made it user units.
void Scale(Parameters& in, const Reading& reading, CoordinateState& c, PenMotion& motion,
           PlotNotes& notes) {
    if (reading.scalesFromSheet) return ScaleFromPoints(in, c, motion);
    const int count = in.GetParams(5);
    const auto& v = in.slots;
    if (count < 4) {
        motion.penPos = c.ToPlotterReal(motion.penPos);
        c.scaleOn = false;
        return;
    }
    const std::int32_t type = count == 5 ? TruncateToInt32(v[4]) : 0;
    if (type == 0 || type == 1) {
        notes.scaleIgnored = notes.scaleIgnored || !c.ipGiven;
        if (!c.ipGiven) return;
        c.userMinX = v[0];
        c.userMaxX = v[1];
        c.userMinY = v[2];
        c.userMaxY = v[3];
        if (!SetScaleFromRange(c)) return;
    } else if (type == 2) {
        c.userMinX = v[0];
        c.scaleX = v[1];
        c.userMinY = v[2];
        c.scaleY = v[3];
        c.scaleOn = true;
    }
    motion.penPos = c.FromPlotter(motion.penPos);
}

// RO [angle]; absent is 0.
// Quirk: turns the page as a whole, whatever it shows already.
void RotateCoordinateSystem(Parameters& in, const PageState& page, Drawing& drawing) {
    const std::int32_t angle = in.GetShortOr(0);
    if (drawing.reading.turnsWithinPages) return TurnCoordinates(angle, page, drawing);
    drawing.coordinates.rotation = angle;
}

}  // namespace handlers
}  // namespace qm
