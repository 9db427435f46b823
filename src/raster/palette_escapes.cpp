// Escapes that choose the pixel format and make the palette; see escape_table.h.
#include <algorithm>

#include "interpreter/reading.h"
#include "raster/escape_table.h"

namespace qm {

namespace {

// Encoding modes of ESC*v#W.
constexpr std::uint8_t kDirectByPlane = 2;
constexpr std::uint8_t kDirectByPixel = 3;

std::int32_t PixelFormatOf(std::uint8_t encoding, std::uint8_t bitsPerIndex) {
    if (encoding == kDirectByPixel) return kDirectColour;
    // Quirk: eight bits a colour by planes are read as if they came by pixels.
    if (encoding == kDirectByPlane && bitsPerIndex == 8) return kDirectColour;
    return bitsPerIndex;
}

}  // namespace

namespace escapes {

// ESC*v#A ESC*v#B ESC*v#C: the low byte of the value.
void ColourRed(EscapeValue value, RasterState& raster) {
    raster.nextColour.red = static_cast<std::uint8_t>(value.number & 255);
}
void ColourGreen(EscapeValue value, RasterState& raster) {
    raster.nextColour.green = static_cast<std::uint8_t>(value.number & 255);
}
void ColourBlue(EscapeValue value, RasterState& raster) {
    raster.nextColour.blue = static_cast<std::uint8_t>(value.number & 255);
}

// ESC*v#I
void AssignColour(EscapeValue value, RasterState& raster) {
    DefineEntry(raster.palette, value.number, raster.nextColour);
}

// ESC*v#S
void ForegroundColour(EscapeValue value, RasterState& raster) {
    SetForeground(raster.palette, value.number);
}

// ESC*v#W: colour space (not used), pixel encoding mode, bits per index, two bits-per-primary
// values (not used). Data too short to tell the format changes nothing.
void ConfigureImageData(EscapeValue value, InputReader& input, RasterState& raster) {
    std::uint8_t head[3];
    const auto count = static_cast<std::size_t>(std::max(value.number, 0));
    const std::size_t wanted = std::min(count, sizeof(head));
    if (input.ReadRaw(head, wanted) < sizeof(head)) return;
    input.SkipRaw(count - wanted);
    ApplyConfigureDefaults(raster.palette, head[2]);
    raster.pixelFormat = PixelFormatOf(head[1], head[2]);
}

// ESC*r#U: -3 and -4 planes of ink, 3 planes of light, 1 black and white.
// Quirk: 1 and 3 have no effect.
void SimpleColour(EscapeValue value, const Reading& reading, RasterState& raster) {
    if (value.number == -3) {
        raster.pixelFormat = kPlanesOfThree;
        SetThreePlanePalette(raster.palette);
    } else if (value.number == -4) {
        raster.pixelFormat = kPlanesOfFour;
        SetFourPlanePalette(raster.palette);
    } else if (reading.knowsPalettes && (value.number == 1 || value.number == 3)) {
        raster.pixelFormat = value.number;
        SetDevicePalette(raster.palette, value.number);
    }
}

// ESC*p#P: 0 saves the palette, 1 brings the last saved one back. The foreground colour is no part
// of it. A full stack saves nothing, an empty one brings nothing.
void PushPopPalette(EscapeValue value, RasterState& raster) {
    auto& saved = raster.savedPalettes;
    if (value.number == 0 && saved.size() < RasterState::kMaxSavedPalettes) {
        saved.push_back(raster.palette);
    } else if (value.number == 1 && !saved.empty()) {
        saved.back().foreground = raster.palette.foreground;
        saved.back().foregroundSet = raster.palette.foregroundSet;
        raster.palette = saved.back();
        saved.pop_back();
    }
}

}  // namespace escapes
}  // namespace qm
