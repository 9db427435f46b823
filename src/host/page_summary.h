// PageSummary: what a page holds (counts by kind and by pen) and where (its extent), gathered in
// one pass over its display list. Test: tests/host/page_summary_test.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "common/geometry.h"
#include "host/display_list.h"

namespace qm {

struct PageSummary {
    // Primitives; a chain of n lines counts n.
    std::uint64_t lines = 0;
    std::uint64_t polylines = 0;
    std::uint64_t polygons = 0;  // filled; an area of several rings counts once
    std::uint64_t rectangles = 0;
    std::uint64_t circles = 0;
    std::uint64_t arcs = 0;
    std::uint64_t texts = 0;
    std::uint64_t pictures = 0;
    std::uint64_t fillPatterns = 0;
    // Primitives by pen number; others than 0 to 255 are not counted here.
    std::array<std::uint64_t, 256> byPen{};
    // Layer numbers in the order of their first primitive.
    std::vector<std::int32_t> layers;
    // Everything visible, with half of the pen width around it; texts (their strokes are lines) do
    // not count, clip regions are not looked at.
    Extent extent;
    // Filled areas, pictures, clip regions or mixing draw modes: what is drawn later covers or
    // changes what was drawn before, so the drawing order shows.
    bool orderShows = false;
    // There is something visible, and all of it is white.
    bool onlyWhite = false;
};

PageSummary Summarise(const DisplayList& list);

// The part of an elliptic arc's box that its angles reach, plotter units.
Extent ArcExtent(const ArcShape& arc);

}  // namespace qm
