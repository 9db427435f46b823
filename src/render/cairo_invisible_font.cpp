#include "render/cairo_invisible_font.h"

#include <cmath>

namespace qm {

namespace {

constexpr double kAdvance = 0.6;
constexpr double kSpeck = 0.001;
constexpr double kCapitalHeight = 0.72;

cairo_status_t RenderGlyph(cairo_scaled_font_t*, unsigned long, cairo_t* context,
                           cairo_text_extents_t* extents) {
    extents->x_advance = kAdvance;
    // Cairo leaves letters without any ink out of the page.
    cairo_rectangle(context, 0.0, -kSpeck, kSpeck, kSpeck);
    cairo_rectangle(context, kAdvance - kSpeck, -kCapitalHeight, kSpeck, kSpeck);
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

double RoundedFontSize(double size) { return std::exp2(std::round(std::log2(size) * 4.0) / 4.0); }

void ShowSpread(cairo_t* context, std::string_view text, double length) {
    cairo_glyph_t* glyphs = nullptr;
    int glyphCount = 0;
    cairo_text_cluster_t* clusters = nullptr;
    int clusterCount = 0;
    cairo_text_cluster_flags_t flags{};
    const auto bytes = static_cast<int>(text.size());
    const cairo_status_t status = cairo_scaled_font_text_to_glyphs(
        cairo_get_scaled_font(context), 0.0, 0.0, text.data(), bytes, &glyphs, &glyphCount,
        &clusters, &clusterCount, &flags);
    // Text that is no UTF-8 cannot be searched for: it is left out.
    if (status != CAIRO_STATUS_SUCCESS) return;
    for (int i = 0; i < glyphCount; ++i) glyphs[i].x = length * i / glyphCount;
    cairo_show_text_glyphs(context, text.data(), bytes, glyphs, glyphCount, clusters, clusterCount,
                           flags);
    cairo_glyph_free(glyphs);
    cairo_text_cluster_free(clusters);
}

}  // namespace qm
