// The palette of raster mode: 256 colours with the marks that tell which of them the plot defined
// itself, and the colours that the commands put there by default.
//
// Filled by the raster loop, handed to the picture when it is finished. Tests:
// tests/raster/raster_pictures_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/colour.h"
#include "common/packed_bitmap.h"

namespace qm {

inline constexpr std::size_t kPaletteEntries = 256;

struct RasterPalette {
    std::array<PaletteEntry, kPaletteEntries> entries{};
    std::array<bool, kPaletteEntries> defined{};
    // Some entry was defined by ESC*v#I.
    bool anyDefined = false;
    PaletteEntry foreground{};
    bool foregroundSet = false;
};

// Entries 0 to `count` - 1 (at most 256) take the pens' colours, each 0x00BBGGRR. The marks stay.
void LoadFromPens(RasterPalette& palette, const std::uint32_t* colours, std::size_t count);

// ESC*v#I: defines an entry; indexes outside 0 to 255 are ignored.
void DefineEntry(RasterPalette& palette, std::int32_t index, Colour colour);

// ESC*v#S: the entry at `index` becomes the foreground colour; outside 0 to 255 ignored.
void SetForeground(RasterPalette& palette, std::int32_t index);

// ESC*r-3U and ESC*r-4U: the fixed colours of three planes (cyan, magenta, yellow; 8 entries) and
// of four (black first; 16 entries). Entries beyond stay as they were, marks too.
void SetThreePlanePalette(RasterPalette& palette);
void SetFourPlanePalette(RasterPalette& palette);

// ESC*r1U: white and black; ESC*r3U: the eight colours of red, green and blue light. Nothing for
// other numbers of planes; entries beyond stay as they were, marks too.
void SetDevicePalette(RasterPalette& palette, std::int32_t planes);

// ESC*v#W: with more than one bit per index the entries 0 to 7 that the plot did not define get
// their default colours; with one bit, and no entry ever defined, white and black.
void ApplyConfigureDefaults(RasterPalette& palette, int bitsPerIndex);

// The colours that go into the bitmap of a picture: a one-bit picture with a foreground colour
// other than black shows it in place of entry 0, or of entry 1 where entry 0 is white.
std::array<PaletteEntry, kPaletteEntries> PictureColours(const RasterPalette& palette, int bits);

}  // namespace qm
