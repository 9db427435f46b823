// Character attributes: what LB and symbol mode draw with. Nothing is sent here.
//
// Handlers: AD DI DR DT DV ES LM LO SA SD SI SL SM SR SS TD. State: LabelState (labels.h). Tests:
// tests/interpreter/attributes/labels_test.cpp.
#include <algorithm>
#include <cmath>

#include "interpreter/attributes/labels.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

namespace {

constexpr std::uint8_t kEndOfText = 3;
constexpr double kUnitsPerCentimetre = 400.0;

// Sizes in plotter units become current units at once; a later SC does not change them.
// Quirk: with one number given the height stays.
void SetCharacterSize(HPGLRead& reader, int given, PointD size) {
    const CoordinateState& c = reader.coordinates;
    if (c.scaleOn) size = {size.x / c.scaleX, size.y / c.scaleY};
    reader.label.CharWidth = size.x;
    if (given != 1) reader.label.CharHeight = size.y;
}

void SetDirection(LabelState& label, double angle) {
    label.LabelAngle = angle;
    label.direction = {std::cos(angle), std::sin(angle)};
}

std::int16_t ShortOr(HPGLRead& reader, std::int16_t absent) {
    const std::int16_t value = reader.GetShortParam();
    return value == kAbsentShort ? absent : value;
}

// One kind-value pair of SD. A kind without a meaning takes no value, so that the number behind it
// counts as a kind.
void SetFontAttribute(HPGLRead& reader, std::int16_t kind) {
    LabelState& label = reader.label;
    std::int16_t set = 0;
    double ignored = 0.0;
    switch (kind) {
        case 1:
            set = reader.GetShortParam();
            if (set == kAbsentShort) break;
            label.StandardCharSet = set;
            label.CurrentCharSet = set;
            break;
        case 6:
            label.StrokeWeight = std::max<std::int16_t>(reader.GetShortParam(), 0);
            break;
        case 2:  // spacing, pitch, height, posture, typeface: the stroke font has one of each
        case 3:
        case 4:
        case 5:
        case 7:
            reader.GetRealParam(ignored);
            break;
        default:
            break;
    }
}

}  // namespace

namespace handlers {

// SI [width [, height]] in centimetres.
// Quirk: SI alone gives 0.5 x 1.0, larger than a plotter's own default.
void AbsoluteCharacterSize(HPGLRead& reader) {
    const int given = reader.GetParams(2);
    const PointD size = given == 0 ? PointD{0.5, 1.0} : PointD{reader.params[0], reader.params[1]};
    SetCharacterSize(reader, given, {kUnitsPerCentimetre * size.x, kUnitsPerCentimetre * size.y});
}

// SR [width [, height]] in percent of the distance of P1 and P2.
void RelativeCharacterSize(HPGLRead& reader) {
    const int given = reader.GetParams(2);
    const PointD percent =
        given == 0 ? PointD{0.75, 1.5} : PointD{reader.params[0], reader.params[1]};
    const PointD distance = reader.coordinates.p2 - reader.coordinates.p1;
    SetCharacterSize(
        reader, given,
        {percent.x / 100.0 * std::abs(distance.x), percent.y / 100.0 * std::abs(distance.y)});
}

// DI run, rise
// Quirk: DI alone does not turn the text back to horizontal.
void AbsoluteDirection(HPGLRead& reader) {
    if (reader.GetParams(2) != 2) return;
    const double run = reader.params[0];
    const double rise = reader.params[1];
    if (run != 0.0 || rise != 0.0) SetDirection(reader.label, std::atan2(rise, run));
}

// DR [run, rise] in percent of the distance of P1 and P2.
void RelativeDirection(HPGLRead& reader) {
    if (reader.GetParams(2) != 2) return SetDirection(reader.label, 0.0);
    const PointD distance = reader.coordinates.p2 - reader.coordinates.p1;
    const double angle = std::atan2(reader.params[1] * distance.y, reader.params[0] * distance.x);
    SetDirection(reader.label, angle);
}

// LO [position]: 1 to 9 column by column from bottom left, 11 to 19 the same.
// Quirk: 11 to 19 keep no extra distance from the point; LO10 leaves the origin as it was.
void LabelOrigin(HPGLRead& reader) {
    const std::int16_t position = reader.GetShortParam();
    if (position == 10) return;
    const int place = position >= 1 && position <= 19 ? position % 10 - 1 : 0;
    reader.label.LabelOriginH = place / 3;
    reader.label.LabelOriginV = place % 3;
}

// SD kind, value ...
void StandardFontDefinition(HPGLRead& reader) {
    std::int16_t kind = reader.GetShortParam();
    while (kind != kAbsentShort) {
        SetFontAttribute(reader, kind);
        kind = reader.GetShortParam();
    }
}

// AD kind, value
// Quirk: the alternate set is selected at once.
void AlternateFontDefinition(HPGLRead& reader) {
    if (reader.GetShortParam() != 1) return;
    reader.label.AlternateCharSet = reader.GetShortParam();
    reader.label.CurrentCharSet = reader.label.AlternateCharSet;
}

// SS; a set of 0 counts as none.
void SelectStandardFont(HPGLRead& reader) {
    LabelState& label = reader.label;
    if (label.StandardCharSet != 0) label.CurrentCharSet = label.StandardCharSet;
}

// SA; a set of 0 counts as none.
void SelectAlternateFont(HPGLRead& reader) {
    LabelState& label = reader.label;
    if (label.AlternateCharSet != 0) label.CurrentCharSet = label.AlternateCharSet;
}

// DT terminator [, mode]; DT; brings ETX back and keeps the mode.
void DefineLabelTerminator(HPGLRead& reader) {
    LabelState& label = reader.label;
    const std::uint8_t c = reader.input.GetCooked();
    if (c == ';') {
        label.LabelTerminator = kEndOfText;
        return;
    }
    label.LabelTerminator = c;
    const std::int16_t mode = ShortOr(reader, 1);
    if (mode == 0 || mode == 1) label.PrintTerminator = mode == 0;
}

// DV [path]: 0 right, 1 down, 2 left, 3 up.
void DirectionVertical(HPGLRead& reader) { reader.label.TextPath = ShortOr(reader, 0); }

// ES [characters [, lines]]
void ExtraSpace(HPGLRead& reader) {
    const int given = reader.GetParams(2);
    if (given == 0) return;
    reader.label.CharSpacingFactor = 1.0 + reader.params[0];
    reader.label.LineSpacingFactor = given == 2 ? 1.0 + reader.params[1] : 1.0;
}

// LM [mode]; absent stores the marker.
void LabelMode(HPGLRead& reader) { reader.label.LabelMode = reader.GetShortParam(); }

// SL [tangent]
void CharacterSlant(HPGLRead& reader) {
    double tangent = 0.0;
    reader.GetRealParam(tangent);
    reader.label.SlantTangent = tangent;
}

// SM character; SM; turns symbol mode off.
void SymbolMode(HPGLRead& reader) {
    const std::uint8_t c = reader.input.GetCooked();
    reader.label.SymbolChar = c == ';' ? 0 : c;
}

// TD [mode]
void TransparentData(HPGLRead& reader) { reader.label.TransparentData = ShortOr(reader, 0); }

}  // namespace handlers
}  // namespace qm
