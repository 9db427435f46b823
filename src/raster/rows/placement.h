// Where a finished raster picture lands on the page: its turn, its rectangle in plotter units and
// the raster position behind it.
//
// Entry point: PlacePicture, pure arithmetic over the state at finishing time. Tests:
// tests/raster/raster_mode_test.cpp.
#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace qm {

// The raster position in dots. `down` is raster y, the offset that ESC*b#Y moves, `across` raster
// x. The page's x follows `down`: a raster picture lies on the page as on the medium of a plotter,
// whose rows run across it.
struct RasterCursor {
    std::int32_t down = 0;
    std::int32_t across = 0;
};

// The size of a picture as the escapes give it.
struct PictureFrame {
    std::int32_t resolution = 300;       // dots per inch
    std::int32_t sourceWidth = 0;        // dots; 0 = from the plot size
    std::int32_t sourceHeight = 0;       // rows; 0 = open-ended. Pictures are placed by their rows
    std::int32_t destinationWidth = 0;   // decipoints (1/720 inch); 0 = not set
    std::int32_t destinationHeight = 0;  // decipoints; 0 = not set; counts only beside a width
};

// What decides how a picture is turned.
struct PageTurn {
    std::int32_t rotation = 0;  // degrees, as RO left it
    bool landscape = false;     // PS gave a length >= the width
    bool jobHeader = false;     // a job header named HP-GL/2 or HP-RTL
    bool atEntry = false;       // landscape and RO 0 when raster mode was entered
};

// The turns that exchange width and height.
inline bool IsQuarterTurn(int angle) { return angle == 90 || angle == 270; }

struct Placement {
    int angle = 0;  // degrees: 0, 90, 180 or 270
    // Plotter units. The corners are not sorted; a picture that grows downward has b.y below a.y.
    BoxI box;
    // False for pictures that measure 2 plotter units or less either way.
    bool visible = false;
    // The raster position behind the picture, moved also when nothing is visible.
    RasterCursor cursor;
};

// The size of a picture of `rows` rows before its turn, plotter units.
PointD PictureSize(const PictureFrame& frame, std::int32_t rows);

// Places a picture of `rows` rows that starts at `cursor`. A resolution of 0 gives coordinates of
// -2147483648 as every conversion out of range does.
Placement PlacePicture(const PictureFrame& frame, std::int32_t rows, RasterCursor cursor,
                       const PageTurn& page);

}  // namespace qm
