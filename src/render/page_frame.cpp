// See page_frame.h.
#include "render/page_frame.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/numbers.h"
#include "platform/text.h"

namespace qm {

namespace {

struct Turn {
    double cosine = 1.0;
    double sine = 0.0;
};

// Quarter turns must be exact, so that edges stay horizontal and numbers short.
Turn TurnOf(double degrees) {
    if (!std::isfinite(degrees)) return {};
    const double quarters = degrees / 90.0;
    if (quarters == std::floor(quarters)) {
        switch (static_cast<int>(std::fmod(quarters, 4.0) + 4.0) % 4) {
            case 1:
                return {0.0, 1.0};
            case 2:
                return {-1.0, 0.0};
            case 3:
                return {0.0, -1.0};
            default:
                return {};
        }
    }
    return {std::cos(degrees * kRadiansPerDegree), std::sin(degrees * kRadiansPerDegree)};
}

// The paper as it lies, in millimetres.
Paper LaidPaper(Paper paper, const Extent& drawn) {
    const bool wide = drawn.Width() > drawn.Height();
    if (paper.turns && wide != (paper.width > paper.height)) std::swap(paper.width, paper.height);
    return paper;
}

// By how much the drawing grows.
double ScaleTo(const Paper& paper, const Extent& drawn, double margin, double unitsPerMillimetre) {
    const double width = drawn.Width() / unitsPerMillimetre;
    const double height = drawn.Height() / unitsPerMillimetre;
    const double roomX = paper.width - 2.0 * margin;
    const double roomY = paper.height - 2.0 * margin;
    if (!paper.fits || (width <= 0.0 && height <= 0.0) || roomX <= 0.0 || roomY <= 0.0) return 1.0;
    if (width <= 0.0) return roomY / height;
    if (height <= 0.0) return roomX / width;
    return std::min(roomX / width, roomY / height);
}

}  // namespace

PageSource SourceOf(const PlotPage& page) {
    PageSource source;
    source.drawing = &page.Drawing();
    source.layers = &page.Layers();
    source.name = WideToUtf8(page.Name());
    source.unitsPerInch = page.UnitsPerInch();
    source.rotation = page.Rotation();
    source.sourceBytes = page.SourceBytes();
    source.sheet = page.Sheet();
    return source;
}

PageFrame FrameOf(const PageSource& page, const Extent& drawn, const PageOptions& options) {
    const Turn turn = TurnOf(page.rotation);
    Extent extent = drawn;
    if (!page.sheet.empty) {
        extent.Add(page.sheet.minX, page.sheet.minY);
        extent.Add(page.sheet.maxX, page.sheet.maxY);
    }
    Extent turned;
    for (const double x : {extent.minX, extent.maxX}) {
        for (const double y : {extent.minY, extent.maxY}) {
            turned.Add(turn.cosine * x - turn.sine * y, turn.sine * x + turn.cosine * y);
        }
    }
    const double margin = options.marginMillimetres / kMillimetresPerInch * page.unitsPerInch;
    PageFrame frame;
    frame.unitsPerInch = page.unitsPerInch;
    frame.width = turned.Width() + 2.0 * margin;
    frame.height = turned.Height() + 2.0 * margin;
    double left = margin;
    double top = margin;
    if (options.paper.width > 0.0) {
        const Paper paper = LaidPaper(options.paper, turned);
        // A drawing that grows has fewer units in an inch.
        frame.unitsPerInch /= ScaleTo(paper, turned, options.marginMillimetres,
                                      page.unitsPerInch / kMillimetresPerInch);
        frame.width = paper.width / kMillimetresPerInch * frame.unitsPerInch;
        frame.height = paper.height / kMillimetresPerInch * frame.unitsPerInch;
        left = (frame.width - turned.Width()) / 2.0;
        top = (frame.height - turned.Height()) / 2.0;
        frame.cutsDrawing = left < -1.0 || top < -1.0;
    }
    // The sheet's y runs down, hence the negated second row.
    frame.toSheet = {turn.cosine,  -turn.sine,         -turn.sine,
                     -turn.cosine, left - turned.minX, top + turned.maxY};
    return frame;
}

}  // namespace qm
