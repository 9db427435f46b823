#include "render/cairo_painter.h"

#include <algorithm>
#include <cmath>

#include "render/cairo_picture.h"
#include "render/fill_pattern.h"
#include "render/line_look.h"
#include "render/svg_path.h"

namespace qm {

namespace {

// Cairo outlines a path as a whole, which takes more than linear time.
constexpr std::size_t kMaxStrokePoints = 100;

void SetMatrix(cairo_t* context, const PageFrame& frame, double scale) {
    cairo_matrix_t matrix;
    const Matrix& m = frame.toSheet;
    cairo_matrix_init(&matrix, m.a * scale, m.b * scale, m.c * scale, m.d * scale, m.e * scale,
                      m.f * scale);
    cairo_set_matrix(context, &matrix);
}

cairo_operator_t OperatorOf(Blend blend) {
    switch (blend) {
        case Blend::kDarken:
            return CAIRO_OPERATOR_DARKEN;
        case Blend::kLighten:
            return CAIRO_OPERATOR_LIGHTEN;
        case Blend::kDifference:
            return CAIRO_OPERATOR_DIFFERENCE;
        default:
            return CAIRO_OPERATOR_OVER;
    }
}

cairo_line_cap_t CairoCap(LineCap cap) {
    if (cap == LineCap::kRound) return CAIRO_LINE_CAP_ROUND;
    return cap == LineCap::kButt ? CAIRO_LINE_CAP_BUTT : CAIRO_LINE_CAP_SQUARE;
}

double PathLength(PointSpan points) {
    double length = 0.0;
    for (std::size_t i = 1; i < points.count; ++i) {
        length += Length(double{1} * points[i].x - points[i - 1].x,
                         double{1} * points[i].y - points[i - 1].y);
    }
    return length;
}

}  // namespace

CairoPainter::CairoPainter(cairo_t* context, const PageFrame& frame,
                           const PainterSettings& settings)
    : context_(context), settings_(settings) {
    SetMatrix(context_, frame, settings_.dotsPerUnit);
    cairo_set_fill_rule(context_, CAIRO_FILL_RULE_EVEN_ODD);
}

void CairoPainter::SetSource(std::uint32_t colour) {
    cairo_set_source_rgb(context_, (colour & 0xFF) / 255.0, (colour >> 8 & 0xFF) / 255.0,
                         (colour >> 16 & 0xFF) / 255.0);
}

bool CairoPainter::SetBlend(const DrawingStyle& style) {
    const Blend blend = BlendOfDrawMode(style.drawMode);
    cairo_set_operator(context_, OperatorOf(blend));
    return blend != Blend::kNone;
}

// ------------------------------------------------------------------------------------------ shapes

void CairoPainter::AddRing(PointSpan points, bool close) {
    cairo_new_sub_path(context_);
    for (const PointI p : points) cairo_line_to(context_, p.x, p.y);
    if (points.count == 1) cairo_line_to(context_, points[0].x, points[0].y);
    if (close) cairo_close_path(context_);
}

void CairoPainter::AddEllipse(const ArcShape& arc, double from, double to) {
    cairo_matrix_t before;
    cairo_get_matrix(context_, &before);
    cairo_new_sub_path(context_);
    cairo_translate(context_, arc.centre.x, arc.centre.y);
    // A radius of 0 would make the matrix singular.
    cairo_scale(context_, arc.radiusX == 0 ? 1e-3 : arc.radiusX,
                arc.radiusY == 0 ? 1e-3 : arc.radiusY);
    if (from <= to) {
        cairo_arc(context_, 0.0, 0.0, 1.0, from * kRadiansPerDegree, to * kRadiansPerDegree);
    } else {
        cairo_arc_negative(context_, 0.0, 0.0, 1.0, from * kRadiansPerDegree,
                           to * kRadiansPerDegree);
    }
    cairo_set_matrix(context_, &before);
}

void CairoPainter::Stroke(const DrawingStyle& style, bool dot) {
    if (settings_.checkpoint) settings_.checkpoint();
    if (!SetBlend(style)) return cairo_new_path(context_);
    SetSource(style.drawColour);
    const double hairline = settings_.hairline / settings_.dotsPerUnit;
    double width = style.lineWidth > 0 ? style.lineWidth : hairline;
    if (settings_.widenThinPens) width = std::max(width, hairline);
    cairo_set_line_width(context_, width);
    cairo_set_line_cap(context_, CairoCap(dot ? LineCap::kRound : CapOf(style.lineAttributes)));
    cairo_set_line_join(context_, JoinOf(style.lineAttributes) == LineJoin::kBevel
                                      ? CAIRO_LINE_JOIN_BEVEL
                                      : CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(context_);
}

void CairoPainter::Lines(const DrawingStyle& style, PointSpan points) {
    if (points.count == 0) return;
    const bool closed = points.count > 2 && points[0] == points[points.count - 1];
    const std::vector<double> dashes = DashesOf(style);
    double offset = 0.0;
    for (std::size_t from = 0; from == 0 || from + 1 < points.count; from += kMaxStrokePoints) {
        const std::size_t count = std::min(points.count - from, kMaxStrokePoints + 1);
        const PointSpan piece{points.data + from, count};
        AddRing(piece, closed && count == points.count);
        cairo_set_dash(context_, dashes.data(), static_cast<int>(dashes.size()), offset);
        Stroke(style, IsDot(points));
        if (!dashes.empty()) offset += PathLength(piece);
    }
    cairo_set_dash(context_, nullptr, 0, 0.0);
}

void CairoPainter::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    const PointI corners[] = {box.a, {box.b.x, box.a.y}, box.b, {box.a.x, box.b.y}, box.a};
    Polygon(style, {corners, 5}, filled);
}

void CairoPainter::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                          bool filled) {
    const ArcShape arc{centre, radius, radius, 0.0F, 360.0F};
    if (!filled) return Arc(style, arc);
    AddEllipse(arc, 0.0, 360.1);
    Fill(style);
}

