#include "render/bitmap/page_work.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "host/display_list_player.h"
#include "render/fill_pattern.h"
#include "render/line_look.h"

namespace qm::bitmap {

namespace {

// What parts of the work take, in units; measured.
constexpr double kPoint = 40.0;
constexpr double kPointInBand = 25.0;  // of polygons and arcs, which each band takes up anew
constexpr double kThinDot = 25.0;      // of a line's length
constexpr double kRowOfThick = 80.0;
constexpr double kThickDot = 1.0;
constexpr double kOutlined = 5.0;  // times as much for lines that are drawn as areas
constexpr double kDash = 100.0;
constexpr double kBandDotBytes = 8.0;
constexpr double kBandBytes = 16777216.0;
constexpr double kEdgeDot = 40.0;
constexpr double kAreaDot = 1.3;
constexpr double kBlendedDot = 5.0;
constexpr double kPatternDot = 120.0;
constexpr double kPictureDot = 15.0;
constexpr double kSourceDot = 4.0;
constexpr std::int32_t kCopyPen = 13;
constexpr std::size_t kChainPiece = 64;  // lines of a chain that are left out together

double Distance(PointI a, PointI b) {
    return std::abs(double{1} * b.x - a.x) + std::abs(double{1} * b.y - a.y);
}

double PathLength(PointSpan points) {
    double length = 0.0;
    for (std::size_t i = 1; i < points.count; ++i) length += Distance(points[i - 1], points[i]);
    return length;
}

// No less than what an even-odd fill of the ring covers: the triangles with its first point, or its
// box.
double CoveredArea(PointSpan ring) {
    if (ring.count < 3) return 0.0;
    double twice = 0.0;
    Extent box;
    const PointI first = ring[0];
    for (std::size_t i = 1; i < ring.count; ++i) {
        const PointI a = ring[i - 1];
        const PointI b = ring[i];
        box.Add(b.x, b.y);
        twice += std::abs((double{1} * a.x - first.x) * (double{1} * b.y - first.y) -
                          (double{1} * b.x - first.x) * (double{1} * a.y - first.y));
    }
    box.Add(first.x, first.y);
    return std::min(twice / 2.0, box.Width() * box.Height());
}

// Spends the allowance primitive by primitive; with a list, what is affordable goes there.
class Meter final : public DisplayListVisitor {
  public:
    Meter(const PageRaster& raster, double bytes, DisplayList* list)
        : scale_(raster.dotsPerUnit),
          hairline_(raster.hairline),
          bands_(std::max(1.0, kBandDotBytes * raster.width * raster.height / kBandBytes)),
          units_(kUnits + kUnitsPerDot * raster.width * raster.height +
                 kUnitsPerByteAndDot * bytes * (double{1} * raster.width + raster.height)),
          dashes_(kDashes + kDashesPerByte * bytes),
          list_(list) {}

    bool LeavesOut() const { return leavesOut_; }
    bool DrawsSolid() const { return drawsSolid_; }

