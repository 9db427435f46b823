// Escapes for the page, and for size, position and way of putting pictures on it; see
// escape_table.h.
#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/handlers.h"
#include "interpreter/reading.h"
#include "raster/escape_table.h"
#include "raster/picture.h"

namespace qm {

namespace {

void Move(std::int32_t& position, EscapeValue value, std::int32_t dots) {
    position = value.hadSign ? WrapAdd(position, dots) : dots;
}

// ESC*p counts in dots until ESC&u#D names a unit.
std::int32_t FromUnits(const RasterState& raster, std::int32_t value) {
    if (raster.positionUnits == 0) return value;
    return RoundToInt32(static_cast<double>(value) * raster.frame.resolution /
                        raster.positionUnits);
}

std::int32_t FromDecipoints(const RasterState& raster, std::int32_t value) {
    return RoundToInt32(value / kDecipointsPerInch * raster.frame.resolution);
}

std::int32_t Magnitude(std::int32_t value) { return value < 0 ? WrapNegate(value) : value; }

std::int32_t Rescale(std::int32_t dots, std::int32_t from, std::int32_t to) {
    return RoundToInt32(static_cast<double>(dots) * to / from);
}

}  // namespace

namespace escapes {

// ESC*p#X ESC*p#Y
void CursorX(EscapeValue value, RasterState& raster) {
    Move(raster.cursor.across, value, FromUnits(raster, value.number));
}
void CursorY(EscapeValue value, RasterState& raster) {
    Move(raster.cursor.down, value, FromUnits(raster, value.number));
}

// ESC&a#H ESC&a#V
void CursorXDecipoints(EscapeValue value, RasterState& raster) {
    Move(raster.cursor.across, value, FromDecipoints(raster, value.number));
}
void CursorYDecipoints(EscapeValue value, RasterState& raster) {
    Move(raster.cursor.down, value, FromDecipoints(raster, value.number));
}

// ESC&u#D
void PositionUnits(EscapeValue value, RasterState& raster) {
    if (value.number >= 0) raster.positionUnits = value.number;
}

// ESC*t#R: the position stays at the same place of the page. A resolution below 1 is no resolution.
void Resolution(EscapeValue value, RasterState& raster) {
    if (value.number < 1) return;
    const std::int32_t before = raster.frame.resolution;
    raster.cursor.down = Rescale(raster.cursor.down, before, value.number);
    raster.cursor.across = Rescale(raster.cursor.across, before, value.number);
    raster.frame.resolution = value.number;
}

// ESC*t#H ESC*t#V: a sign has no meaning.
void DestinationWidth(EscapeValue value, RasterState& raster) {
    raster.frame.destinationWidth = Magnitude(value.number);
}
void DestinationHeight(EscapeValue value, RasterState& raster) {
    raster.frame.destinationHeight = Magnitude(value.number);
}

// ESC*r#S ESC*r#T: each makes the destination size of an earlier picture void.
void SourceWidth(EscapeValue value, RasterState& raster) {
    raster.frame.sourceWidth = value.number;
    raster.frame.destinationWidth = 0;
}
void SourceHeight(EscapeValue value, RasterState& raster) {
    raster.frame.sourceHeight = value.number;
    raster.frame.destinationHeight = 0;
}

// ESC*l#O: one field with MC; later vectors see it too.
void MergeMode(EscapeValue value, LineState& lines) {
    if (value.number >= 0 && value.number <= 255) lines.MergeOpcode = value.number;
}

// ESC*rB ESC*rC. Quirk: an open picture stays open, and what follows goes on with it.
void EndPicture(const JobState& job, const PageState& page, RasterState& raster, Drawing& drawing) {
    if (drawing.reading.endsPictures) FinishPicture(raster, job, page, drawing);
}

// ESC E: ends the page when something was drawn on it, and begins the plot language anew as IN
// does. Quirk: an open picture stays open. It is finished later, on the next page and at the
// resolution and the position that this command sets; rows that still come overwrite it from its
// first row on.
void PrinterReset(const JobState& job, PageState& page, RasterState& raster, Drawing& drawing,
                  LabelState& label, FillState& fill, PenState& pens) {
    if (drawing.reading.endsPictures) FinishPicture(raster, job, page, drawing);
    EndCurrentPage(page, drawing);
    handlers::Initialize(drawing.reading, page, drawing, label, fill, pens);
    raster.frame.resolution = 300;
    raster.frame.destinationWidth = 0;
    raster.frame.destinationHeight = 0;
    raster.cursor = {};
    raster.pixelFormat = kOneBit;
    raster.planeIndex = 0;
    raster.currentRow = 0;
}

}  // namespace escapes
}  // namespace qm
