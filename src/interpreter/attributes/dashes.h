// Line types as a plotter draws them: patterns of dashes and gaps with a length.
//
// LT comes here when the reading dashes by length (reading.h). Source: HP-GL/2 reference, LT and
// UL. Tests: tests/interpreter/reading_test.cpp.
#pragma once

namespace qm {

class Output;
struct CoordinateState;
struct Dashes;
struct LineState;
struct Parameters;

// LT [type [, length [, mode]]]: the pattern of a user-defined or predefined type, `length` long:
// in percent of the distance of P1 and P2 (mode 0) or millimetres (mode 1); as last given or 4
// percent when it is missing. Without a type solid; 99 brings back what was in force before.
// Adaptive types (negative) are drawn as fixed ones.
void SelectDashes(Parameters& in, const CoordinateState& c, LineState& lines, Output& out);

// Sends dashes; solid for none.
void SendDashes(const Dashes& dashes, Output& out);

}  // namespace qm
