// See vector_writer.h.
#include "export/vector_writer.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "common/units.h"
#include "export/font_cell.h"
#include "platform/bstr.h"
#include "platform/com_object.h"
#include "platform/text.h"

namespace qm {
namespace {

constexpr LONG kSolidLineType = 9;
constexpr double kCentimetresPerInch = 2.54;
// One degree, with the digits that existing exports used.
constexpr double kRadiansPerFontDegree = 0.01745329252;

// Line types of the host's line styles 0 to 4; any other style is solid.
LONG LineTypeOf(LONG style) noexcept {
    constexpr LONG kTypes[] = {kSolidLineType, 2, 1, 4, 6};
    return style >= 0 && style < 5 ? kTypes[style] : kSolidLineType;
}

struct Components {
    LONG red, green, blue;
};

Components ComponentsOf(std::uint32_t colour) noexcept {
    return {static_cast<LONG>(colour & 255), static_cast<LONG>(colour >> 8 & 255),
            static_cast<LONG>(colour >> 16 & 255)};
}

// What a pen table knows of a pen; -1 where it knows nothing.
struct TablePenProperties {
    LONG style = -1;
    LONG colour = -1;
    double width = -1.0;
};

TablePenProperties AskPenTable(IUnknown* table, LONG pen) noexcept {
    TablePenProperties pen_properties;
    const auto pens = Query<IQmPenTable>(table);
    if (pens && SUCCEEDED(pens->GetPen(pen, &pen_properties.style, &pen_properties.colour,
                                       &pen_properties.width)))
        return pen_properties;
    return {};
}

}  // namespace

HRESULT VectorWriter::DrawColour(LONG red, LONG green, LONG blue) noexcept {
    if (settings_.monoEnabled) {
        if (!state_.monoPending) return S_OK;
        state_.monoPending = false;
        const Components mono = ComponentsOf(settings_.monoColor);
        return output_.Write(plot_text::kDrawColour, 1, mono.red, mono.green, mono.blue, 1);
    }
    state_.drawColor = static_cast<std::uint32_t>(red) | static_cast<std::uint32_t>(green) << 8 |
                       static_cast<std::uint32_t>(blue) << 16;
    if (state_.penColorFromTable) return S_OK;
    return output_.Write(plot_text::kDrawColour, state_.pen, red, green, blue, state_.pen);
}

HRESULT VectorWriter::WhitePen() noexcept {
    return output_.Write(plot_text::kDrawColour, state_.pen, 255, 255, 255, state_.pen);
}

void VectorWriter::AddLineType(TextSequence& texts, LONG type) const noexcept {
    if (type == kSolidLineType) {
        texts.Add(plot_text::kSolidLine);
    } else {
        texts.Add(plot_text::kLineType, type);
    }
}

HRESULT VectorWriter::SelectPen(LONG pen) noexcept {
    state_.pen = std::max<LONG>(pen, 0);
    if (settings_.usePenTable && settings_.penTable) return TablePen();
    // Quirk: without a pen table the pen is not selected here, only its line type is written; the
    // selection comes with the next draw colour. On a fresh sink the type is 0, which is "LT0;".
    TextSequence texts(output_);
    AddLineType(texts, state_.hpglLineType);
    return texts.Status();
}

HRESULT VectorWriter::TablePen() noexcept {
    const TablePenProperties table = AskPenTable(settings_.penTable.Get(), state_.pen);
    state_.penWidthFromTable = table.width != -1.0;
    state_.penColorFromTable = table.colour != -1;
    state_.penStyleFromTable = table.style != -1;

    // Quirk: the host's width is taken as plotter units here; LineWidth scales it.
    double width = state_.lineWidth;
    if (state_.penWidthFromTable) {
        const double inches =
            settings_.penTableInMillimetres ? table.width / kMillimetresPerInch : table.width;
        width = inches * kUnitsPerInch;
    }
    const Components colour = ComponentsOf(
        state_.penColorFromTable ? static_cast<std::uint32_t>(table.colour) : state_.drawColor);
    TextSequence texts(output_);
    texts.Add(plot_text::kPenWidth, width / kUnitsPerMillimetre, state_.pen);
    texts.Add(plot_text::kTableColour, state_.pen, colour.red, colour.green, colour.blue,
              state_.pen);
    AddLineType(texts, LineTypeOf(state_.penStyleFromTable ? table.style : state_.lineStyle));
    return texts.Status();
}

HRESULT VectorWriter::LineStyle(LONG style) noexcept {
    state_.lineStyle = style;
    if (state_.penStyleFromTable) return S_OK;
    state_.hpglLineType = LineTypeOf(style);
    TextSequence texts(output_);
    AddLineType(texts, state_.hpglLineType);
    return texts.Status();
}

HRESULT VectorWriter::LineWidth(LONG width) noexcept {
    state_.lineWidth = std::max<LONG>(width, 0);
    if (state_.penWidthFromTable) return S_OK;
    const double units = state_.lineWidth * settings_.transform.scale;
    return output_.Write(plot_text::kPenWidth, units / kUnitsPerMillimetre, state_.pen);
}

HRESULT VectorWriter::LineWeight(LONG weight) noexcept {
    if (!settings_.useLineWeights || state_.penWidthFromTable) return S_OK;
    return output_.Write(plot_text::kPenWidth, weight / 100.0, state_.pen);
}

HRESULT VectorWriter::DrawMode(LONG mode) noexcept {
    if (state_.drawMode == mode) return S_OK;
    state_.drawMode = mode;
    return output_.Write(mode == 9 ? plot_text::kInvertMode : plot_text::kNormalMode);
}

HRESULT VectorWriter::FillStyle(LONG style, LONG index) noexcept {
    if (style == 0) return output_.Write(plot_text::kSolidFill);
    if (style == 2 && index >= 0 && index < 6) return output_.Write(plot_text::kHatches[index]);
    if (style == 3) return output_.Write(plot_text::kPatternFill, index);
    return S_OK;
}

HRESULT VectorWriter::DefineFillPattern(LONG index, LONG width, LONG height,
                                        const BYTE* pattern) noexcept {
    if (pattern == nullptr && width > 0 && height > 0) return E_INVALIDARG;
    const std::size_t rowBytes = (static_cast<std::size_t>(std::max<LONG>(width, 0)) + 15) / 16 * 2;
    TextSequence texts(output_);
    texts.Add(plot_text::kFillPattern, index, width, height);
    for (LONG y = 0; y < height && width > 0 && texts.Going(); ++y) {
        const BYTE* row = pattern + rowBytes * static_cast<std::size_t>(y);
        for (LONG x = 0; x < width && texts.Going(); ++x) {
            const bool set = (row[x / 8] >> (7 - x % 8) & 1) != 0;
            texts.Add(set ? plot_text::kPatternSetBit : plot_text::kPatternClearBit);
        }
    }
    return texts.Add(plot_text::kEndFillPattern).Status();
}

HRESULT VectorWriter::Line(PlotPoint from, PlotPoint to) noexcept {
    return output_.Write(plot_text::kLine, from.x, from.y, to.x, to.y);
}

HRESULT VectorWriter::Circle(PlotPoint centre, std::int32_t radius, bool filled) noexcept {
    return output_.Write(filled ? plot_text::kFilledCircle : plot_text::kCircle, centre.x, centre.y,
                         radius);
}

HRESULT VectorWriter::Font(LONG size, const BYTE* description) noexcept {
    if (description == nullptr || size < static_cast<LONG>(sizeof(LOGFONTA))) return E_INVALIDARG;
    const FontCell cell = MeasureFont(description);
    if (!cell.height) return E_FAIL;
    const double inches = *cell.height * settings_.transform.scale / kUnitsPerInch;
    state_.textAdvance = 0.75 * *cell.height;

    // Quirk: half the height of the cell, and a character half as wide as that.
    const double height = inches * kCentimetresPerInch / 2;
    TextSequence texts(output_);
    texts.Add(plot_text::kCharacterSize, height / 2, height);
    if (cell.escapement != 0) {
        const double angle = cell.escapement / 10.0 * kRadiansPerFontDegree;
        texts.Add(plot_text::kTextDirection, std::cos(angle), std::sin(angle));
    } else {
        texts.Add(plot_text::kHorizontalText);
    }
    return texts.Status();
}

HRESULT VectorWriter::Text(PlotPoint at, BSTR text) noexcept {
    return Guarded([&] {
        const std::wstring_view characters = ViewOf(text);
        std::string label(plot_text::kStartLabel);
        label += WideToBytes(characters.substr(0, characters.find(L'\0')));
        label += plot_text::kEndLabel;
        return TextSequence(output_)
            .Add(plot_text::kTextPosition, at.x, at.y)
            .Add(std::string_view(label))
            .Status();
    });
}

}  // namespace qm
