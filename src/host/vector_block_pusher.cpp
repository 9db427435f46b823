// See vector_block_pusher.h.
#include "host/vector_block_pusher.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

#include "common/colour.h"
#include "common/ellipse_points.h"
#include "common/numbers.h"
#include "common/units.h"

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

// An outline goes out in pieces of so many points.
constexpr std::size_t kMaxPath = 1 << 16;

// Plots say widths in hundredths of a millimetre, and cut them to plotter units when they are read:
// the largest width not above `units` that comes back as it was.
LONG KeptWidth(std::int32_t units) {
    LONG width = std::max(units, 0);
    for (; width > 0; --width) {
        char text[32];
        const double millimetres = width / kUnitsPerMillimetre;
        const auto end =
            std::to_chars(text, text + sizeof text, millimetres, std::chars_format::fixed, 2).ptr;
        double read = 0.0;
        std::from_chars(text, end, read);
        if (TruncateToInt32(read * kUnitsPerMillimetre) == width) break;
    }
    return width;
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

// ------------------------------------------------------------------------------------------- looks

VectorBlockPusher::Sent VectorBlockPusher::Wanted(const DrawingStyle& style, bool filled) const {
    constexpr LONG kMaskPen = 9;
    constexpr LONG kCopyPen = 13;
    Sent wanted = sent_;
    wanted.drawMode = style.drawMode == kMaskPen ? kMaskPen : kCopyPen;
    wanted.layer = style.layer;
    wanted.lineStyle = style.lineStyle;
    wanted.pen = style.pen;
    // Areas are filled with the pen's colour.
    wanted.colour = filled ? style.fillColour : style.drawColour;
    // The sink sets the pen down where an area begins, which leaves a dot: a thin one.
    wanted.lineWidth = filled ? 0 : KeptWidth(style.lineWidth);
    if (filled) {
        wanted.fillKind = style.fillKind;
        wanted.fillIndex = style.fillIndex;
    }
    return wanted;
}

bool VectorBlockPusher::Knows(const Sent& wanted) const {
    return wanted.drawMode == sent_.drawMode && wanted.layer == sent_.layer &&
           wanted.lineStyle == sent_.lineStyle && wanted.pen == sent_.pen &&
           wanted.colour == sent_.colour && wanted.lineWidth == sent_.lineWidth &&
           wanted.fillKind == sent_.fillKind && wanted.fillIndex == sent_.fillIndex;
}

void VectorBlockPusher::Select(const Sent& wanted) {
    if (wanted.drawMode != sent_.drawMode) Push(&Sink::AppendDrawMode, *wanted.drawMode);
    if (wanted.layer != sent_.layer) Push(&Sink::AppendLayer, *wanted.layer);
    // In front of the pen: a sink that knows no line style yet writes type 0, which is dots only.
    if (wanted.lineStyle != sent_.lineStyle) Push(&Sink::AppendLineStyle, *wanted.lineStyle);
    // The colour is what selects a pen, and the width is the pen's: both follow every change of it.
    const bool newPen = wanted.pen != sent_.pen;
    if (newPen) Push(&Sink::AppendPen, *wanted.pen);
    if (newPen || wanted.colour != sent_.colour) {
        const auto [red, green, blue] = Colour::FromBgr(*wanted.colour);
        Push(&Sink::AppendDrawColor1, red, green, blue);
    }
    if (newPen || wanted.lineWidth != sent_.lineWidth) {
        Push(&Sink::AppendLineWidth, *wanted.lineWidth);
    }
    if (wanted.fillKind != sent_.fillKind || wanted.fillIndex != sent_.fillIndex) {
        Push(&Sink::AppendFillStyle, *wanted.fillKind, *wanted.fillIndex);
    }
    sent_ = wanted;
}

// ---------------------------------------------------------------------------------------- outlines

void VectorBlockPusher::BeginOutline(const DrawingStyle& style) {
    const Sent wanted = Wanted(style, false);
    if (!Knows(wanted)) {
        FlushPath();
        Select(wanted);
    }
    begins_ = true;
}

void VectorBlockPusher::AddPoint(PointI point) {
    const bool begins = std::exchange(begins_, false);
    if (!path_.empty() && point == path_.back()) return;
    if (begins) FlushPath();
    path_.push_back(point);
    if (path_.size() < kMaxPath) return;
    SendPath();
    path_.assign(1, point);
    pathGoesOn_ = true;
}

void VectorBlockPusher::SendPath() {
    if (path_.size() > 2) {
        return Push(&Sink::AppendPolygon, static_cast<LONG>(path_.size()), AsLongs(path_.data()),
                    VARIANT_BOOL{VARIANT_FALSE});
    }
    const PointI from = path_.front();
    const PointI to = path_.back();
    Push(&Sink::AppendLine, from.x, from.y, to.x, to.y);
}

void VectorBlockPusher::FlushPath() {
    if (path_.size() > (pathGoesOn_ ? 1U : 0U)) SendPath();
    path_.clear();
    pathGoesOn_ = false;
}

void VectorBlockPusher::Lines(const DrawingStyle& style, PointSpan points) {
    if (points.count == 0) return;
    BeginOutline(style);
    for (const PointI point : points) AddPoint(turn_(point));
}

void VectorBlockPusher::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    // Round the turned box in the direction that a sink takes.
    const PointI a = turn_(box.a);
    const PointI b = turn_(box.b);
    const QuarterTurn back{(4 - turn_.quarters) % 4};
    const PointI corners[] = {back(a), back({b.x, a.y}), back(b), back({a.x, b.y}), back(a)};
    Polygon(style, {corners, std::size(corners)}, filled);
}

