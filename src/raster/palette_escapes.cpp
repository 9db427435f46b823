// Escapes that choose the pixel format and make the palette; see escape_table.h.
#include <algorithm>

#include "interpreter/hpgl_read.h"
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
void ColourRed(HPGLRead& reader, EscapeValue value) {
    reader.raster.components[0] = static_cast<std::uint8_t>(value.number & 255);
}
void ColourGreen(HPGLRead& reader, EscapeValue value) {
    reader.raster.components[1] = static_cast<std::uint8_t>(value.number & 255);
}
void ColourBlue(HPGLRead& reader, EscapeValue value) {
    reader.raster.components[2] = static_cast<std::uint8_t>(value.number & 255);
}

// ESC*v#I
void AssignColour(HPGLRead& reader, EscapeValue value) {
    RasterState& raster = reader.raster;
    DefineEntry(raster.palette, value.number, raster.components[0], raster.components[1],
                raster.components[2]);
}

// ESC*v#S
void ForegroundColour(HPGLRead& reader, EscapeValue value) {
    SetForeground(reader.raster.palette, value.number);
}

// ESC*v#W: colour space (not used), pixel encoding mode, bits per index, two bits-per-primary
// values (not used). Data too short to tell the format changes nothing.
void ConfigureImageData(HPGLRead& reader, EscapeValue value) {
    std::uint8_t head[3];
    const auto count = static_cast<std::size_t>(std::max(value.number, 0));
    const std::size_t wanted = std::min(count, sizeof(head));
    if (reader.input.ReadRaw(head, wanted) < sizeof(head)) return;
    reader.input.SkipRaw(count - wanted);
    ApplyConfigureDefaults(reader.raster.palette, head[2]);
    reader.raster.pixelFormat = PixelFormatOf(head[1], head[2]);
}

// ESC*r#U: only the two plane formats have an effect.
void SimpleColour(HPGLRead& reader, EscapeValue value) {
    RasterState& raster = reader.raster;
    if (value.number == -3) {
        raster.pixelFormat = kPlanesOfThree;
        SetThreePlanePalette(raster.palette);
    } else if (value.number == -4) {
        raster.pixelFormat = kPlanesOfFour;
        SetFourPlanePalette(raster.palette);
    }
}

// ESC*p#P: 0 saves the palette, 1 brings the last saved one back. The foreground colour is no part
// of it. A full stack saves nothing, an empty one brings nothing.
void PushPopPalette(HPGLRead& reader, EscapeValue value) {
    RasterState& raster = reader.raster;
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
