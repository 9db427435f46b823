// RasterState: what raster mode remembers, also while the plot is outside it.
//
// The raster-mode loop and the escape handlers work on it. Tests:
// tests/raster/raster_mode_test.cpp.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "common/colour.h"
#include "raster/rows/palette.h"
#include "raster/rows/placement.h"
#include "raster/rows/rtl_raster.h"

namespace qm {

// Pixel formats: the bits per pixel of a row, 3 and 4 being planes.
inline constexpr std::int32_t kOneBit = 1;
inline constexpr std::int32_t kPlanesOfThree = 3;
inline constexpr std::int32_t kPlanesOfFour = 4;
inline constexpr std::int32_t kEightBits = 8;
inline constexpr std::int32_t kDirectColour = 24;

struct RasterState {
    // Raster pictures are made; off, their data is consumed all the same.
    bool documentMode = false;
    // Raster mode was entered before; the first time the resolution comes from the job header.
    bool entered = false;
    // Orientation on and no RO when raster mode was entered.
    bool turn = false;

    PictureFrame frame;
    RasterCursor cursor;
    // Units per inch in which ESC*p moves the cursor; 0 = dots.
    std::int32_t positionUnits = 0;
    std::int32_t pixelFormat = kOneBit;  // 0 to 255
    std::int32_t method = 0;             // compression of the next transfers

    // What the pictures of this plot may still cost.
    PictureBudget budget;
    // The picture being received, if one is, and where its next row or plane goes.
    std::unique_ptr<CRTLRaster> picture;
    std::int32_t currentRow = 0;
    std::int32_t planeIndex = 0;
    std::vector<std::uint8_t> rowBuffer;

    RasterPalette palette;
    std::vector<RasterPalette> savedPalettes;  // ESC*p#P; at most kMaxSavedPalettes
    Colour nextColour;                         // of the next ESC*v#I

    static constexpr std::size_t kMaxSavedPalettes = 20;
};

}  // namespace qm
