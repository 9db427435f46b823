// See lines.h. Handlers: LT UL LA MC PP PT.
#include "interpreter/attributes/lines.h"

#include <cmath>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

namespace {

constexpr PredefinedLineType kSolidLine{0, -1};

constexpr std::int32_t Mask(std::uint32_t bits) { return static_cast<std::int32_t>(bits); }

// clang-format off
constexpr std::array<PredefinedLineType, 9> kPredefinedLineTypes{{
    {2, Mask(0xFFFFFFFF)},
    {2, Mask(0x88888888)},
    {1, Mask(0xF0F0F0F0)},
    {1, Mask(0xF8F8F8F8)},
    {3, Mask(0xFAFAFAFA)},
    {3, Mask(0xFFCCFFCC)},
    {4, Mask(0xFFB6FFB6)},
    {4, Mask(0xFFEAFFEA)},
    {3, Mask(0xFF5AFF5A)},
}};
// clang-format on

}  // namespace

PredefinedLineType FindPredefinedLineType(std::int32_t number) {
    const auto count = static_cast<std::int32_t>(kPredefinedLineTypes.size());
    if (number < 0 || number >= count) return kSolidLine;
    return kPredefinedLineTypes[static_cast<std::size_t>(number)];
}

std::int32_t ClampTruncated(double value, std::int32_t low) {
    constexpr std::int32_t kHighest = 10000;
    if (!(value > low)) return low;
    return value >= kHighest ? kHighest : TruncateToInt32(value);
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

namespace {

// The gaps of a user-defined type; with mode 1 the pattern is stretched to `length` millimetres.
void SendUserLineType(HPGLRead& reader, const UserLineType& type, double length,
                      std::int32_t mode) {
    std::array<std::int32_t, 20> gaps = type.values;
    if (length > 0.0 && mode == 1 && type.total != 0) {
        const double factor = length / kMillimetresPerInch * kUnitsPerInch / type.total;
        for (std::int32_t& gap : gaps) gap = TruncateToInt32(gap * factor);
    }
    reader.SetLineType(type.count, gaps.data());
}

// Style bits of the output's line attributes.
std::int32_t LineStyleBits(const LineState& lines) {
    std::int32_t bits = 0;
    if (lines.lineEnds == 1) bits |= 0x200;
    if (lines.lineEnds == 2) bits |= 0x100;
    if (lines.lineJoins == 5) bits |= 0x1000;
    return bits;
}

void StoreLineAttribute(LineState& lines, std::int32_t kind, std::int32_t value) {
    if (kind == 1) lines.lineEnds = value;
    if (kind == 2) lines.lineJoins = value;
    if (kind == 3) lines.miterLimit = value;
}

// LT without a type, and LT99: a solid pattern with an earlier style code.
void SendPlainLineType(HPGLRead& reader, std::int32_t code) {
    reader.lines.LineTypeNumber = code;
    SendLineType(reader, code);
    SendPattern(reader, 1.0, kSolidLine.mask);
}

}  // namespace

namespace handlers {

// LT [type [, length [, mode [, pattern length]]]]; 99 brings the saved type back.
void LineType(HPGLRead& reader) {
    LineState& lines = reader.lines;
    const std::int32_t type = reader.GetShortParam();
    if (type == kAbsentShort) {
        // Quirk: what LT99 brings back is the mark of the missing number, not the type before.
        lines.SavedLineType = kAbsentShort;
        return SendPlainLineType(reader, 0);
    }
    if (type == 99) return SendPlainLineType(reader, lines.SavedLineType);
    lines.LineTypeNumber = type;
    double length = 0.0;
    std::int32_t mode = 0;
    if (reader.GetRealParam(length)) mode = reader.GetShortParam();
    const std::int32_t number = type < 0 ? -type : type;
    if (lines.UserLineTypeDefined(number)) {
        lines.EmittedLineType = number;  // Quirk: as if it had been sent as a style code
        return SendUserLineType(reader, lines.UserLineTypes[static_cast<std::size_t>(number)],
                                length, mode);
    }
    const PredefinedLineType line = FindPredefinedLineType(number);
    // Quirk: the length given second only stretches user-defined types; a fourth number is the
    // pattern's length.
    double patternLength = 1.0;
    reader.GetRealParam(patternLength);
    SendLineType(reader, line.style);
    SendPattern(reader, patternLength, line.mask);
}

// UL [index [, gap ...]]; the first 19 gaps count. Without an index all types become undefined.
void UserDefinedLineType(HPGLRead& reader) {
    LineState& lines = reader.lines;
    const std::int32_t given = reader.GetShortParam();
    if (given == kAbsentShort) {
        lines.UserLineTypes.fill({});
        return;
    }
    UserLineType type;
    type.defined = true;
    double gap = 0.0;
    while (reader.GetRealParam(gap)) {
        if (type.count == UserLineType::kMaxGaps) continue;
        const std::int32_t value = TruncateToInt32(gap);
        type.values[static_cast<std::size_t>(type.count++)] = value;
        type.total = WrapAdd(type.total, value);
    }
    const auto index = static_cast<std::size_t>(given < 0 ? -given : given);
    if (index < lines.UserLineTypes.size()) lines.UserLineTypes[index] = type;
}

// LA [kind, value ...]: kind 1 ends, 2 joins, 3 miter limit.
void LineAttributes(HPGLRead& reader) {
    LineState& lines = reader.lines;
    std::int16_t kind = reader.GetShortParam();
    if (kind == kAbsentShort) {
        lines.lineEnds = 1;
        lines.lineJoins = 1;
        lines.miterLimit = 5;
    }
    while (kind != kAbsentShort) {
        StoreLineAttribute(lines, kind, reader.GetShortParam());
        kind = reader.GetShortParam();
    }
    reader.SetLineAttributes(LineStyleBits(lines));
}

// MC [mode [, opcode]]
void MergeControl(HPGLRead& reader) {
    std::int32_t& opcode = reader.lines.MergeOpcode;
    opcode = 0;
    if (reader.GetShortParam() == 1) {
        const std::int16_t given = reader.GetShortParam();
        opcode = given == kAbsentShort ? kMergeMaskPen : given;
    }
    constexpr std::int32_t kMaskPen = 9;
    constexpr std::int32_t kCopyPen = 13;
    reader.SetDrawMode(opcode == kMergeMaskPen ? kMaskPen : kCopyPen);
}

// PP [mode]: read and dropped.
void PixelPlacement(HPGLRead& reader) { reader.GetShortParam(); }

// PT [thickness]: read and dropped.
void PenThickness(HPGLRead& reader) {
    double thickness = 0.0;
    reader.GetRealParam(thickness);
}

}  // namespace handlers
}  // namespace qm
