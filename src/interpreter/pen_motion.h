// Pen motion: the two moves that everything drawn with the pen goes through.
//
// Commands PU PD PA PR stand in pen_motion.cpp. While a polygon is recorded both moves store
// vertices instead of drawing. Tests: tests/interpreter/pen_motion_test.cpp.
#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace qm {

class HPGLRead;

struct PenMotion {
    PointD penPos;          // current units
    bool penDown = false;   // PD, cleared by PU; arcs, circles and curves draw whatever it says
    bool relative = false;  // PR, cleared by PA
};

// Moves the pen up to `target` (current units). Nothing is sent.
void MoveTo(HPGLRead& reader, PointD target);

// Draws from the pen position to `target` (current units), clipped to the window when it is on.
void DrawTo(HPGLRead& reader, PointD target);

// Sends one segment in plotter units, clipped when the window is on.
void EmitSegment(HPGLRead& reader, PointI from, PointI to);

// Sends an open run of `count` points in plotter units: whole without a window, else as its clipped
// segments. The points may be overwritten by the receiver.
void EmitPolyline(HPGLRead& reader, std::int32_t count, PointI* points);

}  // namespace qm
