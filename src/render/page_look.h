// PageLook: what of a page is shown and in which colours and widths, other than the plot says.
//
// LookedAt makes a page of it whose display list holds that look, so that no writer has to know of
// it. Test: tests/render/page_look_test.cpp.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "host/open_plot.h"

namespace qm {

// What a pen draws with; what is not given stays as the plot has it.
struct PenLook {
    std::optional<std::uint32_t> colour;     // 0x00BBGGRR, of lines and areas
    std::optional<double> widthMillimetres;  // 0: the thinnest line
};

// Both ends are in it.
struct PenRange {
    std::int32_t first = 0;
    std::int32_t last = 0;
};

struct PageLook {
    std::map<std::int32_t, PenLook> pens;
    std::vector<PenRange> only;                  // nothing of other pens is shown; empty: all
    std::optional<double> lineWidthMillimetres;  // of lines that have none
    // Lines are black, areas and pictures grey as light as their colours, what is white stays
    // white. What `pens` says holds all the same.
    bool mono = false;
    double clockwise = 0.0;  // degrees by which the page is shown turned
};

// `page` as `look` shows it: itself when nothing differs, else with a display list of its own,
// on a sheet for all that the page shows, also by pens that are left out. Throws std::bad_alloc.
PlotPage LookedAt(const PlotPage& page, const PageLook& look);

}  // namespace qm
