#include "render/pdf/page_painter.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "render/fill_pattern.h"
#include "render/pdf/picture.h"

namespace qm::pdf {

namespace {

constexpr std::size_t kMaxHeld = 4096;
constexpr std::size_t kMaxHeldPoints = std::size_t{1} << 15;

// Plots send a pen's attributes again and again without changing them.
bool SameStroke(const DrawingStyle& a, const DrawingStyle& b) {
    return a.layer == b.layer && a.drawColour == b.drawColour && a.lineWidth == b.lineWidth &&
           a.lineStyle == b.lineStyle && a.dash == b.dash && a.dashCount == b.dashCount &&
           a.lineAttributes == b.lineAttributes && a.drawMode == b.drawMode;
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

PagePainter::PagePainter(Document& document, const PageSource& page, const PageOptions& options,
                         const PagePlace& place, std::uint32_t number)
    : document_(document),
      page_(page),
      options_(options),
      place_(place),
      number_(number),
      out_(document.file),
      path_(out_, place.origin),
      state_(out_, place.hairline),
      tilings_(document.file, place.toPage, resources_),
      texts_(document.fonts, place_.frame, place.origin) {
    held_.reserve(kMaxHeld);
    heldPoints_.reserve(kMaxHeldPoints);
}

// ----------------------------------------------------------------------------------------- strokes

bool PagePainter::TakeStrokeStyle(const DrawingStyle& style) {
    if (styleChanged_) {
        styleChanged_ = false;
        if (!SameStroke(style, style_)) {
            Flush();
            blend_ = BlendOfDrawMode(style.drawMode);
            plain_ = CapOf(style.lineAttributes) == LineCap::kRound && DashesOf(style).empty();
        }
        style_ = style;
    }
    return blend_ != Blend::kNone;
}

void PagePainter::BeginStroke(bool dot) {
    // Exclusive or: what is drawn twice disappears, unless it is one path.
    const bool fits = path_.Segments() < kMaxSegments && blend_ != Blend::kDifference;
    if (pathOpen_ && fits && dot == pathIsDots_) return;
    EndStroke();
    Checkpoint();
    EnterLayer(style_.layer);
    state_.SetStroke(style_, dot);
    path_.Start();
    inked_ = true;
    pathOpen_ = true;
    pathIsDots_ = dot;
}

void PagePainter::EndStroke() {
    if (pathOpen_) out_ << "S\n";
    pathOpen_ = false;
}

void PagePainter::StrokePolyline(PointSpan points) {
    BeginStroke(!plain_ && IsDot(points));
    const bool closed = points.count > 2 && points[0] == points[points.count - 1];
    if (points.count > kMaxSegments && blend_ != Blend::kDifference) {
        StrokeInPieces(points);
    } else {
        path_.Polyline({points.data, points.count - (closed ? 1 : 0)}, closed);
    }
}

// Each piece begins with the last line of the one before, so that all joins are drawn; its dashes
// go on where they were.
void PagePainter::StrokeInPieces(PointSpan points) {
    const bool dashed = !state_.Dashes().empty();
    double period = 0.0;
    for (const double length : state_.Dashes()) period += length;
    double phase = 0.0;
    for (std::size_t from = 0;; from += kMaxSegments - 1) {
        const std::size_t count = std::min(points.count - from, kMaxSegments + 1);
        EndStroke();
        BeginStroke(pathIsDots_);
        state_.SetDashPhase(phase);
        path_.Polyline({points.data + from, count}, false);
        if (from + count == points.count) break;
        if (dashed) {
            phase = std::fmod(phase + PathLength({points.data + from, kMaxSegments}), period);
        }
    }
    // The join where a closed line begins and ends.
    if (points[0] == points[points.count - 1]) path_.Polyline({points.data, 2}, false);
    EndStroke();
}

void PagePainter::Stroke(const Held& held) {
    if (!held.IsLetter()) return StrokePolyline(held.points);
    PlacedLetter(held.letter).ForEachRun([this](PointSpan run) { StrokePolyline(run); });
}

void PagePainter::StrokeHeld() {
    for (const Held& held : held_) Stroke(held);
    held_.clear();
    heldPoints_.clear();
}

void PagePainter::Flush() {
    StrokeHeld();
    EndStroke();
}

void PagePainter::Lines(const DrawingStyle& style, PointSpan points) {
    if (!TakeStrokeStyle(style) || points.count == 0) return;
    if (held_.size() == kMaxHeld || kMaxHeldPoints - heldPoints_.size() < points.count) {
        StrokeHeld();
    }
    if (points.count > kMaxHeldPoints) return StrokePolyline(points);
    held_.push_back({{heldPoints_.data() + heldPoints_.size(), points.count}, {}});
    heldPoints_.insert(heldPoints_.end(), points.begin(), points.end());
}

bool PagePainter::Letter(const DrawingStyle& style, const LetterRecord& letter) {
    if (!TakeStrokeStyle(style)) return true;
    if (held_.size() == kMaxHeld) StrokeHeld();
    held_.push_back({{}, letter});
    return true;
}

void PagePainter::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    if (filled) {
        if (!BeginFill(style)) return;
        path_.Rectangle(box);
        out_ << "f*\n";
        return;
    }
    if (!TakeStrokeStyle(style)) return;
    Flush();
    BeginStroke(false);
    path_.Rectangle(box);
    EndStroke();
}

void PagePainter::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                         bool filled) {
    constexpr float kTurn = 360.0F;
    const ArcShape circle{centre, radius, radius, 0.0F, kTurn};
    if (!filled) return Arc(style, circle);
    if (!BeginFill(style)) return;
    path_.Arc(circle);
    out_ << "f*\n";
}

void PagePainter::Arc(const DrawingStyle& style, const ArcShape& arc) {
    if (!TakeStrokeStyle(style)) return;
    StrokeHeld();
    BeginStroke(false);
    path_.Arc(arc);
}

void PagePainter::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    if (!filled) return Lines(style, points);
    const auto length = static_cast<std::int32_t>(points.count);
    PolyPolygon(style, {&length, 1, points}, true);
}

