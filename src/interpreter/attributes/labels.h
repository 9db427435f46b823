// Labels: text drawn with the stroke font, and symbol mode.
//
// Commands LB CP in labels.cpp, the character attributes in character_attributes.cpp, the glyphs in
// stroke_font.h. Tests: tests/interpreter/attributes/labels_test.cpp.
#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace qm {

class HPGLRead;

struct LabelState {
    std::uint8_t LabelTerminator = 3;
    bool PrintTerminator = false;  // DT mode 0: the terminator is drawn too
    double CharWidth = 60.0;       // current units
    double CharHeight = 120.0;
    double LabelAngle = 0.0;     // radians
    PointD direction{1.0, 0.0};  // cosine and sine of LabelAngle
    double SlantTangent = 0.0;
    std::int32_t TextPath = 0;  // DV
    double CharSpacingFactor = 1.0;
    double LineSpacingFactor = 1.0;
    std::int32_t LabelOriginH = 0;  // 0 left, 1 centre, 2 right
    std::int32_t LabelOriginV = 0;  // 0 bottom, 1 middle, 2 top
    std::int32_t StandardCharSet = 0;
    std::int32_t AlternateCharSet = 0;
    std::int32_t CurrentCharSet = 0;
    std::int32_t StrokeWeight = 0;     // sent as the width of label strokes unless 9999
    std::uint8_t SymbolChar = 0;       // 0: symbol mode off
    std::int32_t TransparentData = 0;  // non-zero: CR and LF in a label are characters
    std::int32_t LabelMode = 0;        // stored only
};

// Draws the symbol-mode character about the pen position, which stays.
void DrawSymbol(HPGLRead& reader);

}  // namespace qm
