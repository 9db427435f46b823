// WriteCompactPlot: pages as HP-GL/2 in few bytes (compact_writer.cpp). Test:
// tests/render/compact_writer_test.cpp.
#pragma once

#include <vector>

#include "render/page_writers.h"

namespace qm {

// All pages as HP-GL/2 in as few bytes as it takes: encoded polylines, lines joined that meet, pens
// sorted where the drawing order does not show. Pictures and texts are left out. Calls
// options.checkpoint; throws what that and the sink throw.
void WriteCompactPlot(const std::vector<PageSource>& pages, const PageOptions& options,
                      OutputSink& sink);

}  // namespace qm
