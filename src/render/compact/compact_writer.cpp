// See compact_writer.h.
#include "render/compact/compact_writer.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "common/numbers.h"
#include "host/page_summary.h"
#include "render/compact/compact_plot.h"
#include "render/fill_pattern.h"
#include "render/line_look.h"

namespace qm {

namespace compact {

namespace {

// What a reader may not have at the start; enough commands for detection to know the plot by.
constexpr std::string_view kHeader = "IN;PU;PA;TR0;MC;LT;FT;\n";
constexpr std::string_view kPageEnd = "PG;\n";
// Beyond this, one pass over the list for each pen would take too long.
constexpr std::size_t kMostLayers = 64;
// How far the corners of a polygon may lie beside the arc it stands for, in plotter units.
constexpr double kRoundness = 0.5;

// Whether lines that meet look the same as one line.
bool JoinsUnseen(const DrawingStyle& style) {
    return style.dashCount == 0 && (style.lineStyle < 1 || style.lineStyle > 4) &&
           CapOf(style.lineAttributes) == LineCap::kRound &&
           JoinOf(style.lineAttributes) == LineJoin::kRound &&
           BlendOfDrawMode(style.drawMode) == Blend::kNormal;
}

std::vector<PointI> PointsOf(const ArcShape& arc) {
    const bool whole = IsWholeEllipse(arc);
    const double start = whole ? 0.0 : double{arc.start};
    const double span = whole ? 360.0 : double{arc.span};
    const double radius = std::max(
        {std::abs(double{1} * arc.radiusX), std::abs(double{1} * arc.radiusY), 2.0 * kRoundness});
    constexpr double kLargestStep = 30.0;
    const double step = std::clamp(2.0 * std::acos(1.0 - kRoundness / radius) / kRadiansPerDegree,
                                   0.01, kLargestStep);
    const int steps = std::max(1, TruncateToInt32(std::ceil(std::abs(span) / step)));
    std::vector<PointI> points;
    points.reserve(static_cast<std::size_t>(steps) + 1);
    for (int i = 0; i <= steps; ++i) {
        const PointD at = PointOnArc(arc, start + span * i / steps);
        points.push_back({RoundToInt32(at.x), RoundToInt32(at.y)});
    }
    if (whole) points.back() = points.front();
    return points;
}

}  // namespace

// ------------------------------------------------------------------------------------------- pages

void CompactWriter::BeginPage(int quarters) {
    pen_.BeginPage();
    points_.Forget();
    if (quarters == quarters_) return;
    quarters_ = quarters;
    out_ << "RO" << quarters * 90 << ';';
}

void CompactWriter::Body(const DisplayList& list, std::optional<std::int32_t> layer) {
    layer_ = layer;
    isStale_ = true;
    Play(list, *this);
    FinishLine();
}

void CompactWriter::EndPage() {
    EndPoints();
    out_ << kPageEnd;
    patterns_.clear();
}

// ------------------------------------------------------------------------------------------- lines

void CompactWriter::Send(const std::string& commands) {
    if (commands.empty()) return;
    EndPoints();
    out_ << commands;
}

void CompactWriter::EndPoints() {
    FinishLine();
    points_.End();
}

void CompactWriter::SelectLines(const DrawingStyle& style) {
    if (!isStale_) return;
    isStale_ = false;
    joins_ = JoinsUnseen(style);
    Send(pen_.For(style, false));
}

void CompactWriter::StartLine(PointI point) {
    FinishLine();
    points_.Start(point);
}

void CompactWriter::FinishLine() {
    if (isDot_ && points_.Count() == 1) points_.Add(points_.Pen());
    isDot_ = false;
}

void CompactWriter::Lines(const DrawingStyle& style, PointSpan points) {
    if (!Takes(style) || points.count == 0) return;
    SelectLines(style);
    const bool goesOn = joins_ && points_.Count() > 0 && points_.IsAt(points[0]);
    if (!goesOn) StartLine(points[0]);
    for (const PointI point : points) {
        if (!points_.IsAt(point)) points_.Add(point);
    }
    // Also of a line that went on: it may have been a dot alone.
    isDot_ = points_.Count() == 1;
    if (!joins_) FinishLine();
}

void CompactWriter::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    if (!Takes(style)) return;
    const PointI corners[] = {box.a, {box.b.x, box.a.y}, box.b, {box.a.x, box.b.y}, box.a};
    if (!filled || style.fillKind == kFillKindPattern) {
        return Polygon(style, {corners, std::size(corners)}, filled);
    }
    SelectArea(style);
    points_.MoveTo(box.a);
    EndPoints();
    out_ << "RR" << std::int64_t{box.b.x} - box.a.x << ',' << std::int64_t{box.b.y} - box.a.y
         << ';';
}

void CompactWriter::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                           bool filled) {
    constexpr float kTurn = 360.0F;
    if (!Takes(style)) return;
    if (filled) {
        const std::vector<PointI> points = PointsOf({centre, radius, radius, 0.0F, kTurn});
        return Polygon(style, {points.data(), points.size()}, true);
    }
    SelectLines(style);
    FinishLine();
    points_.MoveTo(centre);
    points_.End();
    out_ << "CI" << radius << ';';
}

