// The interpreting pass: HPGLRead::Interpret, Dispatch. Tests:
// tests/interpreter/interpret_test.cpp.
#include "common/units.h"
#include "interpreter/command_table.h"
#include "interpreter/envelopes.h"
#include "interpreter/hpgl_read.h"

namespace qm {

namespace {

constexpr std::uint8_t kControlZ = 0x1A;
constexpr std::uint8_t kFramingByte = 0xCD;

// Behind Ctrl-Z: "PLW" is the end marker.
void ReadEndMarker(InputReader& input) {
    constexpr std::uint8_t kMarker[] = {'P', 'L', 'W'};
    for (int i = 0; i < 3; ++i) {
        if (input.GetRaw() != kMarker[i]) return input.UngetChars(i + 1);
    }
    input.endOfInput = true;
}

void InterpretCommand(HPGLRead& reader, std::uint8_t first, std::uint8_t second) {
    if (!IsUpper(second) && second != '%' && second != '.') return;
    if (first == 'B' && second == 'E') return SkipBegBlock(reader.input);
    // An unknown pair loses its first letter only.
    if (!reader.Dispatch(first, second)) reader.input.UngetChar();
}

void InterpretOther(HPGLRead& reader, std::uint8_t c) {
    switch (c) {
        case kControlZ:
            return ReadEndMarker(reader.input);
        case kFramingByte:
            return SkipFramingHeader(reader.input);
        case '@':
            return ReadPjlLine(reader.input, reader.job, false);
        case '*':
            return SkipVendorBlock(reader.input);
        default:
            return;  // digits, separators and everything else mean nothing here
    }
}

}  // namespace

std::int32_t HPGLRead::Interpret() {
    detecting = false;
    input.StartProgress(GetDataSize());
    handlers::DefaultValues(*this);
    while (!input.Over()) {
        const std::uint8_t c = FoldToUpper(input.GetCooked());
        if (IsUpper(c)) {
            InterpretCommand(*this, c, FoldToUpper(input.GetCooked()));
        } else if (c == kEscape) {
            // Quirk: folded, so that ESC p and ESC c are ignored here although detection enters
            // raster mode for them.
            DoEscape(FoldToUpper(input.GetCooked()));
        } else {
            InterpretOther(*this, c);
        }
    }
    return WrapAdd(page.pageIndex, 1);
}

bool HPGLRead::Dispatch(std::uint8_t first, std::uint8_t second) {
    const handlers::Handler handler = FindHandler(first, second);
    if (handler == nullptr) return false;
    handler(*this);
    return true;
}

}  // namespace qm
