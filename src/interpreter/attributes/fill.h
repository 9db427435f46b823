// Area fills: fill types, filled and edged polygons, rectangles, wedges and user patterns.
//
// Commands EP FP FT stand in fill.cpp, RA RR EA ER WG RF AC in shapes.cpp; the hatch generator in
// hatch.h. Tests: tests/interpreter/attributes/fill_test.cpp.
#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace qm {

struct FillState {
    // 1, 2 solid; 3 hatch; 4 cross-hatch; 10 shading; 11 user pattern; others solid.
    std::int32_t FillType = 1;
    std::int32_t HatchSpacing = 0;    // plotter units
    std::int32_t HatchAngle = 0;      // degrees
    std::int32_t ShadingLevel = 100;  // percent of ink for type 10
    std::int32_t FillPatternIndex = -1;

    // Of the reading that fills by type (area_fill.h).
    double spacing = 0.0;  // plotter units; 0: one percent of the distance of P1 and P2
    double angle = 0.0;    // degrees
    PointD anchor;         // AC, plotter units

    // Rectangles by RA and PE show only their outline for these types.
    bool DrawsRectangleOutline() const { return FillType == 11 || FillType == 22; }
};

}  // namespace qm
