// See pages.h. Handlers: DF PS PG NR FR BP.
#include "interpreter/pages.h"

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/attributes/fill.h"
#include "interpreter/attributes/labels.h"
#include "interpreter/attributes/lines.h"
#include "interpreter/coordinates.h"
#include "interpreter/envelopes.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/output.h"

namespace qm {

void EndCurrentPage(PageState& page, LineState& lines, Output& out) {
    if (out.PageEmpty()) return;
    page.pageIndex = WrapAdd(page.pageIndex, 1);
    out.EndPage(page.pageIndex);
    out.SetColor(0);
    lines.Reset(out);
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

}  // namespace

namespace handlers {

// DF; also run once before the first byte. P1, P2, scaling, window, rotation and the pen position
// stay.
void DefaultValues(LabelState& label, FillState& fill, LineState& lines, Output& out) {
    label.StrokeWeight = 0;
    lines.Reset(out);
    label.StandardCharSet = 0;
    label.CurrentCharSet = 0;
    fill.ShadingLevel = 100;
}

// PS length, width in plotter units.
// Quirk: an absent number reads as -2147483648, but the test is for -32768, so only a given -32768
// clears both.
void PlotSize(Parameters& in, const JobState& job, PageState& page) {
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
}

// PG: ends the page; its parameter is not read.
void AdvanceFullPage(PageState& page, LineState& lines, Output& out) {
    EndCurrentPage(page, lines, out);
}

// NR [timeout]: acts as PG.
void NotReady(Parameters& in, PageState& page, LineState& lines, Output& out) {
    in.GetShortParam();
    EndCurrentPage(page, lines, out);
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
