#include "render/cairo_invisible_font.h"

namespace qm {

namespace {

constexpr double kSpeck = 0.001;
constexpr double kCapitalHeight = 0.72;

cairo_status_t RenderGlyph(cairo_scaled_font_t*, unsigned long, cairo_t* context,
                           cairo_text_extents_t* extents) {
    extents->x_advance = kInvisibleAdvance;
    // Cairo leaves letters without any ink out of the page.
    cairo_rectangle(context, 0.0, -kSpeck, kSpeck, kSpeck);
    cairo_rectangle(context, kInvisibleAdvance - kSpeck, -kCapitalHeight, kSpeck, kSpeck);
    cairo_fill(context);
    return CAIRO_STATUS_SUCCESS;
}

}  // namespace

CairoFont MakeInvisibleFont() {
    CairoFont font(cairo_user_font_face_create());
    CheckCairo(cairo_font_face_status(font.get()));
    cairo_user_font_face_set_render_glyph_func(font.get(), RenderGlyph);
    return font;
}

}  // namespace qm
