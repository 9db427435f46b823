// See vector_block_pusher.h.
#include "host/vector_block_pusher.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "common/colour.h"
#include "common/numbers.h"

namespace qm {

namespace {

using Sink = IQmSaveVectorData;

constexpr float kFullTurn = 360.0F;

VARIANT_BOOL AsBoolean(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

// LONG is another type than int32_t on Windows, of the same size.
const LONG* AsLongs(const void* integers) {
    static_assert(sizeof(LONG) == sizeof(std::int32_t) && sizeof(PointI) == 2 * sizeof(LONG));
    return static_cast<const LONG*>(integers);
}

// Whether `value` has to be sent; it then counts as sent.
template <typename Value>
bool Renew(std::optional<Value>& sent, Value value) {
    if (sent == value) return false;
    sent = value;
    return true;
}

bool HasAllBits(const FillPattern& pattern) {
    if (pattern.width <= 0 || pattern.height <= 0) return false;
    return pattern.bits.size / pattern.RowBytes() >= static_cast<std::size_t>(pattern.height);
}

}  // namespace

PointI QuarterTurn::operator()(PointI point) const {
    switch (quarters) {
        case 1:
            return {WrapSubtract(0, point.y), point.x};
        case 2:
            return {WrapSubtract(0, point.x), WrapSubtract(0, point.y)};
        case 3:
            return {point.y, WrapSubtract(0, point.x)};
        default:
            return point;
    }
}

QuarterTurn QuarterTurn::Of(double degrees) {
    for (int quarters = 1; quarters < 4; ++quarters) {
        // Plots say 0 to 270; -90 is another document's way.
        if (degrees == 90.0 * quarters || degrees == 90.0 * quarters - 360.0) return {quarters};
    }
    return {};
}

template <typename... Parameters, typename... Arguments>
void VectorBlockPusher::Push(HRESULT (STDMETHODCALLTYPE Sink::*method)(Parameters...),
                             Arguments... arguments) {
    if (SUCCEEDED(status_)) status_ = (sink_.*method)(arguments...);
}

const LONG* VectorBlockPusher::Turned(PointSpan points) {
    if (turn_.quarters == 0) return AsLongs(points.data);
    turned_.clear();
    std::transform(points.begin(), points.end(), std::back_inserter(turned_), turn_);
    return AsLongs(turned_.data());
}

void VectorBlockPusher::Select(const DrawingStyle& style, bool filled) {
    if (Renew(sent_.drawMode, LONG{style.drawMode})) Push(&Sink::AppendDrawMode, style.drawMode);
    if (Renew(sent_.layer, LONG{style.layer})) Push(&Sink::AppendLayer, style.layer);
    // In front of the pen: a sink that knows no line style yet writes type 0, which is dots only.
    if (Renew(sent_.lineStyle, LONG{style.lineStyle})) {
        Push(&Sink::AppendLineStyle, style.lineStyle);
    }
    // The colour is what selects a pen, and the width is the pen's: both follow every change of it.
    const bool newPen = Renew(sent_.pen, LONG{style.pen});
    if (newPen) Push(&Sink::AppendPen, style.pen);
    // Areas are filled with the pen's colour.
    const std::uint32_t colour = filled ? style.fillColour : style.drawColour;
    if (Renew(sent_.colour, colour) || newPen) {
        const auto [red, green, blue] = Colour::FromBgr(colour);
        Push(&Sink::AppendDrawColor1, red, green, blue);
    }
    // The sink sets the pen down where an area begins, which leaves a dot: a thin one.
    const LONG width = filled ? 0 : style.lineWidth;
    if (Renew(sent_.lineWidth, width) || newPen) Push(&Sink::AppendLineWidth, width);
    if (!filled) return;
    const bool newKind = Renew(sent_.fillKind, LONG{style.fillKind});
    if (Renew(sent_.fillIndex, LONG{style.fillIndex}) || newKind) {
        Push(&Sink::AppendFillStyle, style.fillKind, style.fillIndex);
    }
}

void VectorBlockPusher::Lines(const DrawingStyle& style, PointSpan points) {
    if (points.count != 2) return Polygon(style, points, false);
    Select(style, false);
    const PointI from = turn_(points[0]);
    const PointI to = turn_(points[1]);
    Push(&Sink::AppendLine, from.x, from.y, to.x, to.y);
}

void VectorBlockPusher::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    Select(style, filled);
    const PointI a = turn_(box.a);
    const PointI b = turn_(box.b);
    Push(&Sink::AppendRectangle, a.x, a.y, b.x, b.y, AsBoolean(filled));
}

void VectorBlockPusher::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                               bool filled) {
    Select(style, filled);
    const PointI at = turn_(centre);
    Push(&Sink::AppendCircle, at.x, at.y, radius, AsBoolean(filled));
}

// The sink makes as many points as the span has steps, so more than a turn is cut to one; a span of
// 0, which it would take for a turn, has no length to show.
void VectorBlockPusher::Arc(const DrawingStyle& style, const ArcShape& arc) {
    if (!std::isfinite(arc.start) || !std::isfinite(arc.span) || arc.span == 0.0F) return;
    Select(style, false);
    const PointI at = turn_(arc.centre);
    Push(&Sink::AppendArc3, at.x, at.y, arc.radiusX, arc.radiusY, turn_.Degrees(), arc.start,
         std::clamp(arc.span, -kFullTurn, kFullTurn));
}

void VectorBlockPusher::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    if (points.count == 0) return;
    Select(style, filled);
    Push(&Sink::AppendPolygon, static_cast<LONG>(points.count), Turned(points), AsBoolean(filled));
}

void VectorBlockPusher::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    if (rings.points.count == 0) return;
    Select(style, filled);
    Push(&Sink::AppendPolyPolygon, static_cast<LONG>(rings.count), AsLongs(rings.lengths),
         static_cast<LONG>(rings.points.count), Turned(rings.points), AsBoolean(filled));
}

void VectorBlockPusher::Picture(const DrawingStyle&, const BoxI& box, std::int32_t,
                                ByteRun packedBitmap) {
    pictures_.push_back({box, packedBitmap});
}

void VectorBlockPusher::Pattern(const FillPattern& pattern) {
    if (!HasAllBits(pattern)) return;
    Push(&Sink::DefineFillPattern, pattern.index, pattern.width, pattern.height, pattern.bits.data);
}

}  // namespace qm
