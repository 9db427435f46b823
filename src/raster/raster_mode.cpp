// See raster_mode.h. Entry, the loop, escape syntax, leaving.
#include "interpreter/raster_mode.h"
#include "common/units.h"

#include <array>
#include <cstring>

#include "interpreter/hpgl_read.h"
#include "raster/escape_table.h"
#include "raster/picture.h"

namespace qm {

namespace {

constexpr std::int32_t kUniversalExit = -12345;
constexpr std::int32_t kMaskPenMode = 9;
constexpr std::int32_t kCopyPenMode = 13;

bool IsLower(std::uint8_t c) { return c >= 'a' && c <= 'z'; }

// --- Entry --------------------------------------------------------------------------------------

// The palette follows the pens only when they changed, so that a plot which leaves raster mode for
// a few vectors finds the colours that it defined there.
void TakePensAsPalette(HPGLRead& reader) {
    if (reader.raster.entered && !reader.pens.PaletteChanged) return;
    std::array<std::uint32_t, kPenCount> colours{};
    for (std::size_t i = 0; i < colours.size(); ++i) colours[i] = reader.pens.PenTable[i].color;
    LoadFromPens(reader.raster.palette, colours.data(), colours.size());
    reader.pens.PaletteChanged = false;
}

// The raster position from the pen's: the inverse of what ESC % 1 B does.
void TakePenPosition(HPGLRead& reader) {
    const CoordinateState& c = reader.coordinates;
    PointD pen = reader.motion.penPos;
    if (c.scaleOn) {
        const PointI units = c.ToPlotter(pen);
        pen = {static_cast<double>(units.x), static_cast<double>(units.y)};
    }
    RasterState& raster = reader.raster;
    raster.positionA = RoundToInt32(pen.x * raster.resolution / kUnitsPerInch);
    raster.positionB = RoundToInt32(-pen.y * raster.resolution / kUnitsPerInch);
}

// The raster language's own position is kept from entry to entry. A plot size moves it to the top
// of the page, once.
void TakePlotSize(HPGLRead& reader) {
    PageState& page = reader.page;
    if (!page.plotSizeGiven || !page.plotLandscape || reader.coordinates.rotation == 0) return;
    // Quirk: dots of the job's resolution are taken for dots of the raster's, also when an escape
    // has changed that.
    reader.raster.positionB = page.rasterYOffset;
    page.plotSizeGiven = false;
}

void Enter(HPGLRead& reader, bool keepPen) {
    RasterState& raster = reader.raster;
    if (!raster.entered) {
        raster.resolution = reader.job.jobResolution;
        raster.budget = WorkBudget::ForPlot(reader.GetDataSize());
    }
    TakePensAsPalette(reader);
    raster.entered = true;
    raster.turn = reader.page.plotLandscape && reader.coordinates.rotation == 0;
    if (keepPen) {
        TakePenPosition(reader);
    } else {
        TakePlotSize(reader);
    }
}

// --- Escape syntax ------------------------------------------------------------------------------

// The byte behind ESC; everything up to it means nothing here.
std::uint8_t FindEscape(InputReader& input) {
    while (!input.Over()) {
        const std::uint8_t* from = input.Cursor();
        if (from < input.Limit()) {
            const auto size = static_cast<std::size_t>(input.Limit() - from);
            const void* found = std::memchr(from, kEscape, size);
            if (found == nullptr) {
                input.Advance(input.Limit());
                continue;
            }
            input.Advance(static_cast<const std::uint8_t*>(found));
        }
        if (input.GetRaw() == kEscape) return input.GetCooked();
    }
    return 0;
}

// A value and the byte behind it. No command takes a fraction: it is read over.
std::uint8_t ReadValue(InputReader& input, EscapeValue& value) {
    std::uint8_t end = GetSignedNumber(input, value.number, value.hadSign);
    if (end == '.') {
        do {
            end = input.GetCooked();
        } while (IsDigit(end) && !input.Over());
    }
    // An ESC in the middle of a sequence starts a new one.
    if (end == kEscape) input.UngetChar();
    return end;
}

// ESC intro group (value letter)...: a lower-case letter goes on, an upper-case one ends. Where a
// digit stands in place of the group (fonts: ESC ( 8 U), one value and one letter are the whole
// sequence.
void RunGroup(HPGLRead& reader, std::uint8_t intro) {
    InputReader& input = reader.input;
    const std::uint8_t group = input.GetCooked();
    EscapeValue value;
    if (!IsLower(group)) {
        const bool number = IsDigit(group) || group == '+' || group == '-';
        if (number || group == kEscape) input.UngetChar();
        if (number) ReadValue(input, value);
        return;
    }
    std::uint8_t letter = 0;
    do {
        letter = ReadValue(input, value);
        if (input.Over()) return;
        FindEscapeHandler(intro, group, FoldToUpper(letter))(reader, value);
    } while (IsLower(letter));
}

enum class Leave { kNo, kYes, kYesWithPosition };

// ESC % # B, ESC % -12345 X; others have no effect here.
Leave ChangeLanguage(InputReader& input) {
    EscapeValue value;
    const std::uint8_t end = ReadValue(input, value);
    if (end == 'B') return value.number == 1 ? Leave::kYesWithPosition : Leave::kYes;
    if (FoldToUpper(end) == 'X' && value.number == kUniversalExit) return Leave::kYes;
    return Leave::kNo;
}

Leave RunEscape(HPGLRead& reader, std::uint8_t next) {
    switch (next) {
        case '%':
            return ChangeLanguage(reader.input);
        case '*':
        case '&':
        case '(':
        case ')':
            RunGroup(reader, next);
            break;
        case 'E':
            escapes::PrinterReset(reader);
            break;
        case kEscape:
            reader.input.UngetChar();
            break;
        default:
            break;  // other two-byte sequences
    }
    return Leave::kNo;
}

// --- Leaving ------------------------------------------------------------------------------------

// ESC % 1 B: the pen continues where raster mode stopped.
void GivePositionToPen(HPGLRead& reader) {
    const RasterState& raster = reader.raster;
    const CoordinateState& c = reader.coordinates;
    const double unitsPerDot = kUnitsPerInch / raster.resolution;
    PointD pen{std::floor(raster.positionA * unitsPerDot + 0.5),
               std::floor(-(raster.positionB * unitsPerDot) + 0.5)};
    if (c.scaleOn) {
        pen = {(pen.x - c.p1.x) / c.scaleX + c.userMinX, (pen.y - c.p1.y) / c.scaleY + c.userMinY};
    }
    reader.motion.penPos = pen;
}

void SendMergeMode(HPGLRead& reader) {
    const std::int32_t merge = reader.lines.MergeOpcode;
    reader.SetDrawMode(merge == 160 || merge == kMergeMaskPen ? kMaskPenMode : kCopyPenMode);
}

}  // namespace

void RunRasterMode(HPGLRead& reader, bool keepPen) {
    Enter(reader, keepPen);
    const std::int32_t mergeAtEntry = reader.lines.MergeOpcode;
    Leave leave = Leave::kNo;
    while (leave == Leave::kNo && !reader.input.Over()) {
        leave = RunEscape(reader, FindEscape(reader.input));
    }
    FinishPicture(reader);
    if (leave == Leave::kYesWithPosition) GivePositionToPen(reader);
    // Detection draws nothing, so nothing is told about drawing either.
    if (reader.lines.MergeOpcode != mergeAtEntry && !reader.detecting) SendMergeMode(reader);
}

}  // namespace qm
