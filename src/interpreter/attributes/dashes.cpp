// Line types as a plotter draws them; see lines.h.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

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

// The first `count` values, whose sum is `total`, stretched to `length`; rounded so that the sum
// stays within half a unit of it.
Dashes Stretched(std::int32_t count, const std::array<std::int32_t, 20>& values, double total,
                 double length) {
    Dashes dashes;
    dashes.count = count;
    double sum = 0.0;
    std::int32_t sent = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        sum += values[i];
        dashes.lengths[i] = WrapSubtract(RoundToInt32(sum * length / total), sent);
        sent = WrapAdd(sent, dashes.lengths[i]);
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
        lines.fittedDashes = lines.dashes;
        return SendDashes(lines.dashes, out);
    }
    lines.savedDashes = lines.dashes;
    lines.dashes = {};
    const UserLineType* const found =
        type == kAbsentShort ? nullptr : FindType(lines, std::abs(type));
    if (found != nullptr) {
        const double unit = lines.dashMillimetres ? kUnitsPerMillimetre : c.p1p2Distance / 100.0;
        lines.dashes = Stretched(found->count, found->values, found->total,
                                 type == 0 ? kLongestDot : lines.dashLength * unit);
        lines.dashes.adaptive = type < 0;
    }
    lines.fittedDashes = lines.dashes;
    SendDashes(lines.dashes, out);
}

void FitDashes(PointI from, PointI to, LineState& lines, Output& out) {
    const double length =
        Length(static_cast<double>(to.x) - from.x, static_cast<double>(to.y) - from.y);
    const Dashes& dashes = lines.dashes;
    const double pattern = std::accumulate(dashes.lengths.begin(), dashes.lengths.end(), 0.0);
    if (length <= 0.0 || pattern <= 0.0) return;
    const double patterns = std::max(std::round(length / pattern), 1.0);
    const Dashes fitted = Stretched(dashes.count, dashes.lengths, pattern, length / patterns);
    if (fitted.lengths == lines.fittedDashes.lengths) return;
    lines.fittedDashes = fitted;
    SendDashes(fitted, out);
}

void SendDashes(const Dashes& dashes, Output& out) {
    if (dashes.count == 0) return out.SetLineStyle(0);
    out.SetLineType(dashes.count, dashes.lengths.data());
}

}  // namespace qm
