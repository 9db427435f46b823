// HPGLRead: the interpreter. It pulls bytes through ReadData, recognises two-letter commands and
// escapes, keeps the plotter's state and calls the drawing operations that a derived class gives
// effect to.
//
// Entry points: Detect (is this a plot?) and Interpret (read it all). Commands stand in handlers.h,
// one page for all; their table in command_table.cpp; the state of each subject in the header of
// that subject. One object reads one file, on one thread; several objects may run on several
// threads. Nothing in a plot makes it fail: malformed input is clamped, defaulted or skipped.
// Tests: tests/interpreter/.
#pragma once

#include <array>
#include <cstdint>

#include "interpreter/arcs.h"
#include "interpreter/attributes/fill.h"
#include "interpreter/attributes/labels.h"
#include "interpreter/attributes/lines.h"
#include "interpreter/attributes/pens.h"
#include "interpreter/attributes/polygon.h"
#include "interpreter/coordinates.h"
#include "interpreter/drawing_operations.h"
#include "interpreter/encoded_polyline.h"
#include "interpreter/input_reader.h"
#include "interpreter/job.h"
#include "interpreter/lexer.h"
#include "interpreter/pages.h"
#include "interpreter/pen_motion.h"
#include "raster/rows/raster_state.h"

namespace qm {

class HPGLRead : public DrawingOperations {
  public:
    HPGLRead() : input(*this) {}

    // Detection pass: 1 when the input is a plot file. Reads only as far as it needs, draws
    // nothing.
    int Detect();
    // Interpreting pass over the whole input; returns the number of pages completed plus 1, also
    // after an abort.
    std::int32_t Interpret();

    // Calls the handler of the command `first``second` (upper case); false when there is none.
    bool Dispatch(std::uint8_t first, std::uint8_t second);
    // Acts on the escape sequence whose first byte behind ESC is `next`.
    void DoEscape(std::uint8_t next);

    // Reads up to `count` (at most kMaxParams) reals into params[0 ...]; returns how many came. The
    // other slots keep what an earlier command left there.
    int GetParams(int count) {
        for (int i = 0; i < count; ++i) {
            if (!qm::GetRealParam(input, params[static_cast<std::size_t>(i)])) return i;
        }
        return count;
    }
    std::int16_t GetShortParam() { return qm::GetShortParam(input); }
    std::int32_t GetIntParam() { return qm::GetIntParam(input); }
    bool GetRealParam(double& value) { return qm::GetRealParam(input, value); }

    static constexpr std::size_t kMaxParams = 8;

    InputReader input;
    JobState job;
    PageState page;
    CoordinateState coordinates;
    PenMotion motion;
    ArcState arcs;
    EncodedState encoded;
    PenState pens;
    LineState lines;
    PolygonBuffer polygon;
    FillState fill;
    LabelState label;
    RasterState raster;
    std::array<double, kMaxParams> params{};

    bool detecting = false;  // Detect is running
    // Raster pictures are made; off, their data is consumed all the same. Set by whoever runs
    // Interpret.
    bool documentMode = false;
};

}  // namespace qm
