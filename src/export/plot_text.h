// Every text the export writes, on one page: the HP-GL/2 commands of the filters and the vector
// sinks, and the raster escapes.
//
// The bytes are contract: other programs compare plots made by this module, so a missing semicolon
// or line end stays missing. Each text goes out in one write. Test: tests/export/*_test.cpp.
#pragma once

#include <string_view>

#include "export/plot_format.h"

namespace qm::plot_text {

// ---------------------------------------------------------------- Whole documents
inline constexpr std::string_view kVectorHeader = "BPINSP1;TR0;\r\n";
inline constexpr std::string_view kVectorTrailer = "PU;PG;";
// Quirk: both percent signs go out, as this header is no format. Readers skip the unknown escape
// and start in HP-GL/2 mode all the same.
inline constexpr std::string_view kRasterHeader = "\033%%-1B;BP5,1;INTR0\r\n";
inline constexpr std::string_view kRasterTrailer = "PUSP0PG;";
inline constexpr std::string_view kPageAdvance = "\r\nPG;\r\n";

// ---------------------------------------------------------------- Pens, colours, lines
// pen, red, green, blue, pen
inline constexpr Command<Int, Int, Int, Int, Int> kDrawColour{"PC%d,%d,%d,%d;\r\nSP%d;"};
inline constexpr Command<Int, Int, Int, Int, Int> kTableColour{"PC%d,%d,%d,%d;SP%d;\r\n"};
// millimetres, pen
inline constexpr Command<Real, Int> kPenWidth{"PW%2.2f,%d;\r\n"};
inline constexpr Command<Int> kLineType{"LT%d;\r\n"};
inline constexpr std::string_view kSolidLine = "LT;\r\n";
inline constexpr std::string_view kInvertMode = "MC1,168;";
inline constexpr std::string_view kNormalMode = "MC;";

// ---------------------------------------------------------------- Primitives
inline constexpr Command<Int, Int, Int, Int> kLine{"PU%d,%dPD%d,%d;\r\n"};
// centre, radius
inline constexpr Command<Int, Int, Int> kCircle{"PU;PA%d,%d;CI%d;"};
inline constexpr Command<Int, Int, Int> kFilledCircle{"PU;PA%d,%d;PM0;CI%d;PM2;FP;"};
inline constexpr Command<Int, Int> kStartPolyline{"PU%d,%dPD;"};
inline constexpr Command<Int, Int> kStartPolygon{"PU%d,%d;PD;PM0\r\n"};
inline constexpr Command<Int, Int> kNextPoint{"PA%d,%d;\r\n"};
inline constexpr Command<Int, Int> kClosePolygon{"PA%d,%d;PM2;FP;\r\n"};
inline constexpr Command<Int, Int> kStartFirstRing{"PU%d,%dPM0PD"};
inline constexpr Command<Int, Int> kStartNextRing{"PM1;PU%d,%d;PD;\r\n"};
inline constexpr std::string_view kFillRings = "PM2;FP;\r\n";

// ---------------------------------------------------------------- Fills
inline constexpr std::string_view kSolidFill = "FT;";
inline constexpr std::string_view kHatches[] = {
    "FT3,80,0;", "FT3,80,90;", "FT3,80,-45;", "FT3,80,45;", "FT4,80,90;", "FT4,80,45;",
};
// Quirk: no semicolon; the next command's letters end it.
inline constexpr Command<Int> kPatternFill{"FT11,%d"};
// index, width, height; then one text a pixel
inline constexpr Command<Int, Int, Int> kFillPattern{"RF%d,%d,%d"};
// Quirk: a set bit is pen 0 (paper), a clear one pen 1.
inline constexpr std::string_view kPatternSetBit = ",0";
inline constexpr std::string_view kPatternClearBit = ",1";
inline constexpr std::string_view kEndFillPattern = ";";

// ---------------------------------------------------------------- Text
// centimetres
inline constexpr Command<Real, Real> kCharacterSize{"SI%2.2f,%2.2f;\r\n"};
inline constexpr Command<Real, Real> kTextDirection{"DI%2.2f,%2.2f;\r\n"};
inline constexpr std::string_view kHorizontalText = "DI;\r\n";
inline constexpr Command<Int, Int> kTextPosition{"PUPA%d,%d;\r\n"};
// The 8-bit text stands between these two; byte 3 ends a label.
inline constexpr std::string_view kStartLabel = "LB";
inline constexpr std::string_view kEndLabel = "\003;\r\n";

// ---------------------------------------------------------------- Raster pages and pictures
// Plot length and width
inline constexpr Command<Int, Int> kPlotSize{"PS%d,%d;\r\n"};
inline constexpr Command<Int, Int, Int, Int> kInputPoints{"IP%d,%d,%d,%d;"};
inline constexpr std::string_view kScalePage = "SCSP1;\r\n";
inline constexpr Command<Int, Int> kPicturePosition{"PU;PA%d,%d;"};

// HP-RTL: raster mode at the pen's position, palette saved; picture in pixels, then in decipoints.
inline constexpr Command<> kEnterRasterMode{"\033%%1A"};
inline constexpr Command<> kPushPalette{"\033*p0P"};
inline constexpr Command<Int, Int> kSourceSize{"\033*r%ds%dT"};
inline constexpr Command<Int, Int> kDestinationSize{"\033*t%dh%dV"};
// Bytes of the description that follows
inline constexpr Command<Int> kConfigureImage{"\033*v%dW"};
// red, green, blue, index
inline constexpr Command<Int, Int, Int, Int> kPaletteEntry{"\033*v%da%db%dc%dI"};
inline constexpr Command<> kStartRaster{"\033*r3A"};
// Bytes of the row that follows, as they are or PackBits
inline constexpr Command<Int> kPlainRow{"\033*b0m%dW"};
inline constexpr Command<Int> kPackedRow{"\033*b2m%dW"};
inline constexpr Command<> kPopPalette{"\033*p1P"};
inline constexpr Command<> kEndRaster{"\033*rC\033%%1B"};

}  // namespace qm::plot_text
