// See vector_writer.h.
#include "export/vector_writer.h"

#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "common/units.h"
#include "platform/com_object.h"
#include "platform/text.h"
#include "platform/variant.h"

namespace qm {
namespace {

constexpr LONG kSolidLineType = 9;
// One degree, with the digits that existing exports used.
constexpr double kRadiansPerFontDegree = 0.01745329252;

// Line types of the host's line styles 0 to 4; any other style is solid.
LONG LineTypeOf(LONG style) noexcept {
    constexpr LONG kTypes[] = {kSolidLineType, 2, 1, 4, 6};
    return style >= 0 && style < 5 ? kTypes[style] : kSolidLineType;
}

// What a pen table knows of a pen; -1 where it knows nothing.
struct PenFromTable {
    LONG style = -1;
    LONG colour = -1;
    double width = -1.0;
};

PenFromTable AskPenTable(IUnknown* table, LONG pen) noexcept {
    PenFromTable found;
    const auto pens = Query<IQmPenTable>(table);
    if (pens && SUCCEEDED(pens->GetPen(pen, &found.style, &found.colour, &found.width)))
        return found;
    return {};
}

// ---------------------------------------------------------------- Measuring a font

// The screen's device context with a font selected, both given back at the end in the order the
// system asks for.
class MeasuringContext {
  public:
    explicit MeasuringContext(const LOGFONTA& description) noexcept
        : context_(GetDC(nullptr)), font_(CreateFontIndirectA(&description)) {
        if (context_ != nullptr && font_ != nullptr) previous_ = SelectObject(context_, font_);
    }
    ~MeasuringContext() {
        if (previous_ != nullptr) SelectObject(context_, previous_);
        if (font_ != nullptr) DeleteObject(font_);
        if (context_ != nullptr) ReleaseDC(nullptr, context_);
    }
    MeasuringContext(const MeasuringContext&) = delete;
    MeasuringContext& operator=(const MeasuringContext&) = delete;

    std::optional<LONG> HeightOfA() const noexcept {
        SIZE extent = {};
        if (previous_ == nullptr || !GetTextExtentPoint32A(context_, "A", 1, &extent))
            return std::nullopt;
        return extent.cy;
    }

  private:
    HDC context_;
    HFONT font_;
    HGDIOBJ previous_ = nullptr;
};

// Height of a font's character cell, measured as the system measures it.
struct FontCell {
    // Of the upright "A", in the units of the description's height; nothing when a call failed.
    std::optional<LONG> height;
    // Direction of the text, tenths of a degree counter-clockwise.
    LONG escapement = 0;
};

// `description` holds the 60 bytes of a LOGFONTA, aligned or not; it is measured without its
// escapement, which would turn the cell.
FontCell MeasureFont(const BYTE* description) noexcept {
    LOGFONTA font;
    std::memcpy(&font, description, sizeof(font));
    FontCell cell;
    cell.escapement = font.lfEscapement;
    font.lfEscapement = 0;
    cell.height = MeasuringContext(font).HeightOfA();
    return cell;
}

}  // namespace

HRESULT VectorWriter::DrawColour(LONG red, LONG green, LONG blue) noexcept {
    // Quirk: nothing ever defines the mono colour, so a mono export writes no colour at all and the
    // plotter's default pens decide.
    if (settings_.mono) return S_OK;
    // Components above 255 run into each other, in what is remembered alone.
    state_.drawColour =
        Colour::FromBgr(static_cast<std::uint32_t>(red) | static_cast<std::uint32_t>(green) << 8 |
                        static_cast<std::uint32_t>(blue) << 16);
    if (state_.penColourFromTable) return S_OK;
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
    const PenFromTable table = AskPenTable(settings_.penTable.Get(), state_.pen);
    state_.penWidthFromTable = table.width != -1.0;
    state_.penColourFromTable = table.colour != -1;
    state_.penStyleFromTable = table.style != -1;

    // Quirk: the host's width is taken as plotter units here; LineWidth scales it.
    double width = state_.lineWidth;
    if (state_.penWidthFromTable) {
        const double inches =
            settings_.penTableInMillimetres ? table.width / kMillimetresPerInch : table.width;
        width = inches * kUnitsPerInch;
    }
    const Colour colour = state_.penColourFromTable
                              ? Colour::FromBgr(static_cast<std::uint32_t>(table.colour))
                              : state_.drawColour;
    TextSequence texts(output_);
    texts.Add(plot_text::kPenWidth, width / kUnitsPerMillimetre, state_.pen);
    texts.Add(plot_text::kTableColour, state_.pen, Int{colour.red}, Int{colour.green},
              Int{colour.blue}, state_.pen);
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

HRESULT VectorWriter::Line(PointI from, PointI to) noexcept {
    return output_.Write(plot_text::kLine, from.x, from.y, to.x, to.y);
}

HRESULT VectorWriter::Circle(PointI centre, std::int32_t radius, bool filled) noexcept {
    return output_.Write(filled ? plot_text::kFilledCircle : plot_text::kCircle, centre.x, centre.y,
                         radius);
}

HRESULT VectorWriter::Font(LONG size, const BYTE* description) noexcept {
    if (description == nullptr || size < static_cast<LONG>(sizeof(LOGFONTA))) return E_INVALIDARG;
    const FontCell cell = MeasureFont(description);
    if (!cell.height) return E_FAIL;
    const double inches = *cell.height * settings_.transform.scale / kUnitsPerInch;

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

HRESULT VectorWriter::Text(PointI at, BSTR text) noexcept {
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
