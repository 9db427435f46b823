// Escapes for the size and the position of pictures; see escape_table.h.
#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/hpgl_read.h"
#include "raster/escape_table.h"

namespace qm {

namespace {

void Move(std::int32_t& position, EscapeValue value, std::int32_t dots) {
    position = value.hadSign ? WrapAdd(position, dots) : dots;
}

// ESC*p counts in dots until ESC&u#D names a unit.
std::int32_t FromUnits(const RasterState& raster, std::int32_t value) {
    if (raster.positionUnits == 0) return value;
    return RoundToInt32(static_cast<double>(value) * raster.resolution / raster.positionUnits);
}

std::int32_t FromDecipoints(const RasterState& raster, std::int32_t value) {
    return RoundToInt32(value / kDecipointsPerInch * raster.resolution);
}

std::int32_t Magnitude(std::int32_t value) { return value < 0 ? WrapNegate(value) : value; }

std::int32_t Rescale(std::int32_t dots, std::int32_t from, std::int32_t to) {
    return RoundToInt32(static_cast<double>(dots) * to / from);
}

}  // namespace

namespace escapes {

// ESC*p#X ESC*p#Y
void CursorX(HPGLRead& reader, EscapeValue value) {
    Move(reader.raster.positionB, value, FromUnits(reader.raster, value.number));
}
void CursorY(HPGLRead& reader, EscapeValue value) {
    Move(reader.raster.positionA, value, FromUnits(reader.raster, value.number));
}

// ESC&a#H ESC&a#V
void CursorXDecipoints(HPGLRead& reader, EscapeValue value) {
    Move(reader.raster.positionB, value, FromDecipoints(reader.raster, value.number));
}
void CursorYDecipoints(HPGLRead& reader, EscapeValue value) {
    Move(reader.raster.positionA, value, FromDecipoints(reader.raster, value.number));
}

// ESC&u#D
void PositionUnits(HPGLRead& reader, EscapeValue value) {
    if (value.number >= 0) reader.raster.positionUnits = value.number;
}

// ESC*t#R: the position stays at the same place of the page. A resolution below 1 is no resolution.
void Resolution(HPGLRead& reader, EscapeValue value) {
    if (value.number < 1) return;
    RasterState& raster = reader.raster;
    raster.positionA = Rescale(raster.positionA, raster.resolution, value.number);
    raster.positionB = Rescale(raster.positionB, raster.resolution, value.number);
    raster.resolution = value.number;
}

// ESC*t#H ESC*t#V: a sign has no meaning.
void DestinationWidth(HPGLRead& reader, EscapeValue value) {
    reader.raster.destinationWidth = Magnitude(value.number);
}
void DestinationHeight(HPGLRead& reader, EscapeValue value) {
    reader.raster.destinationHeight = Magnitude(value.number);
}

// ESC*r#S ESC*r#T: each makes the destination size of an earlier picture void.
void SourceWidth(HPGLRead& reader, EscapeValue value) {
    reader.raster.sourceWidth = value.number;
    reader.raster.destinationWidth = 0;
}
void SourceHeight(HPGLRead& reader, EscapeValue value) {
    reader.raster.sourceHeight = value.number;
    reader.raster.destinationHeight = 0;
}

}  // namespace escapes
}  // namespace qm
