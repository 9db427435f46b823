// See pens.h. Handlers: SP PW WU PC NP CR TR.
#include "interpreter/attributes/pens.h"

#include <algorithm>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

PenState::PenState() { ResetColors(); }

void PenState::ResetColors() {
    for (std::int32_t i = 0; i < kPenCount; ++i) {
        PenTable[static_cast<std::size_t>(i)].color = DefaultPenColor(i);
    }
}

void PenState::SetWidths(double width) {
    for (Pen& pen : PenTable) pen.width = width;
}

void PenState::UpdateWhitePen() {
    WhitePenSuppressed = Transparency && Get(CurrentPen).color == kWhite;
}

Pen PenState::Get(std::int32_t pen) const {
    return pen >= 0 && pen < kPenCount ? PenTable[static_cast<std::size_t>(pen)] : Pen{};
}

void SelectPen(HPGLRead& reader, std::int32_t pen) {
    if (pen == kAbsentShort) pen = 0;
    if (pen >= kPenCount) pen = (pen - 1) % 255 + 1;
    reader.pens.CurrentPen = pen;
    const Pen entry = reader.pens.Get(pen);
    SendWidth(reader, ClampWidth(entry.width));
    reader.SetColor(entry.color);
    const LineState& lines = reader.lines;
    if (!lines.UserLineTypeDefined(lines.LineTypeNumber)) {
        reader.SetLineStyle(lines.EmittedLineType);
        // Quirk: the factor is 4 here and 8 in the change filter.
        reader.SetPatternLength(TruncateToInt32(4.0 * lines.EmittedPatternLength),
                                static_cast<std::uint32_t>(lines.EmittedPatternBits));
    }
    reader.SetLineWidth(lines.EmittedWidth);
    reader.SetPen(pen);
    reader.pens.UpdateWhitePen();
}

namespace {

// The colour of PC's three components; without the first one `otherwise`, a missing further one is
// 0.
std::uint32_t ReadColor(HPGLRead& reader, std::uint32_t otherwise) {
    std::array<double, 3> components{};
    if (!reader.GetRealParam(components[0])) return otherwise;
    reader.GetRealParam(components[1]);
    reader.GetRealParam(components[2]);
    std::uint32_t color = 0;
    for (std::size_t i = 0; i < components.size(); ++i) {
        color |= std::uint32_t{ColorByte(components[i], reader.pens.colorRange[i])} << (8 * i);
    }
    return color;
}

}  // namespace

std::uint8_t ColorByte(double component, ColorRange range) {
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
void SelectPen(HPGLRead& reader) { qm::SelectPen(reader, reader.GetShortParam()); }

// PW [width [, pen]]; without a pen all of them, without a width all to 0.
void PenWidth(HPGLRead& reader) {
    PenState& pens = reader.pens;
    double width = 0.0;
    if (reader.GetRealParam(width)) {
        // Quirk: a relative width of 1 is one thousandth of the distance, not one hundredth.
        width *=
            pens.WidthUnitRelative ? reader.coordinates.p1p2Distance / 1000.0 : kUnitsPerMillimetre;
        const std::int16_t pen = reader.GetShortParam();
        if (pen == kAbsentShort) {
            pens.SetWidths(width);
        } else if (pen >= 0 && pen < kPenCount) {
            pens.PenTable[static_cast<std::size_t>(pen)].width = width;
        }
    } else {
        pens.SetWidths(0.0);
    }
    SendWidth(reader, ClampWidth(pens.Get(pens.CurrentPen).width));
}

// WU [mode]: 0 millimetres, 1 relative. Quirk: only WU without a mode clears the widths; none is
// sent.
void PenWidthUnit(HPGLRead& reader) {
    const std::int16_t mode = reader.GetShortParam();
    if (mode == kAbsentShort) reader.pens.SetWidths(0.0);
    if (mode == kAbsentShort || mode == 0) reader.pens.WidthUnitRelative = false;
    if (mode == 1) reader.pens.WidthUnitRelative = true;
}

// PC [pen [, red, green, blue]]; without components the pen's default colour, without a pen all
// defaults. Quirk: only a PC that names the current pen is sent.
void PenColor(HPGLRead& reader) {
    PenState& pens = reader.pens;
    pens.PaletteChanged = true;
    const std::int16_t pen = reader.GetShortParam();
    if (pen == kAbsentShort) return pens.ResetColors();
    if (pen < 0 || pen >= kPenCount) return;
    const std::uint32_t color = ReadColor(reader, DefaultPenColor(pen));
    pens.PenTable[static_cast<std::size_t>(pen)].color = color;
    if (pen != pens.CurrentPen) return;
    reader.SetColor(color);
    pens.UpdateWhitePen();
}

// NP [count]
void NumberOfPens(HPGLRead& reader) {
    const std::int16_t count = reader.GetShortParam();
    reader.pens.NumberOfPens = count == kAbsentShort ? kPenCount : count;
}

// CR [black, white of red, of green, of blue]; with fewer than six numbers nothing changes.
void ColorRange(HPGLRead& reader) {
    std::array<double, 6> references{};
    for (double& reference : references) {
        if (!reader.GetRealParam(reference)) return;
    }
    for (std::size_t i = 0; i < reader.pens.colorRange.size(); ++i) {
        const std::int32_t black = ClampTruncated(references[2 * i], 0);
        const std::int32_t white = ClampTruncated(references[2 * i + 1], black);
        reader.pens.colorRange[i] = {black, white - black};
    }
}

// TR [mode]: absent or 1 makes white transparent, 0 does not.
void TransparencyMode(HPGLRead& reader) {
    const std::int16_t mode = reader.GetShortParam();
    if (mode != kAbsentShort && mode != 0 && mode != 1) return;
    reader.pens.Transparency = mode != 0;
    reader.pens.UpdateWhitePen();
}

}  // namespace handlers
}  // namespace qm
