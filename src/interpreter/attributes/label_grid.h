// Labels as a plotter writes them, on a grid of character cells: one and a half character widths by
// two heights, in plotter units whatever the scale is.
//
// LB, CP, SM and the character attributes come here when the reading puts labels on the grid
// (reading.h). Source: HP-GL/2 reference, "The character group". Tests:
// tests/interpreter/reading_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "common/geometry.h"

namespace qm {

struct Drawing;
struct LabelState;
struct Parameters;

// LB: control characters move without a mark, LF goes a line down, CR to the carriage-return point,
// a backspace one cell back; each line is placed by LO for itself. The pen ends behind the last
// character, with a centred or right-aligned origin where it was. Nothing in polygon mode.
// `text` has room for length + 1 bytes and is overwritten.
void DrawGridLabel(LabelState& label, Drawing& drawing, char* text, std::size_t length);

// SM's character about the pen position, which stays.
void DrawGridSymbol(const LabelState& label, Drawing& drawing);

// CP [spaces, lines]: lines count upwards and move the carriage-return point too; alone it is CR
// and LF.
void MoveOnGrid(Parameters& in, LabelState& label, Drawing& drawing);

// SI, with `given` numbers in centimetres: none gives 0.285 x 0.375, one changes nothing.
void SetAbsoluteSize(LabelState& label, int given, PointD size);
// SR, in percent: none gives 0.75 x 1.5, one changes nothing.
void SetRelativeSize(LabelState& label, int given, PointD percent);
// DI and DR (`relative`); 0, 0 changes nothing.
void SetRun(LabelState& label, PointD run, bool relative);
// SD kinds 3 (characters an inch) and 4 (points); other kinds and values of 0 or less change
// nothing.
void SetFontSize(LabelState& label, std::int16_t kind, double value);

}  // namespace qm
