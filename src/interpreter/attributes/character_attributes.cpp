// Character attributes: what LB and symbol mode draw with. Nothing is sent here.
//
// Handlers: AD DI DR DT DV ES LO SA SD SI SL SM SR SS TD. State: LabelState (labels.h). Tests:
// tests/interpreter/attributes/labels_test.cpp.
#include <algorithm>
#include <cmath>

#include "common/units.h"
#include "interpreter/attributes/labels.h"
#include "interpreter/coordinates.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/reading.h"

namespace qm {

namespace {

constexpr std::uint8_t kEndOfText = 3;

// Sizes in plotter units become current units at once; a later SC does not change them.
// Quirk: with one number given the height stays.
void SetCharacterSize(const CoordinateState& c, int given, PointD size, LabelState& label) {
    if (c.scaleOn) size = {size.x / c.scaleX, size.y / c.scaleY};
    label.CharWidth = size.x;
    if (given != 1) label.CharHeight = size.y;
}

void SetDirection(LabelState& label, double angle) {
    label.direction = {std::cos(angle), std::sin(angle)};
}

// One kind-value pair of SD. A kind without a meaning takes no value, so that the number behind it
// counts as a kind.
void SetFontAttribute(Parameters& in, std::int16_t kind, const Reading& reading,
                      LabelState& label) {
    std::int16_t set = 0;
    double ignored = 0.0;
    switch (kind) {
        case 1:
            set = in.GetShortParam();
            if (set == kAbsentShort) break;
            label.StandardCharSet = set;
            label.CurrentCharSet = set;
            break;
        case 6:
            // A weight is no width of a stroke: those of the grid are as wide as the pen.
            set = in.GetShortParam();
            if (!reading.labelsOnGrid) label.StrokeWeight = std::max<std::int16_t>(set, 0);
            break;
        case 2:  // spacing, pitch, height, posture, typeface: the stroke font has one of each
        case 3:
        case 4:
        case 5:
        case 7:
            if (in.GetRealParam(ignored) && reading.labelsOnGrid) SetFontSize(label, kind, ignored);
            break;
        default:
            break;
    }
}

}  // namespace

namespace handlers {

// SI [width [, height]] in centimetres.
// Quirk: SI alone gives 0.5 x 1.0, larger than a plotter's own default.
void AbsoluteCharacterSize(Parameters& in, const Reading& reading,
                           const CoordinateState& coordinates, LabelState& label) {
    const int given = in.GetParams(2);
    if (reading.labelsOnGrid) return SetAbsoluteSize(label, given, in.PointAt(0));
    const PointD size = given == 0 ? PointD{0.5, 1.0} : in.PointAt(0);
    SetCharacterSize(coordinates, given,
                     {kUnitsPerCentimetre * size.x, kUnitsPerCentimetre * size.y}, label);
}

// SR [width [, height]] in percent of the distance of P1 and P2.
void RelativeCharacterSize(Parameters& in, const Reading& reading,
                           const CoordinateState& coordinates, LabelState& label) {
    const int given = in.GetParams(2);
    if (reading.labelsOnGrid) return SetRelativeSize(label, given, in.PointAt(0));
    const PointD percent = given == 0 ? PointD{0.75, 1.5} : in.PointAt(0);
    const PointD distance = coordinates.p2 - coordinates.p1;
    SetCharacterSize(
        coordinates, given,
        {percent.x / 100.0 * std::abs(distance.x), percent.y / 100.0 * std::abs(distance.y)},
        label);
}

// DI run, rise
// Quirk: DI alone does not turn the text back to horizontal.
void AbsoluteDirection(Parameters& in, const Reading& reading, LabelState& label) {
    PointD d;
    const bool given = in.GetPoint(d);
    if (reading.labelsOnGrid) return SetRun(label, given ? d : PointD{1.0, 0.0}, false);
    if (!given) return;
    if (d.x != 0.0 || d.y != 0.0) SetDirection(label, std::atan2(d.y, d.x));
}

// DR [run, rise] in percent of the distance of P1 and P2.
void RelativeDirection(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
                       LabelState& label) {
    PointD d;
    const bool given = in.GetPoint(d);
    if (reading.labelsOnGrid) return SetRun(label, given ? d : PointD{1.0, 0.0}, true);
    if (!given) return SetDirection(label, 0.0);
    const PointD distance = coordinates.p2 - coordinates.p1;
    SetDirection(label, std::atan2(d.y * distance.y, d.x * distance.x));
}

// LO [position]: 1 to 9 column by column from bottom left, 11 to 19 the same.
// Quirk: 11 to 19 keep no extra distance from the point; LO10 leaves the origin as it was.
void LabelOrigin(Parameters& in, const Reading& reading, LabelState& label) {
    const std::int16_t position = in.GetShortParam();
    if (position == 10 || (reading.labelsOnGrid && position == 21)) return;
    label.grid.clear = reading.labelsOnGrid && position > 10 && position < 20;
    const int place = position >= 1 && position <= 19 ? position % 10 - 1 : 0;
    label.LabelOriginH = place / 3;
    label.LabelOriginV = place % 3;
}

// SD kind, value ...
void StandardFontDefinition(Parameters& in, const Reading& reading, LabelState& label) {
    std::int16_t kind = in.GetShortParam();
    while (kind != kAbsentShort) {
        SetFontAttribute(in, kind, reading, label);
        kind = in.GetShortParam();
    }
}

// AD kind, value
// Quirk: the alternate set is selected at once.
void AlternateFontDefinition(Parameters& in, const Reading& reading, LabelState& label) {
    if (in.GetShortParam() != 1) return;
    label.AlternateCharSet = in.GetShortParam();
    if (reading.waitsForSelect) return;
    label.CurrentCharSet = label.AlternateCharSet;
}

// SS; a set of 0 counts as none.
void SelectStandardFont(LabelState& label) {
    if (label.StandardCharSet != 0) label.CurrentCharSet = label.StandardCharSet;
}

// SA; a set of 0 counts as none.
void SelectAlternateFont(LabelState& label) {
    if (label.AlternateCharSet != 0) label.CurrentCharSet = label.AlternateCharSet;
}

// DT terminator [, mode]; DT; brings ETX back and keeps the mode.
void DefineLabelTerminator(Parameters& in, LabelState& label) {
    const std::uint8_t c = in.input.GetCooked();
    if (c == ';') {
        label.LabelTerminator = kEndOfText;
        return;
    }
    label.LabelTerminator = c;
    const std::int16_t mode = in.GetShortOr(1);
    if (mode == 0 || mode == 1) label.PrintTerminator = mode == 0;
}

// DV [path [, line]]: 0 right, 1 down, 2 left, 3 up; only the grid of character cells knows lines
// that go the other way (1).
void DirectionVertical(Parameters& in, LabelState& label) {
    label.TextPath = in.GetShortOr(0);
    label.grid.linesReversed = in.GetShortOr(0) == 1;
}

// ES [characters [, lines]]
// Quirk: ES alone changes nothing; a plotter takes the extra space away.
void ExtraSpace(Parameters& in, const Reading& reading, LabelState& label) {
    const int given = in.GetParams(2);
    if (given == 0 && !reading.sizesGoBack) return;
    label.CharSpacingFactor = given == 0 ? 1.0 : 1.0 + in.slots[0];
    label.LineSpacingFactor = given == 2 ? 1.0 + in.slots[1] : 1.0;
}

// SL [tangent]
void CharacterSlant(Parameters& in, LabelState& label) {
    double tangent = 0.0;
    in.GetRealParam(tangent);
    label.SlantTangent = tangent;
}

// SM character; SM; turns symbol mode off.
void SymbolMode(InputReader& input, LabelState& label) {
    const std::uint8_t c = input.GetCooked();
    label.SymbolChar = c == ';' ? 0 : c;
}

// TD [mode]
void TransparentData(Parameters& in, LabelState& label) {
    label.TransparentData = in.GetShortOr(0);
}

}  // namespace handlers
}  // namespace qm