    void Lines(const DrawingStyle& style, PointSpan points) override {
        Stroke(style, points, false);
    }
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override {
        if (!filled) return Stroke(style, points, true);
        PutArea(AreaUnits(style, CoveredArea(points), PathLength(points), points.count),
                [&] { list_->AppendPolygon(points, true); });
    }
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override {
        double area = 0.0;
        const PointI* ring = rings.points.data;
        for (std::size_t i = 0; i < rings.count; ++i) {
            const PointSpan points{ring, static_cast<std::size_t>(rings.lengths[i])};
            area += CoveredArea(points);
            ring += points.count;
        }
        const double length = PathLength(rings.points);
        const std::size_t count = rings.points.count;
        const auto append = [&] { list_->AppendPolyPolygon(rings, filled); };
        if (!filled) return PutLine(style, length, count, append);
        PutArea(AreaUnits(style, area, length, count), append);
    }
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override {
        const double width = std::abs(double{1} * box.b.x - box.a.x);
        const double height = std::abs(double{1} * box.b.y - box.a.y);
        const auto append = [&] { list_->AppendRectangle(box, filled); };
        if (!filled) return PutLine(style, 2.0 * (width + height), 4, append);
        PutArea(AreaUnits(style, width * height, 0.0, 4), append);
    }
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override {
        const double length = kTwoPi * std::abs(double{1} * radius);
        const double area = length / 2.0 * std::abs(double{1} * radius);
        const auto append = [&] { list_->AppendCircle(centre, radius, filled); };
        if (!filled) return PutLine(style, length, CornersOf(length), append, true);
        PutArea(AreaUnits(style, area, length, CornersOf(length)), append);
    }
    void Arc(const DrawingStyle& style, const ArcShape& arc) override {
        const double span = IsWholeEllipse(arc) ? 360.0 : std::abs(double{arc.span});
        const double length =
            span * kRadiansPerDegree *
            std::max(std::abs(double{1} * arc.radiusX), std::abs(double{1} * arc.radiusY));
        PutLine(
            style, length, CornersOf(length), [&] { list_->AppendArc(arc); }, true);
    }
    void Picture(const DrawingStyle&, const BoxI& box, std::int32_t rasterOperation,
                 ByteRun bitmap) override {
        const auto view = PackedBitmapView::Parse(bitmap.data, bitmap.size);
        const double source = view ? double{1} * view->Width() * view->Height() : 0.0;
        const double dots = std::abs((double{1} * box.b.x - box.a.x) * scale_) *
                            std::abs((double{1} * box.b.y - box.a.y) * scale_);
        PutArea(kPictureDot * dots + kSourceDot * source,
                [&] { list_->AppendPicture(box, rasterOperation, bitmap); });
    }
    void Pattern(const FillPattern& pattern) override {
        if (list_ != nullptr) list_->DefineFillPattern(pattern);
    }
    void ClipRegion(PointSpan points) override {
        if (list_ != nullptr) list_->AppendClipRegion(points);
    }
    void EndClipRegion() override {
        if (list_ != nullptr) list_->EndClipRegion();
    }
    void StyleChange(const DrawingStyle& style, RecordKind kind) override {
        if (list_ != nullptr) AppendStyle(style, kind);
    }

  private:
    bool Affords(double units) {
        if (units <= units_) {
            units_ -= units;
            return true;
        }
        if (units <= kCheapUnits) return true;
        leavesOut_ = true;
        return false;
    }

    // Of the polygon that an arc is drawn as.
    std::size_t CornersOf(double length) const {
        return static_cast<std::size_t>(4.0 + 6.3 * std::sqrt(std::min(length * scale_, 1e8)));
    }
    // Lengths and areas in the drawing's units.
    double LineUnits(const DrawingStyle& style, double length, std::size_t points,
                     double corners = 0.0) const {
        const double dots = length * scale_;
        const double width = style.lineWidth > 0 ? style.lineWidth * scale_ : hairline_;
        double units = kPoint * static_cast<double>(points);
        if (width <= 2.0) {
            units += kThinDot * dots;
        } else {
            units += (kRowOfThick + kThickDot * width) * dots +
                     (kRowOfThick + width) * width * static_cast<double>(points);
        }
        const bool isPlain = CapOf(style.lineAttributes) == LineCap::kRound &&
                             style.drawMode == kCopyPen && style.dashCount == 0 &&
                             style.lineStyle == 0;
        return (isPlain ? units : kOutlined * units) + kPointInBand * bands_ * corners;
    }
    double AreaUnits(const DrawingStyle& style, double area, double length,
                     std::size_t points) const {
        double perDot = style.drawMode == kCopyPen ? kAreaDot : kBlendedDot;
        if (style.fillKind == kFillKindPattern) perDot = kPatternDot;
        return (kPoint + kPointInBand * bands_) * static_cast<double>(points) +
               perDot * area * scale_ * scale_ + kEdgeDot * length * scale_;
    }

