// A font whose letters cannot be seen, for the searchable texts of PDF pages. Test:
// tests/render/cairo_test.cpp.
#pragma once

#include <string_view>

#include "render/cairo_handles.h"

namespace qm {

struct CairoFontDeleter {
    void operator()(cairo_font_face_t* face) const { cairo_font_face_destroy(face); }
};
using CairoFont = std::unique_ptr<cairo_font_face_t, CairoFontDeleter>;

// A font made on the spot instead of one of the system's: no font file is looked for or embedded,
// and all Unicode characters have a letter. Each letter is two specks of a thousandth of the font
// size in opposite corners of its box, which is what a viewer marks when the text is selected.
CairoFont MakeInvisibleFont();

// A size near `size`: each size makes a font of its own in the PDF file, so there are to be few.
double RoundedFontSize(double size);

// Shows `text` (UTF-8) at the origin with the context's font, its letters spread over `length`.
void ShowSpread(cairo_t* context, std::string_view text, double length);

}  // namespace qm
