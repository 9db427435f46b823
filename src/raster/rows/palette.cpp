// See palette.h.
#include "raster/rows/palette.h"

#include <algorithm>

namespace qm {

namespace {

constexpr PaletteEntry kWhite{255, 255, 255, 0};
constexpr PaletteEntry kBlack{0, 0, 0, 0};

// Colours as blue, green, red, reserved.
// clang-format off
constexpr PaletteEntry kThreePlaneColours[] = {
    {255, 255, 255, 0},  // white
    {255, 255,   0, 0},  // cyan
    {255,   0, 255, 0},  // magenta
    {255,   0,   0, 0},  // blue
    {  0, 255, 255, 0},  // yellow
    {  0, 255,   0, 0},  // green
    {  0,   0, 255, 0},  // red
    {  0,   0,   0, 0},  // black
};

constexpr PaletteEntry kConfigured[] = {
    {  0,   0,   0, 0},  // black
    {  0,   0, 255, 0},  // red
    {  0, 255,   0, 0},  // green
    {  0, 255, 255, 0},  // yellow
    {255,   0,   0, 0},  // blue
    {255,   0, 255, 0},  // magenta
    {255, 255,   0, 0},  // cyan
    {255, 255, 255, 0},  // white
};
// clang-format on

PaletteEntry EntryOf(Colour colour) { return {colour.blue, colour.green, colour.red, 0}; }

bool IsIndex(std::int32_t index) {
    return index >= 0 && index < static_cast<std::int32_t>(kPaletteEntries);
}

}  // namespace

void LoadFromPens(RasterPalette& palette, const std::uint32_t* colours, std::size_t count) {
    const std::size_t entries = std::min(count, kPaletteEntries);
    for (std::size_t i = 0; i < entries; ++i) {
        palette.entries[i] = EntryOf(Colour::FromBgr(colours[i]));
    }
}

void DefineEntry(RasterPalette& palette, std::int32_t index, Colour colour) {
    if (!IsIndex(index)) return;
    const auto i = static_cast<std::size_t>(index);
    palette.entries[i] = EntryOf(colour);
    palette.defined[i] = true;
    palette.anyDefined = true;
}

void SetForeground(RasterPalette& palette, std::int32_t index) {
    if (!IsIndex(index)) return;
    palette.foreground = palette.entries[static_cast<std::size_t>(index)];
    palette.foregroundSet = true;
}

void SetThreePlanePalette(RasterPalette& palette) {
    std::copy(std::begin(kThreePlaneColours), std::end(kThreePlaneColours),
              palette.entries.begin());
}

void SetFourPlanePalette(RasterPalette& palette) {
    // The lowest plane is black, so odd indexes are black and the even ones the three-plane
    // colours.
    for (std::size_t i = 0; i < 16; ++i) {
        palette.entries[i] = i % 2 == 1 ? kBlack : kThreePlaneColours[i / 2];
    }
}

void SetDevicePalette(RasterPalette& palette, std::int32_t planes) {
    if (planes == 3) {
        std::copy(std::begin(kConfigured), std::end(kConfigured), palette.entries.begin());
    } else if (planes == 1) {
        palette.entries[0] = kWhite;
        palette.entries[1] = kBlack;
    }
}

void ApplyConfigureDefaults(RasterPalette& palette, int bitsPerIndex) {
    if (bitsPerIndex > 1) {
        for (std::size_t i = 0; i < 8; ++i) {
            if (!palette.defined[i]) palette.entries[i] = kConfigured[i];
        }
    } else if (bitsPerIndex == 1 && !palette.anyDefined) {
        palette.entries[0] = kWhite;
        palette.entries[1] = kBlack;
    }
}

std::array<PaletteEntry, kPaletteEntries> PictureColours(const RasterPalette& palette, int bits) {
    auto colours = palette.entries;
    const PaletteEntry& foreground = palette.foreground;
    if (bits == 1 && palette.foregroundSet && !(foreground == kBlack)) {
        colours[colours[0] == kWhite ? 1 : 0] = foreground;
    }
    return colours;
}

}  // namespace qm
