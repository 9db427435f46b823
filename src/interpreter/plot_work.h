// PlotWork: what a plot may cost beyond the work that its own bytes stand for.
//
// Some commands draw again, or many times over, what others recorded: two bytes can send 15000
// points or a million hatch lines. Handlers take from these budgets before they do; each command
// that stands for a bounded number of operations takes nothing. docs/limits.md explains the
// numbers. Tests: tests/interpreter/limits_test.cpp.
#pragma once

#include <cstdint>

#include "common/work_budget.h"

namespace qm {

struct PlotWork {
    // Before anything is read: without limits.
    PlotWork() = default;
    // For a plot of `bytes` bytes.
    explicit PlotWork(std::uint64_t bytes)
        : vertices(WorkBudget::For(kVertices, kVerticesPerByte, bytes)),
          crossings(WorkBudget::For(kCrossings, kCrossingsPerByte, bytes)),
          edgePairs(WorkBudget::For(kEdgePairs, kEdgePairsPerByte, bytes)),
          patternBytes(WorkBudget::For(kPatternBytes, kPatternBytesPerByte, bytes)) {}

    // Vertices of recorded polygons that EP and FP look at. Beyond: the polygon is left out.
    WorkBudget vertices;
    static constexpr std::int64_t kVertices = 2'000'000;
    static constexpr std::int64_t kVerticesPerByte = 8;
    // Hatch lines, and their crossings with edges. Beyond: the rest of the lines is left out.
    WorkBudget crossings;
    static constexpr std::int64_t kCrossings = 3'000'000;
    static constexpr std::int64_t kCrossingsPerByte = 16;
    // Pairs of edges compared before a polygon is cut at the window. Beyond: its pieces stay joined
    // along the window's sides.
    WorkBudget edgePairs;
    static constexpr std::int64_t kEdgePairs = 16'000'000;
    static constexpr std::int64_t kEdgePairsPerByte = 64;
    // Bytes of fill patterns. Beyond: the definition is left out.
    WorkBudget patternBytes;
    static constexpr std::int64_t kPatternBytes = 16'000'000;
    static constexpr std::int64_t kPatternBytesPerByte = 4;
};

}  // namespace qm
