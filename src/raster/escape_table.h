// The raster escapes that take a value: which handler acts on which group and letter.
//
// A handler gets the value that stood in front of its letter and the parts of the plotter that its
// other parameters name; it reads the counted data behind the letter, if the command has any.
// Tests: tests/raster/raster_mode_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "interpreter/plotter.h"

namespace qm {

// A command's value; absent, it is 0 without a sign.
struct EscapeValue {
    std::int32_t number = 0;
    bool hadSign = false;  // makes positions relative
};

// A handler as the table holds it.
using EscapeSlot = void (*)(Plotter&, EscapeValue);
template <auto kHandler>
void HandleEscape(Plotter& plotter, EscapeValue value) {
    CallHandler(kHandler, plotter, value);
}

struct Escape {
    const char* group;  // the two bytes behind ESC
    char letter;        // upper case
    EscapeSlot handler;
    const char* syntax;  // for people
};

struct EscapeList {
    const Escape* first;
    std::size_t count;
    const Escape* begin() const { return first; }
    const Escape* end() const { return first + count; }
};
EscapeList AllEscapes();

// The handler of ESC `intro` `group` # `letter` (upper case); never null: commands without effect
// have one that does nothing. In groups that the table does not name, W is taken for counted data.
EscapeSlot FindEscapeHandler(std::uint8_t intro, std::uint8_t group, std::uint8_t letter);

namespace escapes {

// escape_table.cpp
void Ignore();

// transfer_escapes.cpp
void CompressionMethod(EscapeValue value, RasterState& raster);
void MoveDownRows(EscapeValue value, RasterState& raster);
void SkipData(EscapeValue value, InputReader& input);
void TransferPlane(EscapeValue value, InputReader& input, RasterState& raster,
                   const PageState& page, const Drawing& drawing);
void TransferRow(EscapeValue value, InputReader& input, RasterState& raster, const JobState& job,
                 const PageState& page, Drawing& drawing);

// palette_escapes.cpp
void AssignColour(EscapeValue value, RasterState& raster);
void ColourBlue(EscapeValue value, RasterState& raster);
void ColourGreen(EscapeValue value, RasterState& raster);
void ColourRed(EscapeValue value, RasterState& raster);
void ConfigureImageData(EscapeValue value, InputReader& input, RasterState& raster);
void ForegroundColour(EscapeValue value, RasterState& raster);
void PushPopPalette(EscapeValue value, RasterState& raster);
void SimpleColour(EscapeValue value, const Reading& reading, RasterState& raster);

// page_escapes.cpp
void CursorX(EscapeValue value, RasterState& raster);
void CursorY(EscapeValue value, RasterState& raster);
void CursorXDecipoints(EscapeValue value, RasterState& raster);
void CursorYDecipoints(EscapeValue value, RasterState& raster);
void DestinationHeight(EscapeValue value, RasterState& raster);
void DestinationWidth(EscapeValue value, RasterState& raster);
void MergeMode(EscapeValue value, LineState& lines);
void PositionUnits(EscapeValue value, RasterState& raster);
void Resolution(EscapeValue value, RasterState& raster);
void SourceHeight(EscapeValue value, RasterState& raster);
void SourceWidth(EscapeValue value, RasterState& raster);
// ESC E takes no value and stands in no table.
void EndPicture(const JobState& job, const PageState& page, RasterState& raster, Drawing& drawing);
void PrinterReset(const JobState& job, PageState& page, RasterState& raster, Drawing& drawing,
                  LabelState& label, FillState& fill, PenState& pens);

}  // namespace escapes
}  // namespace qm
