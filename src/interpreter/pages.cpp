// See pages.h. Handlers: DF IN PS PG NR FR BP.
#include "interpreter/pages.h"

#include <utility>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/attributes/fill.h"
#include "interpreter/attributes/labels.h"
#include "interpreter/attributes/lines.h"
#include "interpreter/attributes/pens.h"
#include "interpreter/coordinates.h"
#include "interpreter/envelopes.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/output.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

namespace qm {

void EndCurrentPage(PageState& page, Drawing& drawing) {
    Output& out = drawing.out;
    if (out.PageEmpty() || !page.budget.Take(1)) return;
    page.pageIndex = WrapAdd(page.pageIndex, 1);
    out.EndPage(page.pageIndex);
    CoordinateState& c = drawing.coordinates;
    if (c.turn != 0) {  // the next page begins turned
        c.rotation = (c.rotation + std::exchange(c.turn, 0)) % 360;
        out.Turn(0, {});
    }
    out.SetColor(0);
    drawing.lines.Reset(out);
}

namespace {

// BP kind 1: a picture name in double quotes; a ';' in front of the opening one ends the search.
void SkipPictureName(InputReader& input) {
    std::uint8_t c = input.GetCooked();
    while (c != '"' && c != ';' && !input.Over()) c = input.GetCooked();
    if (c != '"') return input.UngetChar();
    do {
        c = input.GetCooked();
    } while (c != '"' && !input.Over());
}

// BP kinds 2 to 5: a comma and a number. False when a digit stands where the comma is looked for;
// it stays unread.
bool SkipCommaAndNumber(InputReader& input) {
    std::uint8_t c = input.GetCooked();
    while (c != ',' && !IsDigit(c) && !input.Over()) c = input.GetCooked();
    if (c != ',') {
        input.UngetChar();
        return false;
    }
    GetShortParam(input);
    return true;
}

// PG and NR. Quirk: the next page does not know the pen, its width and its line type until they
// are given again.
void AdvancePage(PageState& page, PenState& pens, Drawing& drawing) {
    const bool ends = !drawing.out.PageEmpty();
    EndCurrentPage(page, drawing);
    if (!ends || !drawing.reading.pensOutlastPages) return;
    if (pens.selected) {
        pens.Select(pens.CurrentPen, drawing.lines, drawing.out);
    } else {
        drawing.lines.SendWidth(ClampWidth(pens.Get(pens.CurrentPen).width), drawing.out);
    }
}

// What DF gives back beyond the engine's own: everything but P1 and P2, rotation, pens and place.
void RestoreDefaults(Drawing& drawing, LabelState& label, FillState& fill, const Reading& reading) {
    CoordinateState& c = drawing.coordinates;
    drawing.motion.penPos = c.ToPlotterReal(drawing.motion.penPos);
    drawing.motion.relative = false;
    c.scaleOn = false;
    c.windowOn = false;
    drawing.polygon.Clear();
    drawing.polygon.mode = false;
    drawing.lines.UserLineTypes.fill({});
    drawing.lines.LineTypeNumber = 0;
    drawing.lines.dashes = {};
    drawing.lines.savedDashes = {};
    fill = {};
    label = {};
    label.StrokeWeight = kPenStrokeWeight;
    label.grid.size = reading.sheet.characterSize;
}

// IN.
void BeginAnew(const PageState& page, Drawing& drawing, LabelState& label, FillState& fill,
               PenState& pens, const Reading& reading) {
    CoordinateState& c = drawing.coordinates;
    RestoreDefaults(drawing, label, fill, reading);
    drawing.lines.Reset(drawing.out);
    TurnCoordinates(0, page, drawing);
    drawing.motion = {};
    MovePoints(DefaultPoints(reading.sheet, page, c), c, drawing.motion);
    pens.WidthUnitRelative = false;
    pens.Transparency = true;
    pens.SetWidths(pens.DefaultWidth(reading, c));
    pens.ResetColours();
    drawing.lines.SendWidth(ClampWidth(pens.Get(pens.CurrentPen).width), drawing.out);
}

}  // namespace

namespace handlers {

// DF; also run once before the first byte. P1, P2, scaling, window, rotation and the pen position
// stay.
// Quirk: fill type, sizes and directions stay too; a plotter gives them back.
void DefaultValues(const Reading& reading, const PenState& pens, Drawing& drawing,
                   LabelState& label, FillState& fill) {
    if (reading.initializes) RestoreDefaults(drawing, label, fill, reading);
    LineState& lines = drawing.lines;
    Output& out = drawing.out;
    if (!reading.labelsOnGrid) label.StrokeWeight = 0;
    lines.Reset(out);
    if (reading.initializes) lines.SendWidth(ClampWidth(pens.Get(pens.CurrentPen).width), out);
    label.StandardCharSet = 0;
    label.CurrentCharSet = 0;
    fill.ShadingLevel = 100;
}

// PS length, width in plotter units.
// Quirk: an absent number reads as -2147483648, but the test is for -32768, so only a given -32768
// clears both.
void PlotSize(Parameters& in, const Reading& reading, const JobState& job, PageState& page,
              Drawing& drawing) {
    page.plotLength = in.GetIntParam();
    page.plotWidth = in.GetIntParam();
    if (page.plotLength == kAbsentShort || page.plotWidth == kAbsentShort) {
        page.plotLength = 0;
        page.plotWidth = 0;
    }
    page.plotLandscape =
        page.plotLength >= page.plotWidth || page.plotLength == 0 || page.plotWidth == 0;
    if (page.plotLandscape) {
        page.rasterYOffset =
            WrapNegate(TruncateToInt32(page.plotLength / kUnitsPerInch * job.jobResolution));
    }
    page.plotSizeGiven = true;
    if (reading.scalesFromSheet && drawing.out.PageEmpty()) {
        CoordinateState& c = drawing.coordinates;
        MovePoints(DefaultPoints(reading.sheet, page, c), c, drawing.motion);
    }
}

// IN. Quirk: nothing is reset; a plotter begins anew.
void Initialize(const Reading& reading, const PageState& page, Drawing& drawing, LabelState& label,
                FillState& fill, PenState& pens) {
    if (reading.initializes) BeginAnew(page, drawing, label, fill, pens, reading);
}

// PG: ends the page; its parameter is not read.
void AdvanceFullPage(PageState& page, PenState& pens, Drawing& drawing) {
    AdvancePage(page, pens, drawing);
}

// NR [timeout]: acts as PG.
void NotReady(Parameters& in, PageState& page, PenState& pens, Drawing& drawing) {
    in.GetShortParam();
    AdvancePage(page, pens, drawing);
}

// FR distance: what follows lies further along the medium.
void FrameAdvance(Parameters& in, const CoordinateState& coordinates, PageState& page,
                  Output& out) {
    double distance = 0.0;
    if (!in.GetRealParam(distance)) return;
    page.frameOffset = WrapAdd(page.frameOffset, TruncateToInt32(distance));
    out.SetFrameOffset(TruncateToInt32(coordinates.p1.y + page.frameOffset));
}

// BP [kind, value ...]: read and dropped. The first byte behind a value that is no comma ends the
// command.
void BeginPlot(InputReader& input) {
    std::uint8_t c = 0;
    do {
        c = input.GetCooked();
        if (c == '1') {
            SkipPictureName(input);
        } else if (c >= '2' && c <= '5') {
            if (!SkipCommaAndNumber(input)) return;
        } else {
            break;
        }
        c = input.GetCooked();
    } while (c == ',' && !input.Over());
    input.UngetChar();
}

}  // namespace handlers
}  // namespace qm
