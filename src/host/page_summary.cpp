// See page_summary.h.
#include "host/page_summary.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "common/numbers.h"

namespace qm {

namespace {

constexpr std::int32_t kCopyPen = 13;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr int kMaxTurns = 1000;

double HalfWidth(const DrawingStyle& style) {
    return style.lineWidth > 0 ? style.lineWidth / 2.0 : 0.0;
}

bool HasOthers(const PageSummary& summary) {
    return summary.lines + summary.polylines + summary.polygons + summary.rectangles +
               summary.circles + summary.arcs >
           0;
}

class Glance final : public Summariser {
  public:
    bool Wants(const PartCover& cover) override {
        const PageSummary& seen = Seen();
        const bool newPictures = cover.hasPictures && seen.pictures == 0;
        return !FoundColours() || newPictures || !HasOthers(seen) || !Covers(seen.extent, cover);
    }

  private:
    static bool Covers(const Extent& extent, const PartCover& cover) {
        if (cover.IsEmpty()) return true;
        const double by = std::max(0, cover.widestLine) / 2.0;
        return !extent.empty && static_cast<double>(cover.minX) - by >= extent.minX &&
               static_cast<double>(cover.minY) - by >= extent.minY &&
               static_cast<double>(cover.maxX) + by <= extent.maxX &&
               static_cast<double>(cover.maxY) + by <= extent.maxY;
    }
};

}  // namespace

PageSummary Summariser::Finish() {
    TakeLines();
    summary_.onlyWhite = !summary_.extent.empty && coloured_ == 0;
    return std::move(summary_);
}

void Summariser::Lines(const DrawingStyle& style, PointSpan points) {
    Count(style, summary_.lines, points.count - 1);
    IncludeLines(style, BoxAround(points.data, points.count));
}

bool Summariser::Letter(const DrawingStyle& style, const LetterRecord& letter) {
    Count(style, summary_.lines, letter.shape.count - letter.shape.runs);
    IncludeLines(style, letter.box);
    return true;
}

void Summariser::IncludeLines(const DrawingStyle& style, const BoxI& box) {
    if (style.lineWidth != linesWidth_) {
        TakeLines();
        linesWidth_ = style.lineWidth;
        linesHalfWidth_ = HalfWidth(style);
    }
    if (!anyLines_) lines_ = box;
    anyLines_ = true;
    lines_.a = {std::min(lines_.a.x, box.a.x), std::min(lines_.a.y, box.a.y)};
    lines_.b = {std::max(lines_.b.x, box.b.x), std::max(lines_.b.y, box.b.y)};
}

void Summariser::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    Count(style, summary_.rectangles);
    WidenBox(box, filled ? 0.0 : HalfWidth(style));
    NoteArea(filled);
}

void Summariser::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                        bool filled) {
    Count(style, summary_.circles);
    WidenPoint(centre.x, centre.y,
               std::abs(double{1} * radius) + (filled ? 0.0 : HalfWidth(style)));
    NoteArea(filled);
}

void Summariser::Arc(const DrawingStyle& style, const ArcShape& arc) {
    Count(style, summary_.arcs);
    TakeLines();
    if (HasWholeEllipse(arc, HalfWidth(style))) return;
    const Extent box = ArcExtent(arc);
    WidenPoint(box.minX, box.minY, HalfWidth(style));
    WidenPoint(box.maxX, box.maxY, HalfWidth(style));
}

void Summariser::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    Count(style, filled ? summary_.polygons : summary_.polylines);
    Widen(points, filled ? 0.0 : HalfWidth(style));
    NoteArea(filled);
}

void Summariser::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    Count(style, filled ? summary_.polygons : summary_.polylines);
    Widen(rings.points, filled ? 0.0 : HalfWidth(style));
    NoteArea(filled);
}

void Summariser::Text(const DrawingStyle& style, const BoxI&, std::string_view) {
    Count(style, summary_.texts);
}

