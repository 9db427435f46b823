// What stands around and between plot commands and is read over: PJL lines, BEG blocks, vendor
// blocks, framing headers.
//
// Each function is called when its first bytes have been read and leaves the input behind what it
// took. Tests: tests/interpreter/envelopes_test.cpp.
#pragma once

#include <cstdint>
#include <string_view>

#include "interpreter/input_reader.h"

namespace qm {

// The job header: what PJL lines in front of (or between) plots say.
struct JobState {
    std::int32_t jobResolution = 300;  // dots per inch as given, even negative; never 0
    bool jobLanguagePCL = false;
    bool jobLanguageHPGL = false;
};

// Behind '@': reads the line and takes the resolution and the language from it. The detection pass
// keeps fewer bytes of a line, takes no resolution and looks for every language.
void ReadPjlLine(InputReader& input, JobState& job, bool detecting);

// What a PJL line (upper case) says; the part of ReadPjlLine that reads no input.
void ApplyPjlLine(std::string_view line, JobState& job, bool detecting);

// Behind "BE": when a 'G' follows, skips the block up to "ENDM" and one byte more; else leaves the
// byte unread.
void SkipBegBlock(InputReader& input);

// Behind '*': when "Oce" follows, skips up to the next "*Oce" and seven bytes more; else leaves the
// bytes unread.
void SkipVendorBlock(InputReader& input);

// Behind 0xCD: when a framing header follows, skips it and turns framing on; else leaves the bytes
// unread.
void SkipFramingHeader(InputReader& input);

// Reads raw bytes up to and including ':', CR or LF, which end a device-control sequence.
void SkipDeviceControl(InputReader& input);

}  // namespace qm
