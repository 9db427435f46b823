// Pages: the plot size, page ends and the frame offset.
//
// Commands PS PG NR FR BP stand in pages.cpp, and with them DF and IN, which make the state that a
// plot starts with. Tests: tests/interpreter/pages_test.cpp.
#pragma once

#include <cstdint>

#include "common/work_budget.h"

namespace qm {

struct Drawing;

struct PageState {
    std::int32_t pageIndex = 0;   // pages completed; whether one is empty, the Output knows
    std::int32_t plotLength = 0;  // the two PS numbers in the order given, plotter units
    std::int32_t plotWidth = 0;
    bool plotLandscape = false;  // length >= width at the last PS
    bool plotSizeGiven = false;
    // Dots, from PS: where raster mode puts the cursor across the rows (raster x) of a turned page.
    std::int32_t rasterYOffset = 0;
    std::int32_t frameOffset = 0;  // sum of all FR advances, plotter units

    // Page ends that count; what follows the last one is drawn on its page. A page takes some
    // kilobytes in the document and can be had for four bytes.
    static constexpr std::int64_t kMaxPages = 1000;
    WorkBudget budget{kMaxPages};
};

// Ends the page when something was drawn on it and resets the attributes that each page starts
// with.
void EndCurrentPage(PageState& page, Drawing& drawing);

}  // namespace qm
