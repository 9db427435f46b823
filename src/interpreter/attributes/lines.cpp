// See lines.h. Handlers: LT UL LA MC PP PT.
#include "interpreter/attributes/lines.h"

#include <cmath>

#include "common/numbers.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

std::int32_t ClampWidth(double width) {
    constexpr double kWidest = 10000.0;
    if (!(width > 0.0)) return 0;
    return width >= kWidest ? 10000 : TruncateToInt32(width);
}

void SendWidth(HPGLRead& reader, std::int32_t width) {
    if (width == reader.lines.EmittedWidth) return;
    reader.SetLineWidth(width);
    reader.lines.EmittedWidth = width;
}

void SendLineType(HPGLRead& reader, std::int32_t code) {
    if (code == reader.lines.EmittedLineType) return;
    reader.SetLineStyle(code);
    reader.lines.EmittedLineType = code;
}

// Quirk: the stored length is compared with the new mask's numeric value, not with the new length,
// so nearly every call is sent.
void SendPattern(HPGLRead& reader, double length, std::int32_t mask) {
    LineState& lines = reader.lines;
    if (mask == lines.EmittedPatternBits && lines.EmittedPatternLength == mask) return;
    reader.SetPatternLength(TruncateToInt32(std::ceil(length * 8.0)),
                            static_cast<std::uint32_t>(mask));
    lines.EmittedPatternBits = mask;
    lines.EmittedPatternLength = length;
}

void ResetLineAttributes(HPGLRead& reader) {
    SendWidth(reader, 0);
    SendPattern(reader, 1.0, -1);
    SendLineType(reader, 0);
}

}  // namespace qm
