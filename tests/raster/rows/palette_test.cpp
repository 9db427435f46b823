// The palette of raster mode: which command puts which colour where.
#include "raster/rows/palette.h"

#include <gtest/gtest.h>

#include <string>

namespace qm {
namespace {

// The first entries, a letter each: Black, White, Red, Green, bLue (U), Cyan, Magenta, Yellow.
std::string Names(const RasterPalette& palette, std::size_t count) {
    std::string names;
    for (std::size_t i = 0; i < count; ++i) {
        const PaletteEntry& e = palette.entries[i];
        const int code =
            (e.red == 255 ? 1 : 0) + (e.green == 255 ? 2 : 0) + (e.blue == 255 ? 4 : 0);
        const bool pure = (e.red + e.green + e.blue) % 255 == 0 && e.reserved == 0;
        names += pure ? "BRGYUMCW"[code] : '?';
    }
    return names;
}

TEST(RasterPalette, FixedPalettesLeaveTheEntriesBeyond) {
    RasterPalette palette;
    SetFourPlanePalette(palette);
    EXPECT_EQ(Names(palette, 16), "WBCBMBUBYBGBRBBB");
    DefineEntry(palette, 8, 255, 0, 0);
    SetThreePlanePalette(palette);
    EXPECT_EQ(Names(palette, 10), "WCMUYGRBRB");
}

TEST(RasterPalette, ConfigureFillsWhatThePlotDidNotDefine) {
    RasterPalette palette;
    DefineEntry(palette, 1, 255, 255, 255);
    DefineEntry(palette, -1, 255, 0, 0);
    DefineEntry(palette, 256, 255, 0, 0);
    ApplyConfigureDefaults(palette, 8);
    EXPECT_EQ(Names(palette, 9), "BWGYUMCWB");
    ApplyConfigureDefaults(palette, 1);
    EXPECT_EQ(Names(palette, 2), "BW") << "one entry was defined, so one bit changes nothing";

    RasterPalette fromPens;
    const std::uint32_t pens[] = {0x0000FF, 0xFF0000, 0x00FF00};
    LoadFromPens(fromPens, pens, 3);
    EXPECT_EQ(Names(fromPens, 4), "RUGB");
    ApplyConfigureDefaults(fromPens, 0);
    EXPECT_EQ(Names(fromPens, 3), "RUG");
    ApplyConfigureDefaults(fromPens, 1);
    EXPECT_EQ(Names(fromPens, 3), "WBG");
}

TEST(RasterPalette, ForegroundReplacesTheInkOfOneBitPictures) {
    const struct {
        const char* name;
        std::uint8_t zero;  // grey of entry 0
        int bits;
        bool set;
        std::uint8_t foreground;  // red of the foreground colour
        std::uint8_t red0, red1;  // of the picture's entries
    } rows[] = {
        {"entry 0 white: entry 1", 255, 1, true, 200, 255, 200},
        {"entry 0 not quite white", 254, 1, true, 200, 200, 7},
        {"never set", 255, 1, false, 200, 255, 7},
        {"black foreground", 255, 1, true, 0, 255, 7},
        {"eight bits", 255, 8, true, 200, 255, 7},
    };
    for (const auto& row : rows) {
        RasterPalette palette;
        DefineEntry(palette, 0, row.zero, row.zero, row.zero);
        DefineEntry(palette, 1, 7, 0, 0);
        DefineEntry(palette, 5, row.foreground, 0, 0);
        if (row.set) SetForeground(palette, 5);
        SetForeground(palette, 256);
        const auto colours = PictureColours(palette, row.bits);
        EXPECT_EQ(colours[0].red, row.red0) << row.name;
        EXPECT_EQ(colours[1].red, row.red1) << row.name;
        EXPECT_EQ(palette.entries[1].red, 7) << row.name << ": only the copy changes";
    }
}

}  // namespace
}  // namespace qm
