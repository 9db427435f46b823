// The counts of a page's primitives, as info names them. Test: tests/cli/transcripts_test.cpp.
#pragma once

#include <array>
#include <cstdint>

#include "host/page_summary.h"

namespace qm::cli {

struct Count {
    const char* name;  // for people
    const char* key;   // in JSON
    std::uint64_t PageSummary::*value;
};

inline constexpr std::array<Count, 9> kCounts = {
    {{"lines", "lines", &PageSummary::lines},
     {"polylines", "polylines", &PageSummary::polylines},
     {"filled areas", "filledAreas", &PageSummary::polygons},
     {"rectangles", "rectangles", &PageSummary::rectangles},
     {"circles", "circles", &PageSummary::circles},
     {"arcs", "arcs", &PageSummary::arcs},
     {"texts", "texts", &PageSummary::texts},
     {"pictures", "pictures", &PageSummary::pictures},
     {"fill patterns", "fillPatterns", &PageSummary::fillPatterns}}};

}  // namespace qm::cli