void CompactWriter::Arc(const DrawingStyle& style, const ArcShape& arc) {
    const std::vector<PointI> points = PointsOf(arc);
    Lines(style, {points.data(), points.size()});
}

void CompactWriter::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    if (!filled) return Lines(style, points);
    const auto length = static_cast<std::int32_t>(points.count);
    PolyPolygon(style, {&length, 1, points}, true);
}

// ------------------------------------------------------------------------------------------- areas

void CompactWriter::SelectArea(const DrawingStyle& style) {
    FinishLine();
    isStale_ = true;
    if (style.fillKind == kFillKindPattern) {
        const auto found = patterns_.find(style.fillIndex);
        if (found != patterns_.end()) DefinePattern(found->second);
    }
    Send(pen_.For(style, true));
}

void CompactWriter::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    if (!Takes(style)) return;
    area_.clear();
    rings_.clear();
    const PointI* ring = rings.points.data;
    for (std::size_t i = 0; i < rings.count; ++i) {
        const PointSpan points{ring, static_cast<std::size_t>(rings.lengths[i])};
        if (filled) {
            TakeRing(points);
        } else {
            Lines(style, points);
        }
        ring += points.count;
    }
    if (!rings_.empty()) SendArea(style);
}

void CompactWriter::TakeRing(PointSpan points) {
    const std::size_t before = area_.size();
    for (const PointI point : points) {
        if (area_.size() == before || !(point == area_.back())) area_.push_back(point);
    }
    while (area_.size() > before + 1 && area_.back() == area_[before]) area_.pop_back();
    if (area_.size() < before + 3) {
        area_.resize(before);
    } else {
        rings_.push_back(area_.size());
    }
}

// The first ring is closed by its reader; PM2 takes the pen back to where it began.
void CompactWriter::SendArea(const DrawingStyle& style) {
    SelectArea(style);
    const PointI start = area_.front();
    points_.MoveTo(start);
    EndPoints();
    out_ << "PM0;";
    std::size_t next = 1;
    for (const std::size_t end : rings_) {
        if (next > 1) {
            out_ << "PM1;";
            points_.Start(area_[next++]);
        }
        for (; next < end; ++next) points_.AddVertex(area_[next]);
        points_.End();
    }
    out_ << "PM2;FP;";
    points_.PenIsAt(start);
}

void CompactWriter::DefinePattern(const FillPattern& pattern) {
    if (!IsDrawable(pattern)) return;
    const auto [known, isNew] = defined_.emplace(pattern.index, pattern.bits.data);
    if (!isNew && known->second == pattern.bits.data) return;
    known->second = pattern.bits.data;
    EndPoints();
    out_ << "RF" << pattern.index << ',' << pattern.width << ',' << pattern.height;
    for (std::int32_t y = 0; y < pattern.height; ++y) {
        const std::uint8_t* const row =
            pattern.bits.data + pattern.RowBytes() * static_cast<std::size_t>(y);
        for (std::int32_t x = 0; x < pattern.width; ++x) {
            out_ << ((row[x / 8] >> (7 - x % 8) & 1) != 0 ? ",0" : ",1");
        }
    }
    out_ << ';';
}

}  // namespace compact

// ---------------------------------------------------------------------------------------- the plot

namespace {

int QuartersOf(double degrees) {
    const double quarters = std::floor(degrees / 90.0 + 0.5);
    return std::isfinite(quarters) ? (TruncateToInt32(std::fmod(quarters, 4.0)) + 4) % 4 : 0;
}

}  // namespace

void WriteCompactPlot(const std::vector<PageSource>& pages, const PageOptions& options,
                      OutputSink& sink) {
    TextBuffer out(sink);
    out << compact::kHeader;
    compact::CompactWriter writer(out);
    for (const PageSource& page : pages) {
        if (options.checkpoint) options.checkpoint();
        const PageSummary summary = Summarise(*page.drawing);
        writer.BeginPage(QuartersOf(page.rotation));
        if (summary.orderShows || summary.layers.size() > compact::kMostLayers) {
            writer.Body(*page.drawing, std::nullopt);
        } else {
            for (const std::int32_t layer : summary.layers) writer.Body(*page.drawing, layer);
        }
        writer.EndPage();
    }
    out.Flush();
}

}  // namespace qm
