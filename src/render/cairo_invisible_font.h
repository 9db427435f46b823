// A font whose letters cannot be seen, for the searchable texts of PDF pages. Test:
// tests/render/cairo_test.cpp.
#pragma once

#include "render/cairo_handles.h"

namespace qm {

// Width of every letter, in units of the font size.
inline constexpr double kInvisibleAdvance = 0.6;

struct CairoFontDeleter {
    void operator()(cairo_font_face_t* face) const { cairo_font_face_destroy(face); }
};
using CairoFont = std::unique_ptr<cairo_font_face_t, CairoFontDeleter>;

// A font made on the spot instead of one of the system's: no font file is looked for or embedded,
// and all Unicode characters have a letter. Each letter is two specks of a thousandth of the font
// size in opposite corners of its box, which is what a viewer marks when the text is selected.
CairoFont MakeInvisibleFont();

}  // namespace qm