void PagePainter::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    if (rings.points.count == 0 || (filled && !BeginFill(style))) return;
    const PointI* ring = rings.points.data;
    for (std::size_t i = 0; i < rings.count; ++i) {
        const auto count = static_cast<std::size_t>(rings.lengths[i]);
        if (filled) {
            // Closing draws the last line itself.
            const bool repeats = count > 1 && ring[0] == ring[count - 1];
            path_.Polyline({ring, count - (repeats ? 1 : 0)}, true);
        } else {
            Lines(style, {ring, count});
        }
        ring += count;
    }
    if (filled) out_ << "f*\n";
}

// ------------------------------------------------------------------------------------------- areas

bool PagePainter::BeginFill(const DrawingStyle& style) {
    Flush();
    const Blend blend = BlendOfDrawMode(style.drawMode);
    if (blend == Blend::kNone) return false;
    Checkpoint();
    EnterLayer(style.layer);
    state_.SetBlend(blend);
    std::size_t pattern = 0;
    if (style.fillKind == kFillKindPattern) {
        const auto found = patterns_.find(style.fillIndex);
        if (found != patterns_.end() && IsDrawable(found->second)) {
            pattern = tilings_.NumberOf(found->second);
        }
    }
    state_.SetFill(style.fillColour, pattern);
    path_.Start();
    inked_ = true;
    return true;
}

void PagePainter::ClipRegion(PointSpan points) {
    EndClipRegion();
    Flush();
    LeaveLayer();
    state_.Save();
    path_.Start();
    if (points.count > 0) {
        path_.Polyline(points, true);
    } else {
        path_.Rectangle({});
    }
    out_ << "W* n\n";
    clipped_ = true;
}

