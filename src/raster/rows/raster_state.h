// RasterState: what raster mode remembers, also while the plot is outside it.
//
// The raster-mode loop and the escape handlers work on it; HPGLRead owns one. Tests:
// tests/raster/raster_mode_test.cpp.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "raster/rows/palette.h"
#include "raster/rows/work_budget.h"

namespace qm {

class CRTLRaster;

struct PictureDeleter {
    void operator()(CRTLRaster* picture) const;
};

// Pixel formats: the bits per pixel of a row, 3 and 4 being planes.
inline constexpr std::int32_t kOneBit = 1;
inline constexpr std::int32_t kPlanesOfThree = 3;
inline constexpr std::int32_t kPlanesOfFour = 4;
inline constexpr std::int32_t kEightBits = 8;
inline constexpr std::int32_t kDirectColour = 24;

struct RasterState {
    // Dots per inch, never 0. Taken from the job header on the first entry.
    std::int32_t resolution = 300;
    bool entered = false;

    std::int32_t sourceWidth = 0;       // pixels; 0 = from the plot size
    std::int32_t sourceHeight = 0;      // rows; 0 = open-ended
    std::int32_t destinationWidth = 0;  // decipoints (1/720 inch); 0 = not set
    std::int32_t destinationHeight = 0;
    std::int32_t pixelFormat = kOneBit;  // 0 to 255
    std::int32_t method = 0;             // compression of the next transfers

    // The raster position in dots. A is raster y, the offset of ESC*b#Y; B is raster x.
    std::int32_t positionA = 0;
    std::int32_t positionB = 0;
    // Units per inch in which ESC*p moves the position; 0 = dots.
    std::int32_t positionUnits = 0;
    // Orientation on and no RO when raster mode was entered.
    bool turn = false;

    // What the pictures of this plot may still cost.
    WorkBudget budget;
    // The picture being received, if one is, and where its next row or plane goes.
    std::unique_ptr<CRTLRaster, PictureDeleter> picture;
    std::int32_t currentRow = 0;
    std::int32_t planeIndex = 0;
    std::vector<std::uint8_t> rowBuffer;

    RasterPalette palette;
    std::vector<RasterPalette> savedPalettes;  // ESC*p#P; at most kMaxSavedPalettes
    std::uint8_t components[3] = {0, 0, 0};    // red, green, blue for the next ESC*v#I

    static constexpr std::size_t kMaxSavedPalettes = 20;
};

}  // namespace qm
