// See colour_index.h.
#include "render/dxf/colour_index.h"

#include <algorithm>
#include <array>

#include "common/colour.h"

namespace qm::dxf {

namespace {

constexpr int kColours = 256;
constexpr int kForeground = 7;
// Below that the nearest of the others would be a dark red.
constexpr int kNearlyBlack = 40;
using Palette = std::array<Colour, kColours>;

constexpr std::uint8_t Byte(int value) { return static_cast<std::uint8_t>(value); }

// Numbers 10 to 249: 24 hues of five brightnesses, each pure and as a tint.
constexpr Colour HueColour(int index) {
    constexpr int kBrightness[] = {255, 189, 129, 104, 79};
    constexpr int kHueSteps = 4;  // between two of red, yellow, green, cyan, blue and magenta
    const int hue = index / 10 - 1;
    const int high = kBrightness[index % 10 / 2];
    const int low = index % 2 == 0 ? 0 : high * 2 / 3;
    const int step = hue % kHueSteps;
    const std::uint8_t top = Byte(high);
    const std::uint8_t bottom = Byte(low);
    const std::uint8_t rising = Byte(low + (high - low) * step / kHueSteps);
    const std::uint8_t falling = Byte(low + (high - low) * (kHueSteps - step) / kHueSteps);
    switch (hue / kHueSteps) {
        case 0:
            return {top, rising, bottom};
        case 1:
            return {falling, top, bottom};
        case 2:
            return {bottom, top, rising};
        case 3:
            return {bottom, falling, top};
        case 4:
            return {rising, bottom, top};
        default:
            return {top, bottom, falling};
    }
}

constexpr Palette MakePalette() {
    constexpr Colour kFirst[] = {{0, 0, 0},       {255, 0, 0},    {255, 255, 0}, {0, 255, 0},
                                 {0, 255, 255},   {0, 0, 255},    {255, 0, 255}, {255, 255, 255},
                                 {128, 128, 128}, {192, 192, 192}};
    constexpr int kGreys[] = {51, 80, 105, 130, 190, 255};
    Palette palette{};
    for (std::size_t i = 0; i < kColours; ++i) {
        const int index = static_cast<int>(i);
        if (index < 10) {
            palette[i] = kFirst[i];
        } else if (index < 250) {
            palette[i] = HueColour(index);
        } else {
            const std::uint8_t grey = Byte(kGreys[i - 250]);
            palette[i] = {grey, grey, grey};
        }
    }
    return palette;
}

constexpr Palette kPalette = MakePalette();

int Distance(Colour a, Colour b) {
    const int red = a.red - b.red;
    const int green = a.green - b.green;
    const int blue = a.blue - b.blue;
    return red * red + green * green + blue * blue;
}

}  // namespace

IndexedColour IndexOf(std::uint32_t bgr) {
    const Colour colour = Colour::FromBgr(bgr);
    if (std::max({colour.red, colour.green, colour.blue}) < kNearlyBlack) {
        return {kForeground, colour == Colour{}};
    }
    int best = 1;
    int bestDistance = INT32_MAX;
    for (int index = 1; index < kColours && bestDistance > 0; ++index) {
        if (index == kForeground) continue;
        const int distance = Distance(colour, kPalette[static_cast<std::size_t>(index)]);
        if (distance >= bestDistance) continue;
        best = index;
        bestDistance = distance;
    }
    return {best, bestDistance == 0};
}

std::int64_t TrueColour(std::uint32_t bgr) {
    const auto [red, green, blue] = Colour::FromBgr(bgr);
    return std::int64_t{red} << 16 | std::int64_t{green} << 8 | blue;
}

}  // namespace qm::dxf
