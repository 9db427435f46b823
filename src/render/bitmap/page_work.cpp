#include "render/bitmap/page_work.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "host/display_list_player.h"
#include "render/bitmap/blending.h"
#include "render/fill_pattern.h"
#include "render/line_look.h"

namespace qm::bitmap {

namespace {

// What parts of the work take, in units; measured (docs/limits.md).
// clang-format off
constexpr double kPageDot      =   1.0;  // that is written, drawn on or not
constexpr double kLine         = 200.0;  // a chain
constexpr double kPoint        = 400.0;  // of a chain
constexpr double kThinDot      =  20.0;  // of a line's length
constexpr double kRowOfThick   =  65.0;  // the same, and for each dot of its width
constexpr double kThickDot     =   0.4;
constexpr double kRowOfEnd     = 120.0;  // of a thick line's point, for each dot of its width
constexpr double kEndDot       =   0.2;
constexpr double kOutlined     =   1.5;  // times as much for lines that are drawn as areas
constexpr double kOutlinedDot  = 150.0;  // and for each dot of their length
constexpr double kDash         = 400.0;
constexpr double kDashRow      = 150.0;  // for each dot of its width
constexpr double kArcCorner    =  90.0;  // in each band
constexpr double kArea         = 500.0;
constexpr double kCorner       = 400.0;  // of an area
constexpr double kCornerInBand =  25.0;
constexpr double kAreaRow      = 300.0;
constexpr double kEdgeDot      =  35.0;
constexpr double kAreaDot      =   0.8;
constexpr double kBlendedDot   =   4.0;
constexpr double kPatternDot   = 190.0;
constexpr double kPictureDot   =  16.0;
constexpr double kSourceDot    =   0.2;  // and for each of its bits
constexpr double kSourceBit    =   0.2;
constexpr double kNotOutlined  =   1.5;  // dots of width: no one sees the shape of such lines' ends
// clang-format on
constexpr std::size_t kChainPiece = 64;  // lines of a chain that are left out together

double Distance(PointI a, PointI b) {
    return std::abs(double{1} * b.x - a.x) + std::abs(double{1} * b.y - a.y);
}

double PathLength(PointSpan points) {
    double length = 0.0;
    for (std::size_t i = 1; i < points.count; ++i) length += Distance(points[i - 1], points[i]);
    return length;
}

double LengthOf(const Strokes& strokes) {
    double length = 0.0;
    const PointI* run = strokes.points;
    for (std::size_t i = 0; i < strokes.runs; ++i) {
        length += PathLength({run, strokes.lengths[i]});
        run += strokes.lengths[i];
    }
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
    // Of the plot's work, `part` is left for the page and those that follow.
    Meter(const PageRaster& raster, std::int32_t bandRows, const PageOptions& options, double bytes,
          double part, DisplayList* list)
        : scale_(raster.dotsPerUnit),
          hairline_(raster.hairline),
          smooth_(options.smooth),
          bandRows_(bandRows),
          bands_(std::ceil(double{1} * raster.height / bandRows)),
          upright_(raster.frame.toSheet.b == 0.0),
          ofPlot_(WorkOfPlot(options.dpi, bytes)),
          units_(std::max(0.0, part * ofPlot_ - kPageDot * raster.width * raster.height)),
          dashUnits_(kPartOfDashes * units_),
          cheapUnits_(kCheapUnitsPerByte * part * bytes),
          list_(list) {}

    // What is left for the pages that follow.
    double PartLeft() const { return units_ / ofPlot_; }
    bool LeavesOut() const { return leavesOut_; }
    bool DrawsSolid() const { return drawsSolid_; }

    void Lines(const DrawingStyle& style, PointSpan points) override {
        Stroke(style, points, false);
    }
    // As Lines of its runs as long as all of them are affordable.
    bool Letter(const DrawingStyle& style, const LetterRecord& letter) override {
        if (list_ != nullptr || style.dashCount != 0 || style.lineStyle != 0) return false;
        if (letter.number >= lengths_.size()) lengths_.resize(letter.number + std::size_t{1}, -1.0);
        double& length = lengths_[letter.number];
        if (length < 0.0) length = LengthOf(letter.shape);
        const double units = LineUnits(style, length, letter.shape.count);
        if (units > units_) return false;
        units_ -= units;
        return true;
    }
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override {
        if (!filled) return Stroke(style, points, true);
        PutArea(AreaUnits(style, {CoveredArea(points), PathLength(points), RowsOf(points)},
                          points.count),
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
        PutArea(AreaUnits(style, {area, length, RowsOf(rings.points)}, count), append);
    }
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override {
        const double width = std::abs(double{1} * box.b.x - box.a.x);
        const double height = std::abs(double{1} * box.b.y - box.a.y);
        const auto append = [&] { list_->AppendRectangle(box, filled); };
        if (!filled) return PutLine(style, 2.0 * (width + height), 4, append);
        const double rows = (upright_ ? height : width) * scale_;
        PutArea(AreaUnits(style, {width * height, 0.0, rows}, 4), append);
    }
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override {
        const double size = std::abs(double{1} * radius);
        const double length = kTwoPi * size;
        const double rows = 2.0 * size * scale_;
        const auto append = [&] { list_->AppendCircle(centre, radius, filled); };
        const std::size_t corners = CornersOf(size, length);
        const double arcUnits = ArcUnits(corners, rows);
        if (!filled) return PutLine(style, length, corners, append, arcUnits);
        const Reach reach{length / 2.0 * size, length, rows};
        PutArea(AreaUnits(style, reach, corners) + arcUnits, append);
    }
    void Arc(const DrawingStyle& style, const ArcShape& arc) override {
        const double span = IsWholeEllipse(arc) ? 360.0 : std::abs(double{arc.span});
        const double size =
            std::max(std::abs(double{1} * arc.radiusX), std::abs(double{1} * arc.radiusY));
        const double length = span * kRadiansPerDegree * size;
        const std::size_t corners = CornersOf(size, length);
        PutLine(
            style, length, corners, [&] { list_->AppendArc(arc); },
            ArcUnits(corners, 2.0 * size * scale_));
    }
    void Picture(const DrawingStyle&, const BoxI& box, std::int32_t rasterOperation,
                 ByteRun bitmap) override {
        const auto view = PackedBitmapView::Parse(bitmap.data, bitmap.size);
        const double source = view ? double{1} * view->Width() * view->Height() *
                                         (kSourceDot + kSourceBit * view->Bits())
                                   : 0.0;
        const double dots = std::abs((double{1} * box.b.x - box.a.x) * scale_) *
                            std::abs((double{1} * box.b.y - box.a.y) * scale_);
        PutArea(kPictureDot * dots + source,
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
    // Of an area: in the drawing's units, but the rows of dots.
    struct Reach {
        double area;
        double length;
        double rows;
    };

    static double WorkOfPlot(double dpi, double bytes) {
        const double scale = std::max(1.0, dpi / 100.0);
        return kUnits * scale * scale + kUnitsPerByte * bytes * scale;
    }

    bool Affords(double units) {
        if (units <= units_) {
            units_ -= units;
            return true;
        }
        if (units <= kCheapUnits && units <= cheapUnits_) {
            cheapUnits_ -= units;
            return true;
        }
        leavesOut_ = true;
        return false;
    }

    double BandsOf(double rows) const { return std::min(bands_, 1.0 + rows / bandRows_); }
    double RowsOf(PointSpan points) const {
        Extent box;
        for (std::size_t i = 0; i < points.count; ++i) box.Add(points[i].x, points[i].y);
        return points.count == 0 ? 0.0 : (upright_ ? box.Height() : box.Width()) * scale_;
    }
    // Of the polygon that an arc of that radius and length is drawn as.
    std::size_t CornersOf(double radius, double length) const {
        const double side = 0.4 * std::sqrt(std::clamp(radius * scale_, 0.25, 1e8));
        return static_cast<std::size_t>(4.0 + std::min(length * scale_ / side, 2e4));
    }
    double ArcUnits(std::size_t corners, double rows) const {
        return kArcCorner * static_cast<double>(corners) * BandsOf(rows);
    }
    // Dots of the line's width, at least 1.
    double WidthOf(const DrawingStyle& style) const {
        return std::max(1.0, style.lineWidth > 0 ? style.lineWidth * scale_ : hairline_);
    }
    double LineUnits(const DrawingStyle& style, double length, std::size_t points) const {
        const double dots = length * scale_;
        const double width = WidthOf(style);
        double ofPoint = kPoint;
        double ofDot = kThinDot;
        if (width > 2.0) {
            ofPoint += (kRowOfEnd + kEndDot * width) * width;
            ofDot = kRowOfThick + kThickDot * width;
        }
        const double units = kLine + ofPoint * static_cast<double>(points) + ofDot * dots;
        const bool isPlain =
            OperationOfDrawMode(style.drawMode) == kCopyPen &&
            (CapOf(style.lineAttributes) == LineCap::kRound || (smooth_ && width <= kNotOutlined));
        return isPlain ? units : kOutlined * units + kOutlinedDot * dots;
    }
    double AreaUnits(const DrawingStyle& style, const Reach& reach, std::size_t points) const {
        double perDot = OperationOfDrawMode(style.drawMode) == kCopyPen ? kAreaDot : kBlendedDot;
        if (style.fillKind == kFillKindPattern) perDot = kPatternDot;
        return kArea + kAreaRow * reach.rows +
               (kCorner + kCornerInBand * BandsOf(reach.rows)) * static_cast<double>(points) +
               perDot * reach.area * scale_ * scale_ + kEdgeDot * reach.length * scale_;
    }

    // Whether a line of that length is drawn in dashes.
    bool AffordsDashes(const DrawingStyle& style, double length) {
        if (style.dashCount == 0 && style.lineStyle == 0) return true;
        const std::vector<double> pattern = DashesOf(style);
        double period = 0.0;
        for (const double part : pattern) period += part;
        if (pattern.empty() || period <= 0.0) return true;
        const double count = length / period * static_cast<double>(pattern.size()) / 2.0;
        const double units = count * (kDash + kDashRow * WidthOf(style));
        if (units > std::min(dashUnits_, units_)) {
            drawsSolid_ = true;
            return false;
        }
        dashUnits_ -= units;
        units_ -= units;
        return true;
    }

    template <typename Append>
    void PutArea(double units, const Append& append) {
        if (Affords(units) && list_ != nullptr) append();
    }
    template <typename Append>
    void PutLine(DrawingStyle style, double length, std::size_t points, const Append& append,
                 double arcUnits = 0.0) {
        const DrawingStyle asked = style;
        const bool dashed = AffordsDashes(style, length);
        if (!dashed) style.dashCount = 0;
        if (!dashed) style.lineStyle = 0;
        const double units = LineUnits(style, length, points) + arcUnits;
        if (!Affords(units) || list_ == nullptr) return;
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
    bool smooth_;
    double bandRows_;
    double bands_;
    bool upright_;  // the drawing's y runs down the page
    double ofPlot_;
    double units_;
    double dashUnits_;
    double cheapUnits_;
    DisplayList* list_;
    std::vector<double> lengths_;  // of letters by their number; negative: not yet known
    bool leavesOut_ = false;
    bool drawsSolid_ = false;
};

}  // namespace

std::optional<DisplayList> AffordablePart(const PageSource& page, const PageOptions& options,
                                          const PageRaster& raster, std::int32_t bandRows) {
    if (page.sourceBytes == 0) return std::nullopt;
    const auto bytes = static_cast<double>(page.sourceBytes);
    const double part = options.budget == nullptr ? 1.0 : options.budget->work;
    Meter meter(raster, bandRows, options, bytes, part, nullptr);
    Play(*page.drawing, meter);
    if (options.budget != nullptr) options.budget->work = meter.PartLeft();
    if (!meter.LeavesOut() && !meter.DrawsSolid()) return std::nullopt;
    if (options.note) {
        const std::string name = page.name.empty() ? "the page" : page.name;
        options.note(name + " asks for too much for its size at this resolution; " +
                     (meter.LeavesOut() ? "not all of it is drawn" : "some dashes are not drawn"));
    }
    DisplayList list;
    Meter filler(raster, bandRows, options, bytes, part, &list);
    Play(*page.drawing, filler);
    return list;
}

}  // namespace qm::bitmap
