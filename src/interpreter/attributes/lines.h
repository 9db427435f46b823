// Lines: predefined and user-defined line types, line ends and joins, merge control, the change
// filters through which width, line type and pattern reach the output; dashes by length.
//
// Commands LT UL LA MC PT stand in lines.cpp, how a plotter draws LT in dashes.cpp. Tests:
// tests/interpreter/attributes/lines_test.cpp, tests/interpreter/reading_test.cpp.
#pragma once

#include <array>
#include <cstdint>

#include "common/geometry.h"

namespace qm {

struct CoordinateState;
class Output;
struct Parameters;

// Merge-control opcodes that change what is drawn.
inline constexpr std::int32_t kMergeNoDraw = 170;        // pen-down moves draw nothing
inline constexpr std::int32_t kMergeNoRectangles = 165;  // RA and RR draw nothing
inline constexpr std::int32_t kMergeMaskPen = 168;       // the default opcode of MC1
// Draw modes of the output.
inline constexpr std::int32_t kMaskPenMode = 9;
inline constexpr std::int32_t kCopyPenMode = 13;

// A predefined line type as the output takes it.
struct PredefinedLineType {
    std::int32_t style;  // the host's line-style code
    std::int32_t mask;   // 32 steps of ink (1) and gap, most significant bit first
};
// Line types 0 to 8; every other number is a solid line.
PredefinedLineType FindPredefinedLineType(std::int32_t number);

// A user-defined line type: up to 19 dash and gap lengths.
struct UserLineType {
    static constexpr std::int32_t kMaxGaps = 19;

    bool defined = false;
    std::int32_t count = 0;
    std::int32_t total = 0;  // sum of the values, wrapping
    std::array<std::int32_t, 20> values{};
};

// Dashes and gaps in plotter units, in turn; solid without any. Only the reading that dashes by
// length has them (dashes.cpp).
struct Dashes {
    std::int32_t count = 0;
    std::array<std::int32_t, 20> lengths{};
    bool adaptive = false;  // stretched so that a whole number of patterns fits each segment
};

struct LineState {
    // What was last sent; a negative start makes the first value a change.
    std::int32_t EmittedLineType = -1;
    std::int32_t EmittedWidth = -1;
    std::int32_t EmittedPatternBits = 0;
    double EmittedPatternLength = 1.0;

    std::int32_t SavedLineType = 0;   // what LT99 brings back
    std::int32_t LineTypeNumber = 0;  // as last given to LT, with its sign
    std::array<UserLineType, 9> UserLineTypes;

    Dashes dashes;            // in force
    Dashes savedDashes;       // what LT99 brings back
    Dashes fittedDashes;      // of an adaptive type, as last sent
    double dashLength = 4.0;  // of a pattern, percent of the distance of P1 and P2 or millimetres
    bool dashMillimetres = false;

    std::int32_t lineEnds = 1;
    std::int32_t lineJoins = 1;
    std::int32_t MergeOpcode = 0;  // also set by the raster escapes

    // Change filters: each sends its value only when it differs from what was sent last.
    void SendWidth(std::int32_t width, Output& out);
    void SendLineType(std::int32_t code, Output& out);
    void SendPattern(double length, std::int32_t mask, Output& out);
    // Width 0, a solid pattern and line type 0, through the filters: what a page starts with.
    void Reset(Output& out);

    // True when UL defined the type; false for numbers outside 0 to 8.
    bool UserLineTypeDefined(std::int32_t number) const {
        return number >= 0 && number < 9 && UserLineTypes[static_cast<std::size_t>(number)].defined;
    }
};

// A number truncated into `low` to 10000; no number gives `low`.
std::int32_t ClampTruncated(double value, std::int32_t low);
// A pen's width as the output takes it: 0 to 10000, truncated.
inline std::int32_t ClampWidth(double width) { return ClampTruncated(width, 0); }

// ---------------------------------------------------------------- Line types as a plotter draws
// them
//
// Patterns of dashes and gaps with a length. LT comes here when the reading dashes by length
// (reading.h). Source: HP-GL/2 reference, LT and UL.

// LT [type [, length [, mode]]]: the pattern of a user-defined or predefined type, `length` long:
// in percent of the distance of P1 and P2 (mode 0) or millimetres (mode 1); as last given or 4
// percent when it is missing. Without a type solid; 99 brings back what was in force before.
// Negative types are adaptive: FitDashes sends them.
void SelectDashes(Parameters& in, const CoordinateState& c, LineState& lines, Output& out);

// Sends dashes; solid for none.
void SendDashes(const Dashes& dashes, Output& out);

// Sends the adaptive type in force for a segment, when it differs from what was sent last.
void FitDashes(PointI from, PointI to, LineState& lines, Output& out);

}  // namespace qm
