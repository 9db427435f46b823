#include "render/viewer/page_encoder.h"

#include <algorithm>

#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "render/fill_pattern.h"
#include "render/line_look.h"
#include "render/svg_path.h"

namespace qm {

namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 18;
constexpr std::size_t kMostCountsInKind =
    255 - static_cast<std::size_t>(ViewerRecord::kLinesOfCount0);

bool SameStyle(const DrawingStyle& a, const DrawingStyle& b) {
    return a.layer == b.layer && a.drawColour == b.drawColour && a.fillColour == b.fillColour &&
           a.lineWidth == b.lineWidth && a.lineStyle == b.lineStyle && a.dash == b.dash &&
           a.dashCount == b.dashCount && a.lineAttributes == b.lineAttributes &&
           a.drawMode == b.drawMode && a.fillKind == b.fillKind && a.fillIndex == b.fillIndex;
}

void AddColour(Column& column, std::uint32_t colour) {
    column.Byte(static_cast<std::uint8_t>(colour & 0xFF));
    column.Byte(static_cast<std::uint8_t>(colour >> 8 & 0xFF));
    column.Byte(static_cast<std::uint8_t>(colour >> 16 & 0xFF));
}

}  // namespace

bool IsShownPicture(std::int32_t rasterOperation, ByteRun bitmap) {
    return BlendOfPicture(rasterOperation) != Blend::kNone &&
           PackedBitmapView::Parse(bitmap.data, bitmap.size).has_value();
}

// Layer, colours of lines and areas (red, green, blue), width, line ends, joins, blend, pattern
// (number + 1, 0 solid), count of dash lengths and the lengths as floats.
void PageEncoder::WriteStyle(const DrawingStyle& style) {
    styleChanged_ = false;
    const Blend blend = BlendOfDrawMode(style.drawMode);
    lastDraws_ = blend != Blend::kNone;
    lastStyle_ = style;
    Column definition;
    definition.Signed(style.layer);
    AddColour(definition, style.drawColour);
    AddColour(definition, style.fillColour);
    definition.Unsigned(static_cast<std::uint64_t>(std::max(style.lineWidth, 0)));
    definition.Byte(static_cast<std::uint8_t>(CapOf(style.lineAttributes)));
    definition.Byte(static_cast<std::uint8_t>(JoinOf(style.lineAttributes)));
    definition.Byte(static_cast<std::uint8_t>(blend));
    const auto pattern =
        style.fillKind == kFillKindPattern ? patterns_.find(style.fillIndex) : patterns_.end();
    definition.Unsigned(pattern == patterns_.end() ? 0 : pattern->second);
    const std::vector<double> dashes = DashesOf(style);
    definition.Unsigned(dashes.size());
    for (const double length : dashes) definition.Float(static_cast<float>(length));

    const auto [known, isNew] = styles_.emplace(definition.View(), styles_.size());
    WriteKind(ViewerRecord::kStyle);
    records_.Unsigned(known->second);
    if (isNew) records_.Bytes(definition.View());
}

bool PageEncoder::Begin(const DrawingStyle& style, ViewerRecord kind) {
    // Plots send a pen's attributes again and again without changing them.
    if (styleChanged_ && (styles_.empty() || !SameStyle(style, lastStyle_))) WriteStyle(style);
    styleChanged_ = false;
    if (lastDraws_) WriteKind(kind);
    return lastDraws_;
}

void PageEncoder::WritePoint(PointI point) {
    x_.Signed(WrapSubtract(point.x, at_.x));
    y_.Signed(WrapSubtract(point.y, at_.y));
    at_ = point;
}

void PageEncoder::WriteBox(const BoxI& box) {
    WritePoint(box.a);
    WritePoint(box.b);
}

void PageEncoder::EndRecord() {
    if (records_.Size() + x_.Size() + y_.Size() + bytes_.Size() >= kBlockBytes) WriteBlock();
}

void PageEncoder::WriteBlock() {
    Column lengths;
    for (const Column* column : {&records_, &x_, &y_, &bytes_}) lengths.Unsigned(column->Size());
    sink_.Write(lengths.View());
    for (Column* column : {&records_, &x_, &y_, &bytes_}) {
        sink_.Write(column->View());
        column->Clear();
    }
    at_ = {};
}

void PageEncoder::Finish() {
    if (records_.Size() > 0) WriteBlock();
}

void PageEncoder::Progress(int percent) {
    if (progress) progress(percent);
}

// ------------------------------------------------------------------------------------------ shapes

