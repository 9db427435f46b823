// See envelopes.h.
#include "interpreter/envelopes.h"

#include <algorithm>
#include <array>
#include <string>

#include "common/units.h"
#include "interpreter/lexer.h"

namespace qm {

namespace {

constexpr std::size_t kLineBytes = 98;
constexpr std::size_t kLineBytesDetecting = 79;
constexpr std::int32_t kDefaultResolution = 300;

// A decimal number behind blanks, 0 when there is none; clamped to 32 bits.
std::int32_t DecimalNumber(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\v\f");
    if (start == std::string_view::npos) return 0;
    text.remove_prefix(start);
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    std::int64_t value = 0;
    for (const char c : text) {
        if (!IsDigit(static_cast<std::uint8_t>(c))) break;
        value = std::min<std::int64_t>(value * 10 + (c - '0'), INT32_MAX);
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

void TakeResolution(std::string_view line, JobState& job) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return;
    const std::int32_t resolution = DecimalNumber(line.substr(equals + 1));
    job.jobResolution = resolution == 0 ? kDefaultResolution : resolution;
}

}  // namespace

void ApplyPjlLine(std::string_view line, JobState& job, bool detecting) {
    const auto has = [line](std::string_view text) {
        return line.find(text) != std::string_view::npos;
    };
    // The interpreting pass stops at the first test that matches.
    if (!detecting && has("SET RESOLUTION")) return TakeResolution(line, job);
    const bool pcl = has("LANGUAGE=PCL");
    if (pcl) job.jobLanguagePCL = true;
    if (pcl && !detecting) return;
    if (has("LANGUAGE=HPGL") || (has("LANGUAGE") && has("HPRTL"))) job.jobLanguageHPGL = true;
}

void ReadPjlLine(InputReader& input, JobState& job, bool detecting) {
    const std::size_t keep = detecting ? kLineBytesDetecting : kLineBytes;
    std::string line;
    bool quoted = false;
    while (!input.Over()) {
        const std::uint8_t c = input.GetRaw();
        if (c == '\r' || c == '\n' || c == kEscape || (c == ';' && !quoted)) break;
        if (c == '"') quoted = !quoted;
        if (line.size() < keep) line.push_back(static_cast<char>(FoldToUpper(c)));
    }
    ApplyPjlLine(line, job, detecting);
}

void SkipBegBlock(InputReader& input) {
    if (input.GetCooked() != 'G') return input.UngetChar();
    while (!input.Over()) {
        if (input.GetCooked() != 'E') continue;
        if (input.GetCooked() != 'N') {
            input.UngetChar();
            continue;
        }
        // Quirk: a byte other than 'D' behind "EN", or 'M' behind "END", is not given back.
        if (input.GetCooked() == 'D' && input.GetCooked() == 'M') break;
    }
    input.GetCooked();
}

void SkipVendorBlock(InputReader& input) {
    constexpr std::array<std::uint8_t, 3> kName{'O', 'c', 'e'};
    for (std::size_t i = 0; i < kName.size(); ++i) {
        if (input.GetCooked() != kName[i]) return input.UngetChars(static_cast<int>(i) + 1);
    }
    // The marker is found wherever its four bytes stand, also overlapping a false start.
    constexpr std::uint32_t kMarker = 0x2A4F6365;  // "*Oce"
    std::uint32_t window = 0;
    while (window != kMarker && !input.Over()) window = window << 8 | input.GetCooked();
    for (int i = 0; i < 7 && !input.Over(); ++i) input.GetCooked();
}

void SkipFramingHeader(InputReader& input) {
    if (input.GetRaw() != 0xCA) return input.UngetChar();
    if (input.GetRaw() != 0x10) return input.UngetChars(2);
    const std::uint8_t type = input.GetRaw();
    if (type == 2) {
        input.SkipRaw(17);
    } else if (type == 0) {
        input.SkipRaw(5);
        input.SkipRaw(input.GetRaw() + std::size_t{10});
    } else {
        return input.UngetChars(3);
    }
    input.EnableFraming();
}

void SkipDeviceControl(InputReader& input) {
    while (!input.Over()) {
        const std::uint8_t c = input.GetRaw();
        if (c == ':' || c == '\r' || c == '\n') return;
    }
}

}  // namespace qm
