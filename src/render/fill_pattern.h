// Fill patterns and searchable texts as the writers show them: runs of ink, places of texts. Test:
// tests/render/svg_writer_test.cpp.
#pragma once

#include <string_view>

#include "common/numbers.h"
#include "common/units.h"
#include "host/display_list.h"
#include "render/page_frame.h"

namespace qm {

// DrawingStyle::fillKind of a user pattern.
inline constexpr std::int32_t kFillKindPattern = 3;
// Size of a pattern's dot in plotter units: the language leaves it to the device, here it is that
// of the common 300 dots per inch.
inline constexpr double kPatternDotUnits = kUnitsPerInch / 300.0;

// Height of capitals in most fonts, of the font size: against it the box of strokes is held.
inline constexpr double kCapitalHeight = 0.72;

// Has at least a dot, no side above 255 (the language's own limit) and all its bits. Areas of other
// patterns are filled solid.
bool IsDrawable(const FillPattern& pattern);

// Whether dot (x, y), y counted from the top, is ink: a clear bit is.
inline bool IsInk(const FillPattern& pattern, std::int32_t x, std::int32_t y) {
    const std::uint8_t* const row =
        pattern.bits.data + static_cast<std::size_t>(y) * pattern.RowBytes();
    const std::uint8_t byte = row[x / 8];
    return (byte >> (7 - x % 8) & 1) == 0;
}

// Calls run(x, y, length) for each horizontal run of ink of a drawable pattern.
template <typename Run>
void ForEachInkRun(const FillPattern& pattern, const Run& run) {
    for (std::int32_t y = 0; y < pattern.height; ++y) {
        for (std::int32_t x = 0; x < pattern.width;) {
            const std::int32_t from = x;
            while (x < pattern.width && IsInk(pattern, x, y)) ++x;
            if (x > from) {
                run(from, y, x - from);
            } else {
                ++x;
            }
        }
    }
}

// Where invisible text lies so that selecting it covers the strokes it stands for.
struct TextPlace {
    bool shown = false;  // false: the text has no strokes
    Matrix toDrawing;    // from the text's own x to the right, y down, to the drawing
    double fontSize = 0.0;
    double length = 0.0;
};

// A box higher than wide of more than one letter is taken for text that runs upward.
TextPlace PlaceOfText(const BoxI& box, std::string_view text);

// White dots are clear with operations that leave white sources without effect; a plain copy (204,
// 240) is not one.
bool PictureIsClear(std::int32_t rasterOperation);

}  // namespace qm
