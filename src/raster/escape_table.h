// The raster escapes that take a value: which handler acts on which group and letter.
//
// A handler gets the value that stood in front of its letter and reads the counted data behind it,
// if the command has any. Tests: tests/raster/raster_mode_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qm {

class HPGLRead;

// A command's value; absent, it is 0 without a sign.
struct EscapeValue {
    std::int32_t number = 0;
    bool hadSign = false;  // makes positions relative
};

using EscapeHandler = void (*)(HPGLRead&, EscapeValue);

struct Escape {
    const char* group;  // the two bytes behind ESC
    char letter;        // upper case
    EscapeHandler handler;
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
EscapeHandler FindEscapeHandler(std::uint8_t intro, std::uint8_t group, std::uint8_t letter);

namespace escapes {

// escape_table.cpp
void Ignore(HPGLRead& reader, EscapeValue value);

// transfer_escapes.cpp
void CompressionMethod(HPGLRead& reader, EscapeValue value);
void RasterYOffset(HPGLRead& reader, EscapeValue value);
void SkipData(HPGLRead& reader, EscapeValue value);
void TransferPlane(HPGLRead& reader, EscapeValue value);
void TransferRow(HPGLRead& reader, EscapeValue value);

// palette_escapes.cpp
void AssignColour(HPGLRead& reader, EscapeValue value);
void ColourBlue(HPGLRead& reader, EscapeValue value);
void ColourGreen(HPGLRead& reader, EscapeValue value);
void ColourRed(HPGLRead& reader, EscapeValue value);
void ConfigureImageData(HPGLRead& reader, EscapeValue value);
void ForegroundColour(HPGLRead& reader, EscapeValue value);
void PushPopPalette(HPGLRead& reader, EscapeValue value);
void SimpleColour(HPGLRead& reader, EscapeValue value);

// position_escapes.cpp
void CursorX(HPGLRead& reader, EscapeValue value);
void CursorY(HPGLRead& reader, EscapeValue value);
void CursorXDecipoints(HPGLRead& reader, EscapeValue value);
void CursorYDecipoints(HPGLRead& reader, EscapeValue value);
void DestinationHeight(HPGLRead& reader, EscapeValue value);
void DestinationWidth(HPGLRead& reader, EscapeValue value);
void PositionUnits(HPGLRead& reader, EscapeValue value);
void Resolution(HPGLRead& reader, EscapeValue value);
void SourceHeight(HPGLRead& reader, EscapeValue value);
void SourceWidth(HPGLRead& reader, EscapeValue value);

// page_escapes.cpp
void MergeMode(HPGLRead& reader, EscapeValue value);
// ESC E takes no value and stands in no table.
void PrinterReset(HPGLRead& reader);

}  // namespace escapes
}  // namespace qm
