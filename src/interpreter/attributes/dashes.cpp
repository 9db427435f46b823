// Line types as a plotter draws them; see lines.h.

#include <cstdlib>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/attributes/lines.h"
#include "interpreter/coordinates.h"
#include "interpreter/lexer.h"
#include "interpreter/output.h"

namespace qm {

namespace {

constexpr std::int32_t kRestore = 99;

// Percent of the pattern, pen down and up in turn. Type 0 shows a dot at each point.
constexpr UserLineType kTypes[] = {
    {true, 2, 100, {0, 100}},
    {true, 2, 100, {0, 100}},
    {true, 2, 100, {50, 50}},
    {true, 2, 100, {70, 30}},
    {true, 4, 100, {80, 10, 0, 10}},
    {true, 4, 100, {70, 10, 10, 10}},
    {true, 6, 100, {50, 10, 10, 10, 10, 10}},
    {true, 6, 100, {70, 10, 0, 10, 0, 10}},
    {true, 8, 100, {50, 10, 0, 10, 10, 10, 0, 10}},
};

// A type that UL gave lengths; nullptr for a number without a type.
const UserLineType* FindType(const LineState& lines, std::int32_t number) {
    if (number < 0 || number >= static_cast<std::int32_t>(std::size(kTypes))) return nullptr;
    const UserLineType& user = lines.UserLineTypes[static_cast<std::size_t>(number)];
    return user.defined && user.total > 0 ? &user : &kTypes[number];
}

Dashes Stretched(const UserLineType& type, double length) {
    Dashes dashes;
    dashes.count = type.count;
    for (std::size_t i = 0; i < static_cast<std::size_t>(type.count); ++i) {
        dashes.lengths[i] = TruncateToInt32(type.values[i] * length / type.total + 0.5);
    }
    return dashes;
}

}  // namespace

void SelectDashes(Parameters& in, const CoordinateState& c, LineState& lines, Output& out) {
    constexpr double kLongestDot = 30000.0;
    const std::int32_t type = in.GetShortParam();
    double length = 0.0;
    if (type != kAbsentShort && in.GetRealParam(length) && length > 0.0) {
        lines.dashLength = length;
        lines.dashMillimetres = in.GetShortOr(0) == 1;
    }
    if (type == kRestore) {
        lines.dashes = lines.savedDashes;
        return SendDashes(lines.dashes, out);
    }
    lines.savedDashes = lines.dashes;
    lines.dashes = {};
    const UserLineType* const found =
        type == kAbsentShort ? nullptr : FindType(lines, std::abs(type));
    if (found != nullptr) {
        const double unit = lines.dashMillimetres ? kUnitsPerMillimetre : c.p1p2Distance / 100.0;
        lines.dashes = Stretched(*found, type == 0 ? kLongestDot : lines.dashLength * unit);
    }
    SendDashes(lines.dashes, out);
}

void SendDashes(const Dashes& dashes, Output& out) {
    if (dashes.count == 0) return out.SetLineStyle(0);
    out.SetLineType(dashes.count, dashes.lengths.data());
}

}  // namespace qm
