// See page_frame.h.
#include "render/page_frame.h"

#include <cmath>

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

}  // namespace

PageSource SourceOf(const PlotPage& page) {
    PageSource source;
    source.drawing = &page.Drawing();
    source.layers = &page.Layers();
    source.name = WideToUtf8(page.Name());
    source.unitsPerInch = page.UnitsPerInch();
    source.rotation = page.Rotation();
    source.sourceBytes = page.SourceBytes();
    return source;
}

PageFrame FrameOf(const PageSource& page, const Extent& extent, const PageOptions& options) {
    const Turn turn = TurnOf(page.rotation);
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
    // The sheet's y runs down, hence the negated second row.
    frame.toSheet = {turn.cosine,  -turn.sine,           -turn.sine,
                     -turn.cosine, margin - turned.minX, margin + turned.maxY};
    return frame;
}

}  // namespace qm
