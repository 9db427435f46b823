// Plotter: everything that HPGLRead remembers while it reads a plot, and how a handler gets its
// share of it.
//
// A handler is a function whose parameters name the parts it works on; Handle<> makes it a slot of
// the command table. The state of a subject stands in the header of the subject. Tests:
// tests/interpreter/.
#pragma once

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <type_traits>

#include "interpreter/attributes/fill.h"
#include "interpreter/attributes/labels.h"
#include "interpreter/attributes/pens.h"
#include "interpreter/encoded_polyline.h"
#include "interpreter/envelopes.h"
#include "interpreter/lexer.h"
#include "interpreter/pages.h"
#include "interpreter/pen_motion.h"
#include "interpreter/plot_notes.h"
#include "interpreter/reading.h"
#include "raster/rows/raster_state.h"

namespace qm {

struct Plotter {
    explicit Plotter(DrawingOperations& operations)
        : in(operations), drawing(operations, reading) {}

    Reading reading;  // set before the first byte is read
    Parameters in;
    JobState job;
    PageState page;
    Drawing drawing;
    EncodedState encoded;
    PenState pens;
    FillState fill;
    LabelState label;
    RasterState raster;
    PlotNotes notes;
    bool detecting = false;  // Detect is running
    // What the work that the plot may cause grows with, if that is less than the plot's own bytes.
    std::uint32_t budgetBytes = UINT32_MAX;
    std::uint32_t WorkBytes() { return std::min(budgetBytes, in.input.DataSize()); }

    // What a handler can ask for, each by its type.
    auto Parts() {
        return std::tie(reading, in, in.input, job, page, drawing, drawing.coordinates,
                        drawing.motion, drawing.lines, drawing.polygon, drawing.out, encoded, pens,
                        fill, label, raster, notes);
    }
};

// Calls `handler` with the parts that its signature names, `extra` among them.
template <typename... Asked, typename... Extra>
void CallHandler(void (*handler)(Asked...), Plotter& plotter, Extra&... extra) {
    [[maybe_unused]] const auto parts = std::tuple_cat(plotter.Parts(), std::tie(extra...));
    handler(std::get<std::remove_const_t<std::remove_reference_t<Asked>>&>(parts)...);
}

// A handler as the command table holds it.
using Slot = void (*)(Plotter&);
template <auto kHandler>
void Handle(Plotter& plotter) {
    CallHandler(kHandler, plotter);
}

// Acts on the escape sequence whose first byte behind ESC is `next` (interpret.cpp).
void DoEscape(Plotter& plotter, std::uint8_t next);

// Raster mode, for which the interpreter stands below it (raster/raster_mode.cpp): reads from the
// current byte on until raster mode is left or the input is over; a picture still open then is
// finished. `startAtPen` is the flag of ESC % 1 A: the raster position starts at the pen's, else at
// the last raster position. Outside document mode everything is read and nothing is made.
void RunRasterMode(Plotter& plotter, bool startAtPen);

}  // namespace qm
