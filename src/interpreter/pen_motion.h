// Pen motion: the two moves that everything drawn with the pen goes through, and Drawing, what
// stands between a coordinate and a drawing operation.
//
// Commands PU PD PA PR stand in pen_motion.cpp. While a polygon is recorded both moves store
// vertices instead of drawing. Tests: tests/interpreter/vectors_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/geometry.h"
#include "interpreter/attributes/lines.h"
#include "interpreter/attributes/polygon.h"
#include "interpreter/coordinates.h"
#include "interpreter/output.h"
#include "interpreter/plot_work.h"

namespace qm {

struct Reading;

struct PenMotion {
    PointD penPos;          // current units
    bool penDown = false;   // PD, cleared by PU; arcs, circles and curves draw whatever it says
    bool relative = false;  // PR, cleared by PA
    bool chordByDeviation = false;  // CT1: what arcs are cut by is no angle but a distance
};

// The parts of the plotter that vectors pass.
struct Drawing {
    Drawing(DrawingOperations& operations, const Reading& plotterReading)
        : reading(plotterReading), out(operations) {}

    // Moves the pen up to `target` (current units). Nothing is sent.
    void MoveTo(PointD target) {
        if (polygon.mode) polygon.Append(target, false);
        motion.penPos = target;
    }
    // Draws from the pen position to `target` (current units), clipped to the window when it is on.
    void DrawTo(PointD target) {
        if (polygon.mode) {
            polygon.Append(target, true);
        } else if (DrawsLines()) {
            EmitSegment(coordinates.ToPlotter(motion.penPos), coordinates.ToPlotter(target));
        }
        out.MarkDrawn();
        motion.penPos = target;
    }
    // False while the merge-control opcode keeps lines from showing.
    bool DrawsLines() const { return lines.MergeOpcode != kMergeNoDraw; }

    // Sends one segment in plotter units, clipped when the window is on.
    void EmitSegment(PointI from, PointI to) {
        if (coordinates.windowOn || lines.dashes.adaptive) return EmitFittedSegment(from, to);
        out.Line(from, to);
    }
    // The same where a window or dashes that fit a segment may be on.
    void EmitFittedSegment(PointI from, PointI to);
    void EmitFittedRun(std::size_t count, const PointI* points);
    // EmitSegment for every line of a letter.
    void EmitLetter(const Strokes& strokes);
    // Sends an open run of `count` points in plotter units: whole without a window, else as its
    // clipped segments. The points may be overwritten by the receiver.
    void EmitPolyline(std::size_t count, PointI* points);
    // Sends one filled polygon in plotter units: whole without a window or inside it, else the
    // contours of its part in the window. The points may be overwritten by the receiver.
    void EmitFilledPolygon(std::vector<PointI>& points);

    // Ends the current sub-polygon and begins the next at the pen position (PM1; a circle does it
    // on both sides).
    void NextSubPolygon();

    const Reading& reading;  // the plotter's
    CoordinateState coordinates;
    PenMotion motion;
    LineState lines;
    PolygonBuffer polygon;
    Output out;
    PlotWork work;
};

}  // namespace qm
