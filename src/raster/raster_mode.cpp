// Raster mode: the loop that reads raster escapes until the plot returns to vectors. Entry point:
// RunRasterMode (interpreter/plotter.h).
//
// The sequences that act stand in escape_table.cpp, one line each; their handlers in the files that
// escape_table.h names. Tests: tests/raster/raster_mode_test.cpp.
#include <array>
#include <cstring>

#include "common/units.h"
#include "raster/escape_table.h"
#include "raster/picture.h"
#include "raster/sheet_frame.h"

namespace qm {

namespace {

constexpr std::int32_t kUniversalExit = -12345;

bool IsLower(std::uint8_t c) { return c >= 'a' && c <= 'z'; }

// --- Entry --------------------------------------------------------------------------------------

// The palette follows the pens only when they changed, so that a plot which leaves raster mode for
// a few vectors finds the colours that it defined there.
void TakePensAsPalette(RasterState& raster, PenState& pens) {
    if (raster.entered && !pens.PaletteChanged) return;
    std::array<std::uint32_t, kPenCount> colours{};
    for (std::size_t i = 0; i < colours.size(); ++i) colours[i] = pens.PenTable[i].colour;
    LoadFromPens(raster.palette, colours.data(), colours.size());
    pens.PaletteChanged = false;
}

// The same on the sheet.
void TakePenPlace(RasterState& raster, const SheetFrame& sheet, PointD pen) {
    const PointD place = sheet.FromPage(pen);
    const std::int32_t resolution = raster.frame.resolution;
    raster.cursor.across = RoundToInt32(place.x * resolution / kUnitsPerInch);
    raster.cursor.down = RoundToInt32(place.y * resolution / kUnitsPerInch);
}

// The raster position from the pen's: the inverse of what ESC % 1 B does.
void TakePenPosition(RasterState& raster, const CoordinateState& c, PointD pen) {
    if (c.scaleOn) {
        const PointI units = c.ToPlotter(pen);
        pen = {static_cast<double>(units.x), static_cast<double>(units.y)};
    }
    const std::int32_t resolution = raster.frame.resolution;
    raster.cursor.down = RoundToInt32(pen.x * resolution / kUnitsPerInch);
    raster.cursor.across = RoundToInt32(-pen.y * resolution / kUnitsPerInch);
}

// The raster language's own position is kept from entry to entry. A plot size moves it to the top
// of the page, once.
void TakePlotSize(RasterState& raster, PageState& page, std::int32_t rotation) {
    if (!page.plotSizeGiven || !page.plotLandscape || rotation == 0) return;
    // Quirk: dots of the job's resolution are taken for dots of the raster's, also when an escape
    // has changed that.
    raster.cursor.across = page.rasterYOffset;
    page.plotSizeGiven = false;
}

SheetFrame FrameOf(const Plotter& plotter) {
    return {plotter.reading, plotter.page, plotter.drawing.coordinates};
}

void Enter(Plotter& plotter, bool startAtPen) {
    RasterState& raster = plotter.raster;
    const CoordinateState& coordinates = plotter.drawing.coordinates;
    if (!raster.entered) {
        raster.frame.resolution = plotter.job.jobResolution;
        raster.budget = PictureBudget::ForPlot(plotter.WorkBytes());
    }
    TakePensAsPalette(raster, plotter.pens);
    raster.entered = true;
    raster.turn = plotter.page.plotLandscape && coordinates.rotation == 0;
    const PointD pen = plotter.drawing.motion.penPos;
    if (startAtPen && plotter.reading.placesOnSheet) {
        TakePenPlace(raster, FrameOf(plotter), coordinates.ToPlotterReal(pen));
    } else if (startAtPen) {
        TakePenPosition(raster, coordinates, pen);
    } else if (!plotter.reading.placesOnSheet) {
        TakePlotSize(raster, plotter.page, coordinates.rotation);
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
void RunGroup(Plotter& plotter, std::uint8_t intro) {
    InputReader& input = plotter.in.input;
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
        FindEscapeHandler(intro, group, FoldToUpper(letter))(plotter, value);
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

Leave RunEscape(Plotter& plotter, std::uint8_t next) {
    switch (next) {
        case '%':
            return ChangeLanguage(plotter.in.input);
        case '*':
        case '&':
        case '(':
        case ')':
            RunGroup(plotter, next);
            break;
        case 'E':
            CallHandler(&escapes::PrinterReset, plotter);
            break;
        case kEscape:
            plotter.in.input.UngetChar();
            break;
        default:
            break;  // other two-byte sequences
    }
    return Leave::kNo;
}

// --- Leaving ------------------------------------------------------------------------------------

// ESC % 1 B: the pen continues where raster mode stopped.
PointD PenPosition(const RasterState& raster, const CoordinateState& coordinates) {
    // Multiplied first: at 96 dots per inch the quotient is no exact number.
    const double resolution = raster.frame.resolution;
    return coordinates.FromPlotter(
        {std::floor(raster.cursor.down * kUnitsPerInch / resolution + 0.5),
         std::floor(-(raster.cursor.across * kUnitsPerInch / resolution) + 0.5)});
}

// The same on the sheet.
PointD PenPlace(const RasterState& raster, const SheetFrame& sheet, const CoordinateState& c) {
    const double unitsPerDot = kUnitsPerInch / raster.frame.resolution;
    return c.FromPlotter(
        sheet.ToPage({raster.cursor.across * unitsPerDot, raster.cursor.down * unitsPerDot}));
}

// Unlike MC, raster mode takes 160 for a mask too.
std::int32_t DrawModeOf(std::int32_t merge) {
    return merge == 160 || merge == kMergeMaskPen ? kMaskPenMode : kCopyPenMode;
}

}  // namespace

void RunRasterMode(Plotter& plotter, bool startAtPen) {
    Enter(plotter, startAtPen);
    InputReader& input = plotter.in.input;
    Drawing& drawing = plotter.drawing;
    const std::int32_t mergeAtEntry = drawing.lines.MergeOpcode;
    Leave leave = Leave::kNo;
    while (leave == Leave::kNo && !input.Over()) leave = RunEscape(plotter, FindEscape(input));
    FinishPicture(plotter.raster, plotter.job, plotter.page, drawing);
    if (leave == Leave::kYesWithPosition) {
        drawing.motion.penPos =
            drawing.reading.placesOnSheet
                ? PenPlace(plotter.raster, FrameOf(plotter), drawing.coordinates)
                : PenPosition(plotter.raster, drawing.coordinates);
    }
    // Detection draws nothing, so nothing is told about drawing either.
    const std::int32_t merge = drawing.lines.MergeOpcode;
    if (merge != mergeAtEntry && !plotter.detecting) drawing.out.SetDrawMode(DrawModeOf(merge));
}

}  // namespace qm
