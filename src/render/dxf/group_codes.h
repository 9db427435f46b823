// GroupCodes: the pairs of a DXF file, a code and a value on a line each (AutoCAD 2004 DXF
// reference, "ASCII DXF Files"). Test: tests/render/dxf/dxf_writer_test.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "render/text_buffer.h"

namespace qm::dxf {

// Lengths are counted in these parts of a millimetre: a plotter unit is 250 of them.
inline constexpr double kPartsPerMillimetre = 10000.0;

// In parts of a millimetre, y up.
struct Position {
    std::int64_t x = 0;
    std::int64_t y = 0;
};

class GroupCodes {
  public:
    explicit GroupCodes(OutputSink& sink) : out_(sink) {}

    // Pairs as "0=LAYER|70=0|": the code ends at the first '=', the value at the next '|'.
    void Pairs(std::string_view pairs);
    void Text(int code, std::string_view value);
    void Number(int code, std::int64_t value);
    // At most four decimals.
    void Real(int code, double value);
    void Length(int code, std::int64_t parts);
    // x with `code`, y with code + 10.
    void Place(int code, Position position);
    void Handle(int code, std::uint64_t handle);
    // Pairs that were made before.
    void Raw(std::string_view pairs) { out_ << pairs; }
    void Flush() { out_.Flush(); }

  private:
    TextBuffer out_;
};

// "Plan ^ 1" as a value: control characters become blanks; what a reader would take for a code
// ('^', "\U+", two percent signs) is escaped; what is not ASCII stands as \U+XXXX, above U+FFFF as
// a question mark.
std::string EscapedValue(std::string_view utf8);

}  // namespace qm::dxf