void PagePainter::EndClipRegion() {
    if (!clipped_) return;
    Flush();
    LeaveLayer();
    state_.Restore();
    clipped_ = false;
}

bool PagePainter::OnBarePaper(const BoxI& box) {
    Extent extent;
    extent.Add(box.a.x, box.a.y);
    extent.Add(box.b.x, box.b.y);
    const bool apart = pictured_.empty || extent.minX >= pictured_.maxX ||
                       extent.maxX <= pictured_.minX || extent.minY >= pictured_.maxY ||
                       extent.maxY <= pictured_.minY;
    pictured_.Add(extent.minX, extent.minY);
    pictured_.Add(extent.maxX, extent.maxY);
    return apart && !inked_;
}

void PagePainter::Picture(const DrawingStyle& style, const BoxI& box, std::int32_t rasterOperation,
                          ByteRun bitmap) {
    const auto view = PackedBitmapView::Parse(bitmap.data, bitmap.size);
    const Blend blend = BlendOfPicture(rasterOperation);
    const PointI low{std::min(box.a.x, box.b.x), std::min(box.a.y, box.b.y)};
    const std::int64_t width = std::abs(std::int64_t{box.b.x} - box.a.x);
    const std::int64_t height = std::abs(std::int64_t{box.b.y} - box.a.y);
    if (!view || blend == Blend::kNone || width == 0 || height == 0) return;
    Flush();
    // Clear white on bare paper is white: viewers blur the edges of masks.
    const bool bare = OnBarePaper(box);
    const PictureObject picture = WritePicture(
        *view,
        page_.whiteIsClear && PictureIsClear(rasterOperation) && (!bare || view->Bits() == 1),
        options_.checkpoint, document_.file);
    const std::string name = "I" + std::to_string(++pictures_);
    resources_.Add(PageResources::kXObject, name, picture.object);
    EnterLayer(style.layer);
    state_.SetBlend(blend);
    if (picture.stencil) state_.SetFill(*picture.stencil, 0);
    out_ << "q\n"
         << width << "0 0 " << height << std::int64_t{low.x} - place_.origin.x
         << std::int64_t{low.y} - place_.origin.y << "cm\n/" << name << " Do\nQ\n";
}

// ------------------------------------------------------------------------------------------- pages

void PagePainter::EnterLayer(std::int32_t layer) {
    if (layer_ == layer) return;
    LeaveLayer();
    const auto [known, isNew] = groups_.try_emplace(layer, false);
    const std::string name = "L" + std::to_string(layer);
    if (isNew) {
        const ObjectNumber group = document_.layers.GroupOf(page_, layer);
        known->second = group != 0;
        if (group != 0) resources_.Add(PageResources::kProperties, name, group);
    }
    layer_ = layer;
    if (known->second) out_ << "/OC/" << name << " BDC\n";
}

void PagePainter::LeaveLayer() {
    if (layer_ && groups_[*layer_]) out_ << "EMC\n";
    layer_.reset();
}

void PagePainter::WriteTexts() {
    texts_.Write(document_.file, out_, resources_,
                 [this](std::int32_t layer) { EnterLayer(layer); });
}

const std::vector<ObjectNumber>& PagePainter::Finish() {
    Flush();
    EndClipRegion();
    WriteTexts();
    LeaveLayer();
    return out_.Finish();
}

std::string PagePainter::Resources() const {
    std::string more;
    if (state_.Fills()) more += "/ColorSpace<</C[/Pattern/DeviceRGB]>>";
    if (state_.Blends()) {
        more += "/ExtGState<<";
        for (const char* mode : {"Normal", "Darken", "Lighten", "Difference"}) {
            more.append("/").append(mode).append("<</BM/").append(mode).append(">>");
        }
        more += ">>";
    }
    return resources_.Dictionary(more);
}

}  // namespace qm::pdf