void VectorBlockPusher::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                               bool filled) {
    FlushPath();
    Select(Wanted(style, filled));
    const PointI at = turn_(centre);
    Push(&Sink::AppendCircle, at.x, at.y, radius, AsBoolean(filled));
}

// As many points as the span has steps, so more than a turn is cut to one; a span of 0, which would
// be taken for a turn, has no length to show.
void VectorBlockPusher::Arc(const DrawingStyle& style, const ArcShape& arc) {
    if (!std::isfinite(arc.start) || !std::isfinite(arc.span) || arc.span == 0.0F) return;
    BeginOutline(style);
    const PointI at = turn_(arc.centre);
    const EllipseArc ellipse{double{1} * at.x,
                             double{1} * at.y,
                             double{1} * arc.radiusX,
                             double{1} * arc.radiusY,
                             turn_.Degrees(),
                             arc.start,
                             std::clamp(arc.span, -kFullTurn, kFullTurn)};
    for (const PointD& point : EllipsePoints(ellipse)) {
        AddPoint({RoundToInt32(point.x), RoundToInt32(point.y)});
    }
}

// ------------------------------------------------------------------------------------------- areas

void VectorBlockPusher::AddRing(PointSpan points) {
    const std::size_t before = area_.size();
    for (const PointI point : points) {
        const PointI turned = turn_(point);
        if (area_.size() == before || !(turned == area_.back())) area_.push_back(turned);
    }
    while (area_.size() > before + 1 && area_.back() == area_[before]) area_.pop_back();
    if (area_.size() < before + 3) {
        area_.resize(before);
    } else {
        rings_.push_back(static_cast<LONG>(area_.size() - before));
    }
}

void VectorBlockPusher::SendArea(const DrawingStyle& style) {
    if (rings_.empty()) return;
    Sent wanted = Wanted(style, true);
    // The dot that the sink leaves where an area begins has that area's look.
    const bool isDotOfArea = path_.size() == 1 && !pathGoesOn_ && path_[0] == area_[0] &&
                             wanted.colour == sent_.colour && wanted.lineWidth == sent_.lineWidth;
    if (isDotOfArea) path_.clear();
    FlushPath();
    Select(wanted);
    if (rings_.size() == 1) {
        Push(&Sink::AppendPolygon, rings_[0], AsLongs(area_.data()), VARIANT_BOOL{VARIANT_TRUE});
    } else {
        Push(&Sink::AppendPolyPolygon, static_cast<LONG>(rings_.size()),
             static_cast<const LONG*>(rings_.data()), static_cast<LONG>(area_.size()),
             AsLongs(area_.data()), VARIANT_BOOL{VARIANT_TRUE});
    }
    area_.clear();
    rings_.clear();
}

void VectorBlockPusher::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    if (!filled) return Lines(style, points);
    AddRing(points);
    SendArea(style);
}

void VectorBlockPusher::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    const PointI* ring = rings.points.data;
    for (std::size_t i = 0; i < rings.count; ++i) {
        const PointSpan points{ring, static_cast<std::size_t>(rings.lengths[i])};
        if (filled) {
            AddRing(points);
        } else {
            Lines(style, points);
        }
        ring += points.count;
    }
    if (filled) SendArea(style);
}

void VectorBlockPusher::Picture(const DrawingStyle&, const BoxI& box, std::int32_t,
                                ByteRun packedBitmap) {
    pictures_.push_back({box, packedBitmap});
}

void VectorBlockPusher::Pattern(const FillPattern& pattern) {
    if (!HasAllBits(pattern)) return;
    FlushPath();
    Push(&Sink::DefineFillPattern, pattern.index, pattern.width, pattern.height, pattern.bits.data);
}

}  // namespace qm
