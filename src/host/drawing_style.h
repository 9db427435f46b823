// DrawingStyle: what holds for a primitive of a display list.
// Test: tests/host/display_list_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qm {

// Pointers stay valid as long as the list does.
struct DrawingStyle {
    std::int32_t pen = 0;
    std::int32_t layer = 0;
    std::uint32_t drawColour = 0;  // 0x00BBGGRR
    std::uint32_t fillColour = 0;
    // 0 solid, 1 dashed, 2 dotted, 3 dash-dot, 4 dash-dot-dot; anything else counts as solid.
    // Whichever of style and dash came last holds: a style clears the dash, a dash sets style 0.
    std::int32_t lineStyle = 0;
    const std::int32_t* dash = nullptr;  // lengths of dash, gap, dash, ... in plotter units
    std::size_t dashCount = 0;           // 0: no pattern of its own
    std::int32_t lineWidth = 0;          // plotter units; 0 is the thinnest line of the device
    std::int32_t lineAttributes = 0;     // 0x200 butt, 0x100 square, else round; 0x1000 bevel joins
    std::int32_t drawMode = 13;          // binary raster operation: 9 mask pen, 13 copy pen
    std::int32_t fillKind = 0;           // 0 solid, 3 pattern number fillIndex
    std::int32_t fillIndex = 0;

    void SetDash(const std::int32_t* lengths, std::size_t count) {
        lineStyle = 0;
        dash = lengths;
        dashCount = count;
    }
    void SetLineStyle(std::int32_t style) {
        SetDash(nullptr, 0);
        lineStyle = style;
    }
};

}  // namespace qm