void PageEncoder::Lines(const DrawingStyle& style, PointSpan points) {
    if (points.count == 0) return;
    const bool few = points.count <= kMostCountsInKind;
    const std::size_t kind = static_cast<std::size_t>(ViewerRecord::kLinesOfCount0) + points.count;
    if (!Begin(style, few ? static_cast<ViewerRecord>(kind) : ViewerRecord::kLines)) return;
    if (!few) records_.Unsigned(points.count);
    for (const PointI point : points) WritePoint(point);
    EndRecord();
}

void PageEncoder::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    const PointI corners[] = {box.a, {box.b.x, box.a.y}, box.b, {box.a.x, box.b.y}, box.a};
    Polygon(style, {corners, filled ? std::size_t{4} : std::size_t{5}}, filled);
}

void PageEncoder::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                         bool filled) {
    if (!Begin(style, filled ? ViewerRecord::kDisc : ViewerRecord::kCircle)) return;
    records_.Unsigned(static_cast<std::uint64_t>(std::abs(std::int64_t{radius})));
    WritePoint(centre);
    EndRecord();
}

void PageEncoder::Arc(const DrawingStyle& style, const ArcShape& arc) {
    if (!Begin(style, ViewerRecord::kArc)) return;
    const bool whole = IsWholeEllipse(arc);
    WritePoint(arc.centre);
    WritePoint({arc.radiusX, arc.radiusY});
    bytes_.Float(whole ? 0.0F : arc.start);
    bytes_.Float(whole ? 360.0F : arc.span);
    EndRecord();
}

void PageEncoder::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    const auto length = static_cast<std::int32_t>(points.count);
    PolyPolygon(style, {&length, 1, points}, filled);
}

void PageEncoder::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    const PointI* ring = rings.points.data;
    if (!filled) {
        for (std::size_t i = 0; i < rings.count; ++i) {
            const auto count = static_cast<std::size_t>(rings.lengths[i]);
            Lines(style, {ring, count});
            ring += count;
        }
        return;
    }
    if (rings.points.count == 0 || !Begin(style, ViewerRecord::kArea)) return;
    records_.Unsigned(rings.count);
    for (std::size_t i = 0; i < rings.count; ++i) {
        records_.Unsigned(static_cast<std::uint64_t>(rings.lengths[i]));
    }
    for (const PointI point : rings.points) WritePoint(point);
    EndRecord();
}

void PageEncoder::Text(const DrawingStyle& style, const BoxI& box, std::string_view text) {
    // Searched by layer only, so the style's blend does not matter.
    Begin(style, ViewerRecord::kText);
    if (!lastDraws_) WriteKind(ViewerRecord::kText);
    records_.Unsigned(text.size());
    WriteBox(box);
    bytes_.Bytes(text);
    EndRecord();
}

void PageEncoder::Picture(const DrawingStyle& style, const BoxI& box, std::int32_t rasterOperation,
                          ByteRun bitmap) {
    if (!IsShownPicture(rasterOperation, bitmap)) return;
    Begin(style, ViewerRecord::kPicture);
    if (!lastDraws_) WriteKind(ViewerRecord::kPicture);
    records_.Byte(static_cast<std::uint8_t>(BlendOfPicture(rasterOperation)));
    WriteBox(box);
    EndRecord();
}

void PageEncoder::Pattern(const FillPattern& pattern) {
    styleChanged_ = true;
    lastStyle_.fillIndex = ~pattern.index;  // the same style is another one now
    if (!IsDrawable(pattern)) {
        patterns_.erase(pattern.index);
        return;
    }
    patterns_[pattern.index] = ++patternCount_;
    WriteKind(ViewerRecord::kPattern);
    records_.Unsigned(static_cast<std::uint64_t>(pattern.width));
    records_.Unsigned(static_cast<std::uint64_t>(pattern.height));
    const std::size_t stride = static_cast<std::size_t>(pattern.width + 15) / 16 * 2;
    bytes_.Bytes({reinterpret_cast<const char*>(pattern.bits.data),
                  stride * static_cast<std::size_t>(pattern.height)});
    EndRecord();
}

void PageEncoder::ClipRegion(PointSpan points) {
    if (points.count == 0) return;
    BoxI box{points[0], points[0]};
    for (const PointI point : points) {
        box.a = {std::min(box.a.x, point.x), std::min(box.a.y, point.y)};
        box.b = {std::max(box.b.x, point.x), std::max(box.b.y, point.y)};
    }
    WriteKind(ViewerRecord::kClip);
    WriteBox(box);
    EndRecord();
}

void PageEncoder::EndClipRegion() {
    WriteKind(ViewerRecord::kEndClip);
    EndRecord();
}

}  // namespace qm
