// WritePlot: pages as a plot file again, through the save components.
#pragma once

#include <vector>

#include "host/open_plot.h"
#include "render/output_sink.h"
#include "render/page_writers.h"

namespace qm::cli {

struct PlotOptions {
    bool rtl = false;       // HP-RTL: each page as a picture; else HP-GL/2
    bool compact = false;   // HP-GL/2 by WriteCompactPlot (compact_plot.h), not WritePlot
    int bits = 24;          // of a dot of such a picture: 1, 8 or 24
    double rtlDpi = 300.0;  // dots per inch of such a picture, rounded to a whole number
};

// `page` tells how pages are drawn as pictures, apart from their resolution. Throws ToolError.
void WritePlot(const std::vector<PlotPage>& pages, const PageOptions& page,
               const PlotOptions& options, OutputSink& sink);

}  // namespace qm::cli
