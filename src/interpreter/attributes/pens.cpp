// See pens.h. Handlers: SP PW WU PC CR TR.
#include "interpreter/attributes/pens.h"

#include <algorithm>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/attributes/lines.h"
#include "interpreter/coordinates.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/output.h"
#include "interpreter/reading.h"

namespace qm {

PenState::PenState() { ResetColours(); }

void PenState::ResetColours() {
    for (std::int32_t i = 0; i < kPenCount; ++i) {
        PenTable[static_cast<std::size_t>(i)].colour = DefaultPenColour(i);
    }
}

void PenState::SetWidths(double width) {
    for (Pen& pen : PenTable) pen.width = width;
}

double PenState::DefaultWidth(const Reading& reading, const CoordinateState& coordinates) const {
    constexpr double kMillimetres = 0.35;
    constexpr double kPercent = 0.1;  // of the distance of P1 and P2
    if (!reading.pensHaveWidth) return 0.0;
    return WidthUnitRelative ? kPercent / 100.0 * coordinates.p1p2Distance
                             : kMillimetres * kUnitsPerMillimetre;
}

void PenState::UpdateWhitePen() {
    WhitePenSuppressed = Transparency && Get(CurrentPen).colour == kWhite;
}

Pen PenState::Get(std::int32_t pen) const {
    return pen >= 0 && pen < kPenCount ? PenTable[static_cast<std::size_t>(pen)] : Pen{};
}

void PenState::Select(std::int32_t pen, LineState& lines, Output& out) {
    if (pen == kAbsentShort) pen = 0;
    if (pen >= kPenCount) pen = (pen - 1) % 255 + 1;
    CurrentPen = pen;
    selected = true;
    const Pen entry = Get(pen);
    lines.SendWidth(ClampWidth(entry.width), out);
    out.SetColor(entry.colour);
    if (!lines.UserLineTypeDefined(lines.LineTypeNumber)) {
        out.SetLineStyle(lines.EmittedLineType);
        // Quirk: the factor is 4 here and 8 in the change filter.
        out.SetPatternLength(TruncateToInt32(4.0 * lines.EmittedPatternLength),
                             lines.EmittedPatternBits);
    }
    if (lines.dashes.count > 0) SendDashes(lines.dashes, out);
    out.SetLineWidth(lines.EmittedWidth);
    out.SetPen(pen);
    UpdateWhitePen();
}

namespace {

// The colour of PC's three components; without the first one `otherwise`, a missing further one is
// 0.
std::uint32_t ReadColour(Parameters& in, const PenState& pens, std::uint32_t otherwise) {
    std::array<double, 3> components{};
    if (!in.GetRealParam(components[0])) return otherwise;
    in.GetRealParam(components[1]);
    in.GetRealParam(components[2]);
    const auto byte = [&](std::size_t i) { return ColourByte(components[i], pens.colourRange[i]); };
    return Colour{byte(0), byte(1), byte(2)}.ToBgr();
}

}  // namespace

std::uint8_t ColourByte(double component, ComponentRange range) {
    std::int32_t value = 0;
    if (range.black >= range.range) {
        // Quirk: a range that is no longer than its black reference counts as inverted. Without any
        // range the quotient is no number, whose low byte is 0.
        value = TruncateToInt32((range.black - component) / range.black * 255.0);
    } else {
        const std::int32_t above = TruncateToInt32(component - range.black);
        value = std::clamp(above, 0, range.range) * 255 / range.range;
    }
    return static_cast<std::uint8_t>(static_cast<std::uint32_t>(value) & 0xFFU);
}

namespace handlers {

// SP [pen]
void SelectPen(Parameters& in, PenState& pens, LineState& lines, Output& out) {
    pens.Select(in.GetShortParam(), lines, out);
}

// PW [width [, pen]]; without a pen all of them, without a width all to 0.
void PenWidth(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
              PenState& pens, LineState& lines, Output& out) {
    double width = 0.0;
    if (in.GetRealParam(width)) {
        // Quirk: a relative width of 1 is one thousandth of the distance, not one hundredth.
        const double share = reading.percentWidths ? 100.0 : 1000.0;
        width *= pens.WidthUnitRelative ? coordinates.p1p2Distance / share : kUnitsPerMillimetre;
        const std::int16_t pen = in.GetShortParam();
        if (pen == kAbsentShort) {
            pens.SetWidths(width);
        } else if (pen >= 0 && pen < kPenCount) {
            pens.PenTable[static_cast<std::size_t>(pen)].width = width;
        }
    } else {
        pens.SetWidths(pens.DefaultWidth(reading, coordinates));
    }
    lines.SendWidth(ClampWidth(pens.Get(pens.CurrentPen).width), out);
}

// WU [mode]: 0 millimetres, 1 relative. Quirk: only WU without a mode clears the widths; none is
// sent.
void PenWidthUnit(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
                  PenState& pens, LineState& lines, Output& out) {
    const std::int16_t mode = in.GetShortParam();
    if (mode == kAbsentShort) pens.SetWidths(0.0);
    if (mode == kAbsentShort || mode == 0) pens.WidthUnitRelative = false;
    if (mode == 1) pens.WidthUnitRelative = true;
    if (!reading.pensHaveWidth) return;
    pens.SetWidths(pens.DefaultWidth(reading, coordinates));
    lines.SendWidth(ClampWidth(pens.Get(pens.CurrentPen).width), out);
}

// PC [pen [, red, green, blue]]; without components the pen's default colour, without a pen all
// defaults. Quirk: only a PC that names the current pen is sent.
void PenColour(Parameters& in, PenState& pens, Output& out) {
    pens.PaletteChanged = true;
    const std::int16_t pen = in.GetShortParam();
    if (pen == kAbsentShort) return pens.ResetColours();
    if (pen < 0 || pen >= kPenCount) return;
    const std::uint32_t colour = ReadColour(in, pens, DefaultPenColour(pen));
    pens.PenTable[static_cast<std::size_t>(pen)].colour = colour;
    if (pen != pens.CurrentPen) return;
    out.SetColor(colour);
    pens.UpdateWhitePen();
}

// CR [black, white of red, of green, of blue]; with fewer than six numbers nothing changes.
void ColorRange(Parameters& in, PenState& pens) {
    std::array<double, 6> references{};
    for (double& reference : references) {
        if (!in.GetRealParam(reference)) return;
    }
    for (std::size_t i = 0; i < pens.colourRange.size(); ++i) {
        const std::int32_t black = ClampTruncated(references[2 * i], 0);
        const std::int32_t white = ClampTruncated(references[2 * i + 1], black);
        pens.colourRange[i] = {black, white - black};
    }
}

// TR [mode]: absent or 1 makes white transparent, 0 does not.
void TransparencyMode(Parameters& in, PenState& pens) {
    const std::int16_t mode = in.GetShortOr(1);
    if (mode != 0 && mode != 1) return;
    pens.Transparency = mode != 0;
    pens.UpdateWhitePen();
}

}  // namespace handlers
}  // namespace qm
