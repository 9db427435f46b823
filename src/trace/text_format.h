// The text forms that the recorder, the host-call trace and the tests share: numbers, strings,
// points.
//
// Doubles are "%.9g" with ".0" appended when that has none of '.', 'e', 'n', 'i'; strings stand in
// double quotes with
// \" \\ and \xHH for bytes below 32 and 127 and above. Tests: tests/trace/text_format_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "common/geometry.h"

namespace qm {

void AppendInteger(std::string& out, std::int64_t value);
void AppendDouble(std::string& out, double value);
// `text` holds 8-bit characters.
void AppendQuoted(std::string& out, std::string_view text);
// Upper-case hexadecimal, two digits a byte.
void AppendHex(std::string& out, const std::uint8_t* bytes, std::size_t count);
// "0x" and `digits` upper-case digits at least.
void AppendHexNumber(std::string& out, std::uint32_t value, int digits);
// " x,y" for each point.
void AppendPoints(std::string& out, const PointI* points, std::size_t count);

}  // namespace qm
