// The interpreting pass and the escape sequences met outside raster mode: HPGLRead::Interpret,
// DoEscape. Tests: tests/interpreter/envelopes_test.cpp, tests/interpreter/pages_test.cpp.
#include <cstring>

#include "common/units.h"
#include "interpreter/command_table.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"
#include "interpreter/plotter.h"

namespace qm {

// --- Escapes ------------------------------------------------------------------------------------

namespace {

// ESC % # A / B / X: only A (enter raster mode) acts; the others mark where this language begins or
// a job ends.
void ChangeLanguage(Plotter& plotter) {
    InputReader& input = plotter.in.input;
    bool lastDigitSet = false;
    std::uint8_t c = input.GetCooked();
    while ((IsDigit(c) || c == '-') && !input.Over()) {
        if (c != '-') lastDigitSet = c != '0';
        c = input.GetCooked();
    }
    if (c == 'A') {
        RunRasterMode(plotter, lastDigitSet);
    } else if (c != 'B' && c != 'X') {
        input.UngetChar();
    }
}

// Raster escapes without an entry sequence: the raster loop reads them again from the ESC on.
void EnterRasterMode(Plotter& plotter, std::uint8_t next) {
    InputReader& input = plotter.in.input;
    if (next == '*') {
        if (input.GetCooked() == ' ') return SkipDeviceControl(input);
        input.UngetChar();
    }
    input.UngetChars(2);
    RunRasterMode(plotter, false);
}

// ESC . d: some device controls are complete with their letter, the others end with ':' or the
// line.
void DeviceControl(InputReader& input) {
    constexpr char kComplete[] = "()ABEJKLORYZ";
    const std::uint8_t d = input.GetRaw();
    if (std::memchr(kComplete, d, sizeof kComplete - 1) == nullptr) SkipDeviceControl(input);
}

}  // namespace

void DoEscape(Plotter& plotter, std::uint8_t next) {
    switch (next) {
        case '%':
            return ChangeLanguage(plotter);
        case '&':
        case '*':
        case 'p':
        case 'c':
            return EnterRasterMode(plotter, next);
        case 'E':
            // Quirk: not known here; the page goes on in the plot language.
            if (plotter.reading.drawsPrintJobs) EnterRasterMode(plotter, next);
            return;
        case '.':
            return DeviceControl(plotter.in.input);
        case '(':
        case ')':
        case '=':
        case '9':
            // Quirk: escapes of fonts, lines and margins do not lead to the raster language.
            if (plotter.reading.drawsPrintJobs) EnterRasterMode(plotter, next);
            return;
        default:
            return;
    }
}

// --- The pass -----------------------------------------------------------------------------------

namespace {

constexpr std::uint8_t kControlZ = 0x1A;

// Behind Ctrl-Z: "PLW" is the end marker.
void ReadEndMarker(InputReader& input) {
    constexpr std::uint8_t kMarker[] = {'P', 'L', 'W'};
    for (int i = 0; i < 3; ++i) {
        if (input.GetRaw() != kMarker[i]) return input.UngetChars(i + 1);
    }
    input.endOfInput = true;
}

void InterpretCommand(Plotter& plotter, std::uint8_t first, std::uint8_t second) {
    InputReader& input = plotter.in.input;
    if (!IsUpper(second) && second != '%' && second != '.') return;
    if (first == 'B' && second == 'E') return SkipBegBlock(input);
    const Slot handler = FindHandler(first, second);
    // An unknown pair loses its first letter only.
    if (handler == nullptr) return input.UngetChar();
    handler(plotter);
}

void InterpretOther(Plotter& plotter, std::uint8_t c) {
    InputReader& input = plotter.in.input;
    switch (c) {
        case kControlZ:
            return ReadEndMarker(input);
        case kFramingByte:
            return SkipFramingHeader(input);
        case '@':
            return ReadPjlLine(input, plotter.job, false);
        case '*':
            return SkipVendorBlock(input);
        default:
            return;  // digits, separators and everything else mean nothing here
    }
}

// What was left out, parted by commas.
std::string LimitsMet(const Plotter& plotter) {
    const PlotWork& work = plotter.drawing.work;
    std::string names;
    const auto add = [&names](bool met, const char* name) {
        if (met) names.append(names.empty() ? "" : ", ").append(name);
    };
    add(work.vertices.Met(), "polygons drawn again");
    add(work.crossings.Met(), "hatch lines");
    add(work.edgePairs.Met(), "cuts of tangled polygons");
    add(work.patternBytes.Met(), "fill patterns");
    add(plotter.page.budget.Met(), "page ends");
    add(plotter.raster.budget.Met(), "picture rows");
    return names;
}

}  // namespace

std::int32_t HPGLRead::Interpret() {
    Plotter& plotter = *plotter_;
    InputReader& input = plotter.in.input;
    plotter.detecting = false;
    input.StartProgress(GetDataSize());
    plotter.drawing.work = PlotWork(plotter.WorkBytes());
    Handle<handlers::DefaultValues>(plotter);
    Handle<handlers::Initialize>(plotter);
    while (!input.Over()) {
        const std::uint8_t c = FoldToUpper(input.GetCooked());
        if (IsUpper(c)) {
            InterpretCommand(plotter, c, FoldToUpper(input.GetCooked()));
        } else if (c == kEscape) {
            // Quirk: folded, so that ESC p and ESC c are ignored here although detection enters
            // raster mode for them.
            DoEscape(plotter, FoldToUpper(input.GetCooked()));
        } else {
            InterpretOther(plotter, c);
        }
    }
    plotter.notes.limitsMet = LimitsMet(plotter);
    return WrapAdd(plotter.page.pageIndex, 1);
}

}  // namespace qm
