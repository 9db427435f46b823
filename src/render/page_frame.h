// PageFrame: the sheet of paper around a drawing and the way from plotter units onto it. Test:
// tests/render/svg_writer_test.cpp.
#pragma once

#include "common/units.h"
#include "host/page_summary.h"
#include "render/page_writers.h"

namespace qm {

// x' = a x + c y + e, y' = b x + d y + f.
struct Matrix {
    double a = 1.0;
    double b = 0.0;
    double c = 0.0;
    double d = 1.0;
    double e = 0.0;
    double f = 0.0;
};

struct PageFrame {
    // Plotter units, x to the right, y down, origin at the sheet's upper left corner.
    double width = 0.0;
    double height = 0.0;
    // From the drawing's coordinates (y up) to the sheet's, page rotation included.
    Matrix toSheet;
    double unitsPerInch = kUnitsPerInch;
    bool cutsDrawing = false;  // the paper is smaller than the drawing

    double WidthMillimetres() const { return width / unitsPerInch * kMillimetresPerInch; }
    double HeightMillimetres() const { return height / unitsPerInch * kMillimetresPerInch; }
};

// The sheet that holds `extent`, turned as the page is, and a margin, or the paper with the drawing
// in its middle. A page that shows nothing gets a sheet of margins.
PageFrame FrameOf(const PageSource& page, const Extent& extent, const PageOptions& options);

}  // namespace qm
