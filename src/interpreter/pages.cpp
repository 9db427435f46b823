// See pages.h. Handlers: DF PS PG NR FR BP.
#include "interpreter/pages.h"

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

void EndCurrentPage(HPGLRead& reader) {
    if (reader.page.pageEmpty) return;
    reader.page.pageIndex = WrapAdd(reader.page.pageIndex, 1);
    reader.EndPage(static_cast<std::uint32_t>(reader.page.pageIndex));
    reader.SetColor(0);
    ResetLineAttributes(reader);
    reader.page.pageEmpty = true;
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
void DefaultValues(HPGLRead& reader) {
    reader.label.StrokeWeight = 0;
    ResetLineAttributes(reader);
    reader.label.StandardCharSet = 0;
    reader.label.CurrentCharSet = 0;
    reader.fill.ShadingLevel = 100;
}

// PS length, width in plotter units.
// Quirk: an absent number reads as -2147483648, but the test is for -32768, so only a given -32768
// clears both.
void PlotSize(HPGLRead& reader) {
    PageState& page = reader.page;
    page.plotLength = reader.GetIntParam();
    page.plotWidth = reader.GetIntParam();
    if (page.plotLength == kAbsentShort || page.plotWidth == kAbsentShort) {
        page.plotLength = 0;
        page.plotWidth = 0;
    }
    page.plotLandscape =
        page.plotLength >= page.plotWidth || page.plotLength == 0 || page.plotWidth == 0;
    if (page.plotLandscape) {
        page.rasterYOffset =
            WrapNegate(TruncateToInt32(page.plotLength / kUnitsPerInch * reader.job.jobResolution));
    }
    page.plotSizeGiven = true;
}

// PG: ends the page; its parameter is not read.
void AdvanceFullPage(HPGLRead& reader) { EndCurrentPage(reader); }

// NR [timeout]: acts as PG.
void NotReady(HPGLRead& reader) {
    reader.GetShortParam();
    EndCurrentPage(reader);
}

// FR distance: what follows lies further along the medium.
void FrameAdvance(HPGLRead& reader) {
    double distance = 0.0;
    if (!reader.GetRealParam(distance)) return;
    PageState& page = reader.page;
    page.frameOffset = WrapAdd(page.frameOffset, TruncateToInt32(distance));
    reader.SetFrameOffset(TruncateToInt32(reader.coordinates.p1.y + page.frameOffset));
}

// BP [kind, value ...]: read and dropped. The first byte behind a value that is no comma ends the
// command.
void BeginPlot(HPGLRead& reader) {
    InputReader& input = reader.input;
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
