// See pen_motion.h. Handlers: PU PD PA PR.
#include "interpreter/pen_motion.h"

#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

void MoveTo(HPGLRead& reader, PointD target) {
    if (reader.polygon.mode) reader.polygon.Append(target, false);
    reader.motion.penPos = target;
}

void DrawTo(HPGLRead& reader, PointD target) {
    if (reader.polygon.mode) {
        reader.polygon.Append(target, true);
    } else if (reader.lines.MergeOpcode != kMergeNoDraw) {
        const CoordinateState& c = reader.coordinates;
        EmitSegment(reader, c.ToPlotter(reader.motion.penPos), c.ToPlotter(target));
    }
    reader.page.pageEmpty = false;
    reader.motion.penPos = target;
}

void EmitSegment(HPGLRead& reader, PointI from, PointI to) {
    if (reader.coordinates.windowOn && !ClipSegment(reader.coordinates.window, from, to)) return;
    reader.page.pageEmpty = false;
    reader.Line(from.x, from.y, to.x, to.y);
}

void EmitPolyline(HPGLRead& reader, std::int32_t count, PointI* points) {
    if (!reader.coordinates.windowOn) {
        reader.page.pageEmpty = false;
        reader.Polyline(count, points);
        return;
    }
    for (std::int32_t i = 1; i < count; ++i) EmitSegment(reader, points[i - 1], points[i]);
}

namespace {

// The coordinate pairs behind PU, PD, PA and PR. No pair with the pen down is a dot.
void PlotPairs(HPGLRead& reader) {
    PenMotion& motion = reader.motion;
    bool any = false;
    while (reader.GetParams(2) == 2) {
        any = true;
        PointD target{reader.params[0], reader.params[1]};
        if (motion.relative) target = target + motion.penPos;
        if (motion.penDown) {
            DrawTo(reader, target);
        } else {
            MoveTo(reader, target);
        }
        if (reader.label.SymbolChar != 0) DrawSymbol(reader);
    }
    if (!any && motion.penDown && !reader.polygon.mode) DrawTo(reader, motion.penPos);
}

}  // namespace

namespace handlers {

// PU [x, y ...]
void PenUp(HPGLRead& reader) {
    reader.motion.penDown = false;
    PlotPairs(reader);
}

// PD [x, y ...]
void PenDown(HPGLRead& reader) {
    reader.motion.penDown = true;
    PlotPairs(reader);
}

// PA [x, y ...]
void PlotAbsolute(HPGLRead& reader) {
    reader.motion.relative = false;
    PlotPairs(reader);
}

// PR [dx, dy ...]
void PlotRelative(HPGLRead& reader) {
    reader.motion.relative = true;
    PlotPairs(reader);
}

}  // namespace handlers
}  // namespace qm
