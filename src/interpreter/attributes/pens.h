// Pens: the table of 256 pens, the default palette, pen selection and transparency.
//
// Commands SP PW WU PC CR TR stand in pens.cpp. Colours are 0x00BBGGRR, widths plotter units.
// Tests: tests/interpreter/attributes/pens_test.cpp.
#pragma once

#include <array>
#include <cstdint>

#include "common/colour.h"

namespace qm {

class Output;
struct CoordinateState;
struct LineState;
struct Reading;

inline constexpr std::int32_t kPenCount = 256;
inline constexpr std::uint32_t kWhite = kWhiteColour.ToBgr();

// Colours of pens 0 to 15 whenever a pen is reset; pens 16 to 255 reset to black.
inline constexpr std::array<std::uint32_t, 16> kDefaultPalette{
    0xFFFFFF, 0x000000, 0x0000FF, 0x00FF00, 0x00FFFF, 0xFF0000, 0xFF00FF, 0xFFFF00,
    0x000000, 0x0000FF, 0x00FF00, 0x00FFFF, 0xFF0000, 0xFF00FF, 0xFFFF00, 0x000000};

// The default colour of a pen; black outside 0 to 15.
constexpr std::uint32_t DefaultPenColour(std::int32_t pen) {
    return pen >= 0 && pen < static_cast<std::int32_t>(kDefaultPalette.size())
               ? kDefaultPalette[static_cast<std::size_t>(pen)]
               : 0;
}

struct Pen {
    double width = 0.0;  // 0 is the thinnest line
    std::uint32_t colour = 0;
};

// One component of CR: the black reference and the distance from it to the white reference.
struct ComponentRange {
    std::int32_t black = 0;
    std::int32_t range = 255;
};

struct PenState {
    PenState();

    // Selects a pen: folds numbers above 255 into 1..255, takes -32768 as 0, and sends colour, line
    // style, pattern, width and pen whether they changed or not. Negative pens are sent as they
    // are.
    void Select(std::int32_t pen, LineState& lines, Output& out);
    // All pens: the default colour, one width.
    void ResetColours();
    void SetWidths(double width);
    // What PW alone, WU and IN give every pen: 0, the thinnest line.
    // Quirk: pens have no width of their own.
    double DefaultWidth(const Reading& reading, const CoordinateState& coordinates) const;
    // Makes WhitePenSuppressed follow the current pen's colour and Transparency.
    void UpdateWhitePen();
    // The pen's entry; pens outside the table (negative ones) are thin and black.
    Pen Get(std::int32_t pen) const;

    std::array<Pen, kPenCount> PenTable;
    std::int32_t CurrentPen = 0;  // can be negative
    bool selected = false;        // Select was called; until then lines are black
    bool WidthUnitRelative =
        false;                 // WU: widths in thousandths of the P1-P2 distance, else millimetres
    bool Transparency = true;  // white is transparent
    bool WhitePenSuppressed = false;  // a white current pen with transparency: FP fills nothing
    bool PaletteChanged = false;      // a PC came; the raster palette is made anew from the pens
    std::array<ComponentRange, 3> colourRange;  // red, green, blue
};

// One component of PC on its range as a byte, the black reference as 0 and the white one as 255;
// beyond them it is clamped, on an inverted range it is cut to its low 8 bits.
std::uint8_t ColourByte(double component, ComponentRange range);

}  // namespace qm
