// Where a finished raster picture lands on the page: its turn, its rectangle in plotter units and
// the raster position behind it.
//
// Entry point: PlacePicture, pure arithmetic over the state at finishing time. Tests:
// tests/raster/raster_mode_test.cpp.
#pragma once

#include <cstdint>

namespace qm {

struct PlacementInput {
    double resolution = 300.0;       // dots per inch
    std::int32_t sourceWidth = 0;    // dots
    std::int32_t rows = 0;           // rows stored
    double destinationWidth = 0.0;   // decipoints (1/720 inch); 0 = not set
    double destinationHeight = 0.0;  // decipoints; 0 = not set; counts only beside a width
    std::int32_t offsetA = 0;        // dots: raster y, the offset that ESC*b#Y sets
    std::int32_t offsetB = 0;        // dots: raster x, the other position value
    std::int32_t plotRotation = 0;   // degrees, as RO left it
    bool orientation = false;        // the plot size is wider than high
    bool jobHeader = false;          // a job header named the language
    bool turn = false;               // orientation on and RO 0 when raster mode was entered
    std::int32_t mergeMode = 0;      // raster operation
    double pageOriginY = 0.0;        // plotter units
};

struct Placement {
    int angle = 0;  // degrees: 0, 90, 180 or 270
    // Plotter units. The corners are not sorted; a picture that grows downward has y1 below y0.
    std::int32_t x0 = 0;
    std::int32_t y0 = 0;
    std::int32_t x1 = 0;
    std::int32_t y1 = 0;
    // False for pictures that leave no mark (raster operations 51 and 170) or measure 2 plotter
    // units or less either way.
    bool visible = false;
    // The raster position behind the picture, in dots, moved also when nothing is visible.
    std::int32_t offsetA = 0;
    std::int32_t offsetB = 0;
};

// A resolution of 0 gives coordinates of -2147483648 as every conversion out of range does.
Placement PlacePicture(const PlacementInput& input);

}  // namespace qm