void CairoPainter::Arc(const DrawingStyle& style, const ArcShape& arc) {
    const bool whole = IsWholeEllipse(arc);
    const double from = whole ? 0.0 : double{arc.start};
    // A little more than a turn: the cut factor between degrees and radians leaves a gap.
    AddEllipse(arc, from, whole ? 360.0001 : from + arc.span);
    if (whole) cairo_close_path(context_);
    const std::vector<double> dashes = DashesOf(style);
    cairo_set_dash(context_, dashes.data(), static_cast<int>(dashes.size()), 0.0);
    Stroke(style, false);
    cairo_set_dash(context_, nullptr, 0, 0.0);
}

void CairoPainter::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    if (!filled) return Lines(style, points);
    AddRing(points, true);
    Fill(style);
}

void CairoPainter::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    const PointI* ring = rings.points.data;
    for (std::size_t i = 0; i < rings.count; ++i) {
        const PointSpan points{ring, static_cast<std::size_t>(rings.lengths[i])};
        if (filled) {
            AddRing(points, true);
        } else {
            Lines(style, points);
        }
        ring += points.count;
    }
    if (filled) Fill(style);
}

// ------------------------------------------------------------------------------------------- fills

void CairoPainter::SetFillSource(const DrawingStyle& style) {
    const auto found = patterns_.find(style.fillIndex);
    if (style.fillKind != kFillKindPattern || found == patterns_.end() ||
        !IsDrawable(found->second)) {
        return SetSource(style.fillColour);
    }
    const CairoSurface tile = TileOf(found->second, style.fillColour);
    const CairoPattern source(cairo_pattern_create_for_surface(tile.get()));
    cairo_pattern_set_extend(source.get(), CAIRO_EXTEND_REPEAT);
    cairo_matrix_t matrix;
    cairo_matrix_init_scale(&matrix, 1.0 / kPatternDotUnits, -1.0 / kPatternDotUnits);
    cairo_pattern_set_matrix(source.get(), &matrix);
    cairo_set_source(context_, source.get());
}

void CairoPainter::Fill(const DrawingStyle& style) {
    if (settings_.checkpoint) settings_.checkpoint();
    if (!SetBlend(style)) return cairo_new_path(context_);
    SetFillSource(style);
    cairo_fill(context_);
}

void CairoPainter::ClipRegion(PointSpan points) {
    EndClipRegion();
    cairo_save(context_);
    AddRing(points, true);
    cairo_clip(context_);
    clipped_ = true;
}

void CairoPainter::EndClipRegion() {
    if (clipped_) cairo_restore(context_);
    clipped_ = false;
}

// ------------------------------------------------------------------------------ pictures and texts

void CairoPainter::Picture(const DrawingStyle&, const BoxI& box, std::int32_t rasterOperation,
                           ByteRun bitmap) {
    const auto view = PackedBitmapView::Parse(bitmap.data, bitmap.size);
    const Blend blend = BlendOfPicture(rasterOperation);
    const double width = std::abs(double{1} * box.b.x - box.a.x);
    const double height = std::abs(double{1} * box.b.y - box.a.y);
    if (!view || blend == Blend::kNone || width == 0.0 || height == 0.0) return;
    double limit = settings_.maxPictureSide;
    if (limit <= 0.0) limit = std::max(width, height) * settings_.dotsPerUnit;
    const ReducedPicture picture =
        ReducePicture(*view, limit, settings_.whiteIsClear && PictureIsClear(rasterOperation));
    const CairoPattern source(cairo_pattern_create_for_surface(picture.surface.get()));
    // From the drawing to the picture's dots: row 0 lies at the upper edge.
    cairo_matrix_t matrix;
    const double perX = picture.width / width;
    const double perY = picture.height / height;
    cairo_matrix_init(&matrix, perX, 0.0, 0.0, -perY, -perX * std::min(box.a.x, box.b.x),
                      perY * std::max(box.a.y, box.b.y));
    cairo_pattern_set_matrix(source.get(), &matrix);
    const bool enlarged = perX < settings_.dotsPerUnit;
    cairo_pattern_set_filter(source.get(), enlarged ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
    cairo_set_operator(context_, OperatorOf(blend));
    cairo_set_source(context_, source.get());
    cairo_rectangle(context_, std::min(box.a.x, box.b.x), std::min(box.a.y, box.b.y), width,
                    height);
    cairo_fill(context_);
}

void CairoPainter::Text(const DrawingStyle&, const BoxI& box, std::string_view text) {
    const TextPlace place = PlaceOfText(box, text);
    if (!settings_.texts || !place.shown) return;
    if (!invisible_) invisible_ = MakeInvisibleFont();
    cairo_save(context_);
    cairo_set_operator(context_, CAIRO_OPERATOR_OVER);
    cairo_set_source_rgb(context_, 1.0, 1.0, 1.0);
    const Matrix& m = place.toDrawing;
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, m.a, m.b, m.c, m.d, m.e, m.f);
    cairo_transform(context_, &matrix);
    cairo_set_font_face(context_, invisible_.get());
    cairo_set_font_size(context_, RoundedFontSize(place.fontSize));
    ShowSpread(context_, text, place.length);
    cairo_restore(context_);
    cairo_new_path(context_);
}

}  // namespace qm
