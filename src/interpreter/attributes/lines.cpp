// See lines.h. Handlers: LT UL LA MC PT.
#include "interpreter/attributes/lines.h"

#include <cmath>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/coordinates.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/output.h"
#include "interpreter/reading.h"

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

void LineState::SendWidth(std::int32_t width, Output& out) {
    if (width == EmittedWidth) return;
    out.SetLineWidth(width);
    EmittedWidth = width;
}

void LineState::SendLineType(std::int32_t code, Output& out) {
    if (code == EmittedLineType) return;
    out.SetLineStyle(code);
    EmittedLineType = code;
}

// Quirk: the stored length is compared with the new mask's numeric value, not with the new length,
// so nearly every call is sent.
void LineState::SendPattern(double length, std::int32_t mask, Output& out) {
    if (mask == EmittedPatternBits && EmittedPatternLength == mask) return;
    out.SetPatternLength(TruncateToInt32(std::ceil(length * 8.0)), mask);
    EmittedPatternBits = mask;
    EmittedPatternLength = length;
}

void LineState::Reset(Output& out) {
    SendWidth(0, out);
    SendPattern(1.0, kSolidLine.mask, out);
    SendLineType(0, out);
}

namespace {

// The gaps of a user-defined type; with mode 1 the pattern is stretched to `length` millimetres.
void SendUserLineType(const UserLineType& type, double length, std::int32_t mode, Output& out) {
    std::array<std::int32_t, 20> gaps = type.values;
    if (length > 0.0 && mode == 1 && type.total != 0) {
        const double factor = length / kMillimetresPerInch * kUnitsPerInch / type.total;
        for (std::int32_t& gap : gaps) gap = TruncateToInt32(gap * factor);
    }
    out.SetLineType(type.count, gaps.data());
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
}

// LT without a type, and LT99: a solid pattern with an earlier style code.
void SendPlainLineType(LineState& lines, std::int32_t code, Output& out) {
    lines.LineTypeNumber = code;
    lines.SendLineType(code, out);
    lines.SendPattern(1.0, kSolidLine.mask, out);
}

}  // namespace

namespace handlers {

// LT [type [, length [, mode [, pattern length]]]]; 99 brings the saved type back.
void LineType(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
              LineState& lines, Output& out) {
    if (reading.dashesByLength) return SelectDashes(in, coordinates, lines, out);
    const std::int32_t type = in.GetShortParam();
    if (type == kAbsentShort) {
        // Quirk: what LT99 brings back is the mark of the missing number, not the type before.
        lines.SavedLineType = kAbsentShort;
        return SendPlainLineType(lines, 0, out);
    }
    if (type == 99) return SendPlainLineType(lines, lines.SavedLineType, out);
    lines.LineTypeNumber = type;
    double length = 0.0;
    std::int32_t mode = 0;
    if (in.GetRealParam(length)) mode = in.GetShortParam();
    const std::int32_t number = type < 0 ? -type : type;
    if (lines.UserLineTypeDefined(number)) {
        lines.EmittedLineType = number;  // Quirk: as if it had been sent as a style code
        return SendUserLineType(lines.UserLineTypes[static_cast<std::size_t>(number)], length, mode,
                                out);
    }
    const PredefinedLineType line = FindPredefinedLineType(number);
    // Quirk: the length given second only stretches user-defined types; a fourth number is the
    // pattern's length.
    double patternLength = 1.0;
    in.GetRealParam(patternLength);
    lines.SendLineType(line.style, out);
    lines.SendPattern(patternLength, line.mask, out);
}

// UL [index [, gap ...]]; the first 19 gaps count. Without an index all types become undefined.
void UserDefinedLineType(Parameters& in, LineState& lines) {
    const std::int32_t given = in.GetShortParam();
    if (given == kAbsentShort) {
        lines.UserLineTypes.fill({});
        return;
    }
    UserLineType type;
    type.defined = true;
    double gap = 0.0;
    while (in.GetRealParam(gap)) {
        if (type.count == UserLineType::kMaxGaps) continue;
        const std::int32_t value = TruncateToInt32(gap);
        type.values[static_cast<std::size_t>(type.count++)] = value;
        type.total = WrapAdd(type.total, value);
    }
    const auto index = static_cast<std::size_t>(given < 0 ? -given : given);
    if (index < lines.UserLineTypes.size()) lines.UserLineTypes[index] = type;
}

// LA [kind, value ...]: kind 1 ends, 2 joins; 3, the miter limit, has no effect.
void LineAttributes(Parameters& in, LineState& lines, Output& out) {
    std::int16_t kind = in.GetShortParam();
    if (kind == kAbsentShort) {
        lines.lineEnds = 1;
        lines.lineJoins = 1;
    }
    while (kind != kAbsentShort) {
        StoreLineAttribute(lines, kind, in.GetShortParam());
        kind = in.GetShortParam();
    }
    out.SetLineAttributes(LineStyleBits(lines));
}

// MC [mode [, opcode]]
void MergeControl(Parameters& in, LineState& lines, Output& out) {
    std::int32_t& opcode = lines.MergeOpcode;
    opcode = in.GetShortParam() == 1 ? in.GetShortOr(kMergeMaskPen) : 0;
    out.SetDrawMode(opcode == kMergeMaskPen ? kMaskPenMode : kCopyPenMode);
}

// PT [thickness]: read and dropped.
void PenThickness(Parameters& in) {
    double thickness = 0.0;
    in.GetRealParam(thickness);
}

}  // namespace handlers
}  // namespace qm
