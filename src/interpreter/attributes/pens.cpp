// See pens.h. Handlers: SP PW WU PC NP CR TR.
#include "interpreter/attributes/pens.h"

#include "common/numbers.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

PenState::PenState() {
    for (std::int32_t i = 0; i < kPenCount; ++i) {
        PenTable[static_cast<std::size_t>(i)].color = DefaultPenColor(i);
    }
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
    reader.pens.WhitePenSuppressed = entry.color == kWhite && reader.pens.Transparency;
}

namespace handlers {

// SP [pen]
void SelectPen(HPGLRead& reader) { qm::SelectPen(reader, reader.GetShortParam()); }

}  // namespace handlers
}  // namespace qm
