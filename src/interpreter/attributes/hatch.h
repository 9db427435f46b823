// The hatch generator: turns an area into the segments of one or two families of parallel lines.
//
// Pure: nothing of the interpreter's state is read. FP in fill.cpp calls it. Tests:
// tests/interpreter/attributes/hatch_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "common/geometry.h"
#include "common/work_budget.h"

namespace qm {

// Parallel lines: `angle` in radians against the x axis, `spacing` in plotter units between
// neighbours. Nothing is drawn with a spacing of 0 or less.
struct HatchFamily {
    double angle = 0.0;
    double spacing = 0.0;
    std::optional<PointD> anchor = {};  // a line goes through it; else the box of the area decides
};

// Several polygons that are filled together; polygon i has counts[i] of the points.
struct PolygonGroups {
    std::vector<PointI> points;
    std::vector<std::int32_t> counts;
};

enum class HatchResult { kDone, kInvalidArgument, kOutOfMemory };

// Takes one segment, plotter units.
using SegmentSink = std::function<void(PointI from, PointI to)>;

// Sends the pieces of the first family's lines that lie inside the polygons (even-odd over all of
// them together), then the second family's. A polygon's edges join neighbouring points: it must be
// closed by its points, as an open one leaves an odd crossing over, which is dropped. Lines run
// left to right, vertical and oblique ones upward; ends are truncated to whole units. No point at
// all is an invalid argument. A family of more than kMaxHatchWork lines times edges, and a line for
// which `budget` (null: none) has not one unit for itself and one for each crossing (three where
// they are many), end the fill with kOutOfMemory; memory stays proportional to the number of edges.
HatchResult HatchPolygons(const PolygonGroups& area, HatchFamily first, HatchFamily second,
                          const SegmentSink& sink, WorkBudget* budget = nullptr);

inline constexpr std::int64_t kMaxHatchWork = std::int64_t{1} << 26;

}  // namespace qm