    // Whether a line of that length is drawn in dashes.
    bool AffordsDashes(const DrawingStyle& style, double length) {
        if (style.dashCount == 0 && style.lineStyle == 0) return true;
        const std::vector<double> pattern = DashesOf(style);
        double period = 0.0;
        for (const double part : pattern) period += part;
        if (pattern.empty() || period <= 0.0) return true;
        const double width =
            std::max(1.0, style.lineWidth > 0 ? style.lineWidth * scale_ : hairline_);
        const double count = length / period * static_cast<double>(pattern.size()) / 2.0;
        const double units = kDash + width * width;
        const double dashes = count * units / kDash;
        if (dashes > dashes_) {
            drawsSolid_ = true;
            return false;
        }
        dashes_ -= dashes;
        return true;
    }

    template <typename Append>
    void PutArea(double units, const Append& append) {
        if (Affords(units) && list_ != nullptr) append();
    }
    template <typename Append>
    void PutLine(DrawingStyle style, double length, std::size_t points, const Append& append,
                 bool isArc = false) {
        const DrawingStyle asked = style;
        const bool dashed = AffordsDashes(style, length);
        if (!dashed) style.dashCount = 0;
        if (!dashed) style.lineStyle = 0;
        const double corners = isArc ? static_cast<double>(points) : 0.0;
        if (!Affords(LineUnits(style, length, points, corners)) || list_ == nullptr) return;
        if (!dashed) list_->AppendValue(RecordKind::kLineStyle, 0);
        append();
        if (!dashed) AppendLineStyle(asked);
    }
    void Stroke(const DrawingStyle& style, PointSpan points, bool polygon) {
        const auto put = [&](PointSpan part) {
            PutLine(style, PathLength(part), part.count, [&] {
                if (polygon) return list_->AppendPolygon(part, false);
                for (std::size_t i = 1; i < part.count; ++i) {
                    list_->AppendLine(part[i - 1], part[i]);
                }
            });
        };
        const double units = LineUnits(style, PathLength(points), points.count);
        if (units <= units_ || points.count <= kChainPiece) return put(points);
        for (std::size_t from = 0; from + 1 < points.count; from += kChainPiece) {
            put({points.data + from, std::min(kChainPiece + 1, points.count - from)});
        }
    }

    void AppendLineStyle(const DrawingStyle& style) {
        if (style.dashCount == 0)
            return list_->AppendValue(RecordKind::kLineStyle, style.lineStyle);
        list_->AppendLineDash(style.dash, style.dashCount);
    }
    void AppendStyle(const DrawingStyle& style, RecordKind kind) {
        switch (kind) {
            case RecordKind::kDrawColour:
                return list_->AppendColour(kind, style.drawColour);
            case RecordKind::kFillColour:
                return list_->AppendColour(kind, style.fillColour);
            case RecordKind::kLineWidth:
                return list_->AppendValue(kind, style.lineWidth);
            case RecordKind::kLineAttributes:
                return list_->AppendValue(kind, style.lineAttributes);
            case RecordKind::kDrawMode:
                return list_->AppendValue(kind, style.drawMode);
            case RecordKind::kFillStyle:
                return list_->AppendFillStyle(style.fillKind, style.fillIndex);
            case RecordKind::kLineStyle:
            case RecordKind::kLineDash:
                return AppendLineStyle(style);
            default:
                return;  // pens and layers do not show
        }
    }

    double scale_;     // dots of a unit
    double hairline_;  // dots
    double bands_;
    double units_;
    double dashes_;
    DisplayList* list_;
    bool leavesOut_ = false;
    bool drawsSolid_ = false;
};

}  // namespace

std::optional<DisplayList> AffordablePart(const PageSource& page, const PageOptions& options,
                                          const PageRaster& raster) {
    if (page.sourceBytes == 0) return std::nullopt;
    const auto bytes = static_cast<double>(page.sourceBytes);
    Meter meter(raster, bytes, nullptr);
    Play(*page.drawing, meter);
    if (!meter.LeavesOut() && !meter.DrawsSolid()) return std::nullopt;
    if (options.note) {
        const std::string name = page.name.empty() ? "the page" : page.name;
        options.note(name + " asks for too much for its size at this resolution; " +
                     (meter.LeavesOut() ? "not all of it is drawn" : "some dashes are not drawn"));
    }
    DisplayList list;
    Meter filler(raster, bytes, &list);
    Play(*page.drawing, filler);
    return list;
}

}  // namespace qm::bitmap
