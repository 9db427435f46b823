// See pen_motion.h. Handlers: PU PD PA PR.
#include "interpreter/pen_motion.h"

#include "interpreter/attributes/labels.h"
#include "interpreter/attributes/polygon.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"

namespace qm {

void Drawing::EmitFittedSegment(PointI from, PointI to) {
    if (coordinates.windowOn && !ClipSegment(coordinates.window, from, to)) return;
    if (lines.dashes.adaptive) FitDashes(from, to, lines, out);
    out.Line(from, to);
}

void Drawing::EmitFittedRun(std::size_t count, const PointI* points) {
    for (std::size_t i = 1; i < count; ++i) EmitFittedSegment(points[i - 1], points[i]);
}

void Drawing::EmitLetter(const Strokes& strokes) {
    if (!coordinates.windowOn && !lines.dashes.adaptive) return out.Letter(strokes);
    const PointI* run = strokes.points;
    for (std::size_t i = 0; i < strokes.runs; ++i) {
        EmitFittedRun(strokes.lengths[i], run);
        run += strokes.lengths[i];
    }
    out.MarkDrawn();
}

void Drawing::EmitPolyline(std::size_t count, PointI* points) {
    const bool whole = !coordinates.windowOn && !lines.dashes.adaptive;
    if (whole) return out.Polyline(static_cast<std::int32_t>(count), points);
    EmitFittedRun(count, points);
}

void Drawing::EmitFilledPolygon(std::vector<PointI>& points) {
    if (!coordinates.windowOn || !ReachesOutside(points, coordinates.window)) {
        return out.FilledPolygon(points);
    }
    for (Contour& contour : ClipPolygon(points, coordinates.window, &work.edgePairs))
        out.FilledPolygon(contour);
}

void Drawing::NextSubPolygon() {
    polygon.Close(motion.penDown, reading);
    polygon.StartNext(motion.penPos);
}

namespace {

// Moves or draws to all pairs; false when there is none.
bool FollowPairs(Parameters& in, Drawing& drawing, const LabelState& label) {
    const PenMotion& motion = drawing.motion;
    bool any = false;
    PointD target;
    while (in.GetPoint(target)) {
        any = true;
        if (motion.relative) target = target + motion.penPos;
        if (motion.penDown) {
            drawing.DrawTo(target);
        } else {
            drawing.MoveTo(target);
        }
        if (label.SymbolChar != 0) DrawSymbol(label, drawing);
    }
    return any;
}

// The same where they are lines and nothing else: what one ends at, the next begins at, and is
// converted once.
bool DrawPairs(Parameters& in, Drawing& drawing) {
    PenMotion& motion = drawing.motion;
    PointD target;
    if (!in.GetPoint(target)) return false;
    PointI from = drawing.coordinates.ToPlotter(motion.penPos);
    do {
        if (motion.relative) target = target + motion.penPos;
        motion.penPos = target;
        const PointI to = drawing.coordinates.ToPlotter(target);
        drawing.EmitSegment(from, to);
        from = to;
    } while (in.GetPoint(target));
    drawing.out.MarkDrawn();
    return true;
}

// The coordinate pairs behind PU, PD, PA and PR. No pair with the pen down is a dot.
void PlotPairs(Parameters& in, Drawing& drawing, const LabelState& label) {
    const bool draws = drawing.motion.penDown && !drawing.polygon.mode;
    const bool isPlain = draws && drawing.DrawsLines() && label.SymbolChar == 0;
    const bool any = isPlain ? DrawPairs(in, drawing) : FollowPairs(in, drawing, label);
    if (!any && draws) drawing.DrawTo(drawing.motion.penPos);
}

}  // namespace

namespace handlers {

// PU [x, y ...]
void PenUp(Parameters& in, Drawing& drawing, const LabelState& label) {
    drawing.motion.penDown = false;
    PlotPairs(in, drawing, label);
}

// PD [x, y ...]
void PenDown(Parameters& in, Drawing& drawing, const LabelState& label) {
    drawing.motion.penDown = true;
    PlotPairs(in, drawing, label);
}

// PA [x, y ...]
void PlotAbsolute(Parameters& in, Drawing& drawing, const LabelState& label) {
    drawing.motion.relative = false;
    PlotPairs(in, drawing, label);
}

// PR [dx, dy ...]
void PlotRelative(Parameters& in, Drawing& drawing, const LabelState& label) {
    drawing.motion.relative = true;
    PlotPairs(in, drawing, label);
}

}  // namespace handlers
}  // namespace qm
