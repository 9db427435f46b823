// Escape sequences met outside raster mode: HPGLRead::DoEscape. Tests:
// tests/interpreter/escapes_test.cpp.
#include <cstring>

#include "interpreter/envelopes.h"
#include "interpreter/hpgl_read.h"
#include "interpreter/raster_mode.h"

namespace qm {

namespace {

// ESC % # A / B / X: only A (enter raster mode) acts; the others mark where this language begins or
// a job ends.
void ChangeLanguage(HPGLRead& reader) {
    InputReader& input = reader.input;
    bool lastDigitSet = false;
    std::uint8_t c = input.GetCooked();
    while ((IsDigit(c) || c == '-') && !input.Over()) {
        if (c != '-') lastDigitSet = c != '0';
        c = input.GetCooked();
    }
    if (c == 'A') {
        RunRasterMode(reader, lastDigitSet);
    } else if (c != 'B' && c != 'X') {
        input.UngetChar();
    }
}

// Raster escapes without an entry sequence: the raster loop reads them again from the ESC on.
void EnterRasterMode(HPGLRead& reader, std::uint8_t next) {
    InputReader& input = reader.input;
    if (next == '*') {
        if (input.GetCooked() == ' ') return SkipDeviceControl(input);
        input.UngetChar();
    }
    input.UngetChars(2);
    RunRasterMode(reader, false);
}

// ESC . d: some device controls are complete with their letter, the others end with ':' or the
// line.
void DeviceControl(InputReader& input) {
    constexpr char kComplete[] = "()ABEJKLORYZ";
    const std::uint8_t d = input.GetRaw();
    if (std::memchr(kComplete, d, sizeof kComplete - 1) == nullptr) SkipDeviceControl(input);
}

}  // namespace

void HPGLRead::DoEscape(std::uint8_t next) {
    switch (next) {
        case '%':
            return ChangeLanguage(*this);
        case '&':
        case '*':
        case 'p':
        case 'c':
            return EnterRasterMode(*this, next);
        case '.':
            return DeviceControl(input);
        default:
            return;
    }
}

}  // namespace qm