void Summariser::Picture(const DrawingStyle& style, const BoxI& box, std::int32_t, ByteRun) {
    coloured_ = kWhite;
    Count(style, summary_.pictures);
    WidenBox(box, 0.0);
    NoteArea(true);
}

void Summariser::Pattern(const FillPattern&) { ++summary_.fillPatterns; }

void Summariser::ClipRegion(PointSpan) { NoteArea(true); }

void Summariser::StyleChange(const DrawingStyle& style, RecordKind kind) {
    if (kind != RecordKind::kDrawMode || style.drawMode == kCopyPen) return;
    NoteArea(true);
    coloured_ = kWhite;  // what comes out is not the pen's colour
}

void Summariser::Count(const DrawingStyle& style, std::uint64_t& counter,
                       std::uint64_t primitives) {
    counter += primitives;
    coloured_ |= (style.drawColour & style.fillColour) ^ kWhite;
    if (style.pen >= 0 && style.pen < 256) {
        summary_.byPen[static_cast<std::size_t>(style.pen)] += primitives;
    }
    if (style.layer == lastLayer_ && !summary_.layers.empty()) return;
    lastLayer_ = style.layer;
    const auto& known = summary_.layers;
    if (std::find(known.begin(), known.end(), lastLayer_) == known.end()) {
        summary_.layers.push_back(lastLayer_);
    }
}

void Summariser::WidenPoint(double x, double y, double by) {
    summary_.extent.Add(x - by, y - by);
    summary_.extent.Add(x + by, y + by);
}

void Summariser::WidenBox(const BoxI& box, double by) {
    WidenPoint(box.a.x, box.a.y, by);
    WidenPoint(box.b.x, box.b.y, by);
}

void Summariser::Widen(PointSpan points, double by) {
    if (points.count == 0) return;
    WidenBox(BoxAround(points.data, points.count), by);
}

void Summariser::TakeLines() {
    if (anyLines_) WidenBox(lines_, linesHalfWidth_);
    anyLines_ = false;
}

// An arc inside what is known already needs no sines.
bool Summariser::HasWholeEllipse(const ArcShape& arc, double by) const {
    const Extent& extent = summary_.extent;
    const double reachX = std::abs(double{1} * arc.radiusX) + by;
    const double reachY = std::abs(double{1} * arc.radiusY) + by;
    return !extent.empty && arc.centre.x - reachX >= extent.minX &&
           arc.centre.x + reachX <= extent.maxX && arc.centre.y - reachY >= extent.minY &&
           arc.centre.y + reachY <= extent.maxY;
}

Extent ArcExtent(const ArcShape& arc) {
    Extent box;
    const auto add = [&](double degrees) {
        box.Add(arc.centre.x + arc.radiusX * std::cos(degrees * kRadiansPerDegree),
                arc.centre.y + arc.radiusY * std::sin(degrees * kRadiansPerDegree));
    };
    const double end = double{arc.start} + arc.span;
    // Angles that say nothing (no number, or thousands of turns): the whole ellipse.
    if (!(std::abs(end) < 360.0 * kMaxTurns && std::abs(arc.span) < 360.0F)) {
        for (const double degrees : {0.0, 90.0, 180.0, 270.0}) add(degrees);
        return box;
    }
    const double from = std::min<double>(arc.start, end);
    const double to = std::max<double>(arc.start, end);
    add(from);
    add(to);
    const double firstQuarter = std::ceil(from / 90.0);
    for (int quarter = 0; quarter < 4; ++quarter) {
        const double degrees = (firstQuarter + quarter) * 90.0;
        if (degrees < to) add(degrees);
    }
    return box;
}

PageSummary Summarise(const DisplayList& list) {
    Summariser visitor;
    Play(list, visitor);
    return visitor.Finish();
}

PageGist GistOf(const DisplayList& list) {
    Glance visitor;
    Play(list, visitor);
    const PageSummary seen = visitor.Finish();
    return {seen.extent, seen.onlyWhite, seen.pictures > 0, HasOthers(seen)};
}

}  // namespace qm
