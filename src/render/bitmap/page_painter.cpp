#include "render/bitmap/page_painter.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "render/bitmap/blending.h"
#include "render/fill_pattern.h"

namespace qm::bitmap {

namespace {

constexpr double kThinnest = 0.5;              // half the width of the thinnest line, in dots
constexpr unsigned kCheckpointInterval = 256;  // primitives
constexpr std::size_t kPiece = 16;             // lines that are rejected together
// How far the corners of a polygon may lie beside the arc it stands for, in dots.
constexpr double kRoundness = 0.02;
constexpr double kMitreReach = 5.0;

Matrix Inverse(const Matrix& m) {
    const double determinant = m.a * m.d - m.b * m.c;
    const Matrix inverse{
        m.d / determinant, -m.b / determinant, -m.c / determinant, m.a / determinant, 0.0, 0.0};
    return {inverse.a,
            inverse.b,
            inverse.c,
            inverse.d,
            -(inverse.a * m.e + inverse.c * m.f),
            -(inverse.b * m.e + inverse.d * m.f)};
}

CapsuleStrokes::End EndOf(LineCap cap) {
    if (cap == LineCap::kRound) return CapsuleStrokes::End::kRound;
    return cap == LineCap::kButt ? CapsuleStrokes::End::kButt : CapsuleStrokes::End::kSquare;
}

}  // namespace

PagePainter::PagePainter(const DisplayList& list, const PaintSettings& settings, std::int32_t width,
                         std::int32_t rows)
    : list_(list),
      settings_(settings),
      toDrawing_(Inverse(settings.toDots)),
      band_(width, rows),
      area_(width, rows, settings.smooth),
      capsules_(band_, settings.smooth) {
    if (settings.letters != nullptr) letters_.emplace(*settings.letters, settings.toDots);
}

Band& PagePainter::Draw(std::int32_t top, std::int32_t bottom) {
    band_.Start(top, bottom, settings_.paper);
    patterns_.clear();
    lookIsOld_ = true;
    EndClipRegion();
    Play(list_, *this);
    return band_;
}

void PagePainter::Checkpoint() {
    if (++primitives_ % kCheckpointInterval == 0 && settings_.checkpoint) settings_.checkpoint();
}

// ------------------------------------------------------------------------------------------- lines

bool PagePainter::IsFast(const Look& look) const {
    if (!look.ignoresPaper || masked_ || look.dashes.part < 1.0) return false;
    const StrokeShape& shape = look.shape;
    const bool isRound = shape.cap == LineCap::kRound && shape.join == LineJoin::kRound;
    if (isRound) return true;
    // Of thinner lines nobody sees the shape of the corners.
    return shape.halfWidth <= (shape.join == LineJoin::kMitre ? 0.75 : CapsuleStrokes::kThin) &&
           (settings_.smooth || shape.cap == LineCap::kRound);
}

const PagePainter::Look& PagePainter::LookOf(const DrawingStyle& style) {
    if (!lookIsOld_) return look_;
    lookIsOld_ = false;
    Look look;
    const double width =
        style.lineWidth > 0 ? style.lineWidth * settings_.dotsPerUnit : settings_.hairline;
    look.shape.halfWidth = std::max(kThinnest, width / 2.0);
    look.shape.cap = CapOf(style.lineAttributes);
    look.shape.join = JoinOf(style.lineAttributes);
    look.end = EndOf(look.shape.cap);
    look.dashes = PatternOf(DashesOf(style), settings_.dotsPerUnit);
    // Round ends close gaps of half a dot.
    if (look.dashes.lengths.empty() && look.shape.cap != LineCap::kButt) look.dashes.part = 1.0;
    look.operation = OperationOfDrawMode(style.drawMode);
    look.colour = DotColour(style.drawColour);
    std::uint32_t result = 0;
    look.ignoresPaper = IgnoresPaper(look.operation, look.colour, result);
    if (look.ignoresPaper) look.colour = result;
    look.isFast = IsFast(look);
    look_ = std::move(look);
    return look_;
}

bool PagePainter::MayShow(const PointI* points, std::size_t count, double reach) const {
    const Matrix& m = settings_.toDots;
    if (m.b != 0.0 && m.d != 0.0) return true;
    const bool byY = m.b == 0.0;
    std::int32_t low = byY ? points[0].y : points[0].x;
    std::int32_t high = low;
    for (std::size_t i = 1; i < count; ++i) {
        const std::int32_t value = byY ? points[i].y : points[i].x;
        low = std::min(low, value);
        high = std::max(high, value);
    }
    const double scale = byY ? m.d : m.b;
    const double a = scale * low + m.f;
    const double b = scale * high + m.f;
    return std::max(a, b) + reach >= bounds_.top && std::min(a, b) - reach <= bounds_.bottom;
}

bool PagePainter::Wants(const PartCover& cover) {
    lookIsOld_ = true;
    if (cover.IsEmpty()) return false;
    const auto low = static_cast<double>(cover.minX);
    const auto high = static_cast<double>(cover.maxX);
    const auto bottom = static_cast<double>(cover.minY);
    const auto top = static_cast<double>(cover.maxY);
    const auto [least, most] = std::minmax(
        {ToDots(low, bottom).y, ToDots(low, top).y, ToDots(high, bottom).y, ToDots(high, top).y});
    const double widest = std::max(settings_.hairline, cover.widestLine * settings_.dotsPerUnit);
    const double halfWidth = std::max(kThinnest, widest / 2.0);
    const double reach = halfWidth * kMitreReach + 2.0;
    return most + reach >= band_.Top() && least - reach <= band_.Bottom();
}

void PagePainter::TakePath(PointSpan points) {
    path_.clear();
    for (const PointI p : points) path_.push_back(ToDots(p.x, p.y));
}

void PagePainter::Lines(const DrawingStyle& style, PointSpan points) {
    Checkpoint();
    const Look& look = LookOf(style);
    if (points.count == 0 || look.operation == kKeepPaper) return;
    if (points.count <= kPiece &&
        !MayShow(points.data, points.count, look.shape.halfWidth * kMitreReach + 1.0)) {
        return;
    }
    StrokeLines(look, points);
}

// Most letters lie in other bands, which their box tells for all of their lines.
bool PagePainter::Letter(const DrawingStyle& style, const LetterRecord& letter) {
    Checkpoint();
    const Look& look = LookOf(style);
    if (look.operation == kKeepPaper) return true;
    const PointI corners[] = {letter.box.a, letter.box.b};
    if (MayShow(corners, 2, look.shape.halfWidth * kMitreReach + 1.0)) {
        if (look.isFast) {
            capsules_.Fetch(ToDots(corners[0].x, corners[0].y), ToDots(corners[1].x, corners[1].y));
        }
        if (letters_ && look.isFast && look.dashes.lengths.empty() &&
            letters_->Draw(letter, {look.shape.halfWidth, look.end}, look.colour, band_, bounds_)) {
            return true;
        }
        PlacedLetter(letter).ForEachRun([&](PointSpan run) { StrokeLines(look, run); });
    }
    return true;
}

void PagePainter::StrokeLines(const Look& look, PointSpan points) {
    if (IsDot(points)) return StrokeDot(look, ToDots(points[0].x, points[0].y));
    const bool closed = points.count > 2 && points[0] == points[points.count - 1];
    if (look.isFast && look.dashes.lengths.empty()) return StrokeFast(look, points, closed);
    TakePath(points);
    StrokePath(look, closed);
}

void PagePainter::StrokeFast(const Look& look, PointSpan points, bool closed) {
    const double reach = look.shape.halfWidth + 1.0;
    const CapsuleStrokes::End outer = closed ? CapsuleStrokes::End::kRound : look.end;
    const std::size_t lines = points.count - 1;
    for (std::size_t from = 0; from < lines; from += kPiece) {
        if (from % CapsuleStrokes::kMostLines == 0) {
            capsules_.Begin(look.shape.halfWidth, look.colour);
        }
        const std::size_t end = std::min(from + kPiece, lines);
        // Few points were looked at together.
        if (points.count > kPiece && !MayShow(points.data + from, end - from + 1, reach)) {
            capsules_.Skip(kPiece);
            continue;
        }
        // With the points next to the piece.
        const std::size_t first = from == 0 ? 0 : from - 1;
        const std::size_t last = std::min(end + 1, lines);
        path_.clear();
        for (std::size_t i = first; i <= last; ++i) {
            path_.push_back(ToDots(points[i].x, points[i].y));
        }
        CapsuleStrokes::Piece piece{path_.data() + (from - first), end - from + 1, outer, outer};
        if (first < from) piece.before = path_.data();
        if (last > end) piece.after = &path_.back();
        capsules_.Add(piece);
    }
}

// The line through path_, solid or dashed.
void PagePainter::StrokePath(const Look& look, bool closed) {
    if (look.isFast) {
        capsules_.Begin(look.shape.halfWidth, look.colour);
    } else {
        area_.Start(bounds_);
    }
    StrokeOutline outline(area_, bounds_, look.shape);
    const auto add = [&](const std::vector<PointD>& points, bool isClosed) {
        if (look.isFast) {
            const CapsuleStrokes::End end = isClosed ? CapsuleStrokes::End::kRound : look.end;
            capsules_.Add({points.data(), points.size(), end, end});
        } else {
            outline.Add(points, isClosed);
        }
    };
    if (look.dashes.lengths.empty()) {
        add(path_, closed);
    } else {
        const double reach = look.shape.halfWidth * kMitreReach + 1.0;
        DashCutter cutter(look.dashes, bounds_.top - reach, bounds_.bottom + reach);
        cutter.Cut(path_, [&](const std::vector<PointD>& dash) { add(dash, false); });
    }
    if (!look.isFast) SweepStroke(look);
}

void PagePainter::StrokeDot(const Look& look, PointD centre) {
    if (look.ignoresPaper && !masked_) {
        capsules_.Begin(look.shape.halfWidth, look.colour);
        return capsules_.Add({&centre, 1});
    }
    area_.Start(bounds_);
    StrokeOutline(area_, bounds_, look.shape).Add({centre}, false);
    SweepStroke(look);
}

void PagePainter::SweepStroke(const Look& look) {
    Ink ink;
    ink.operation = look.operation;
    ink.colour = look.colour;
    ink.ignoresPaper = look.ignoresPaper;
    ink.strength =
        static_cast<unsigned>(std::clamp(RoundToInt32(look.dashes.part * 255.0), 0, 255));
    Sweep(FillRule::kNonZero, ink);
}

void PagePainter::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    const PointI corners[] = {box.a, {box.b.x, box.a.y}, box.b, {box.a.x, box.b.y}, box.a};
    Polygon(style, {corners, 5}, filled);
}

// -------------------------------------------------------------------------------------------- arcs

// Angles in degrees, any direction; `to` is reached exactly.
void PagePainter::TakeArc(const ArcShape& arc, double from, double to) {
    path_.clear();
    if (!std::isfinite(from) || !std::isfinite(to)) return;
    const double radius =
        std::max(std::abs(double{1} * arc.radiusX), std::abs(double{1} * arc.radiusY)) *
        settings_.dotsPerUnit;
    const double step =
        2.0 * std::acos(std::max(0.0, 1.0 - kRoundness / std::max(radius, kRoundness)));
    const double span = std::min(std::abs(to - from), 3600.0) * kRadiansPerDegree;
    const int steps = std::clamp(TruncateToInt32(std::ceil(span / step)), 4, 20000);
    // The corners lie as far outside as the middles of the sides lie inside.
    const double wider = 1.0 + kRoundness / 2.0 / std::max(radius, 1.0);
    for (int i = 0; i <= steps; ++i) {
        const double angle = (from + (to - from) * i / steps) * kRadiansPerDegree;
        path_.push_back(ToDots(arc.centre.x + wider * arc.radiusX * std::cos(angle),
                               arc.centre.y + wider * arc.radiusY * std::sin(angle)));
    }
}

void PagePainter::Arc(const DrawingStyle& style, const ArcShape& arc) {
    Checkpoint();
    const Look& look = LookOf(style);
    if (look.operation == kKeepPaper) return;
    const double reach = (std::abs(double{1} * arc.radiusX) + std::abs(double{1} * arc.radiusY)) *
                             settings_.dotsPerUnit +
                         look.shape.halfWidth * kMitreReach + 1.0;
    if (!MayShow(&arc.centre, 1, reach)) return;
    const bool whole = IsWholeEllipse(arc);
    const double from = whole ? 0.0 : double{arc.start};
    TakeArc(arc, from, whole ? 360.0 : from + arc.span);
    if (path_.empty()) return;
    if (whole) path_.back() = path_.front();
    StrokePath(look, whole);
}

void PagePainter::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                         bool filled) {
    const ArcShape arc{centre, radius, radius, 0.0F, 360.0F};
    if (!filled) return Arc(style, arc);
    Checkpoint();
    if (!MayShow(&centre, 1, std::abs(double{1} * radius) * settings_.dotsPerUnit + 1.0)) return;
    TakeArc(arc, 0.0, 360.0);
    area_.Start(bounds_);
    area_.AddRing(path_.data(), path_.size());
    SweepFill(style);
}

// ------------------------------------------------------------------------------------------- areas

void PagePainter::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    if (!filled) return Lines(style, points);
    Checkpoint();
    if (points.count == 0 || !MayShow(points.data, points.count, 1.0)) return;
    TakePath(points);
    area_.Start(bounds_);
    area_.AddRing(path_.data(), path_.size());
    SweepFill(style);
}

void PagePainter::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    Checkpoint();
    const PointI* ring = rings.points.data;
    if (filled && (rings.points.count == 0 || !MayShow(ring, rings.points.count, 1.0))) return;
    if (filled) area_.Start(bounds_);
    for (std::size_t i = 0; i < rings.count; ++i) {
        const PointSpan points{ring, static_cast<std::size_t>(rings.lengths[i])};
        if (filled) {
            TakePath(points);
            area_.AddRing(path_.data(), path_.size());
        } else {
            Lines(style, points);
        }
        ring += points.count;
    }
    if (filled) SweepFill(style);
}

void PagePainter::SweepFill(const DrawingStyle& style) {
    Ink ink;
    ink.operation = OperationOfDrawMode(style.drawMode);
    ink.colour = DotColour(style.fillColour);
    std::uint32_t result = 0;
    ink.ignoresPaper = IgnoresPaper(ink.operation, ink.colour, result);
    if (ink.ignoresPaper) ink.colour = result;
    if (style.fillKind == kFillKindPattern) {
        const auto found = patterns_.find(style.fillIndex);
        if (found != patterns_.end()) ink.pattern = InkOf(found->second);
    }
    Sweep(FillRule::kEvenOdd, ink);
}

void PagePainter::Sweep(FillRule rule, const Ink& ink) {
    area_.Sweep(rule, [&](std::int32_t y, std::int32_t x, std::int32_t count, unsigned coverage) {
        Put(ink, y, x, count, coverage);
    });
}

void PagePainter::Put(const Ink& ink, std::int32_t y, std::int32_t x, std::int32_t count,
                      unsigned coverage) {
    BandDot* const row = band_.Row(y);
    const bool isPlain = ink.pattern == nullptr && !masked_ && ink.strength == 255;
    if (isPlain && ink.ignoresPaper && coverage == 255) {
        for (std::int32_t i = x; i < x + count; ++i) row[i].colour = ink.colour;
        return;
    }
    for (std::int32_t i = x; i < x + count; ++i) {
        unsigned part = coverage;
        if (!isPlain) {
            const auto reduce = [&](unsigned by) { part = (part * by + 127) / 255; };
            if (ink.pattern != nullptr) reduce(PatternCoverage(*ink.pattern, i, y));
            if (masked_) {
                reduce(mask_[static_cast<std::size_t>(y - band_.Top()) *
                                 static_cast<std::size_t>(band_.Width()) +
                             static_cast<std::size_t>(i)]);
            }
            reduce(ink.strength);
            if (part == 0) continue;
        }
        const std::uint32_t paper = row[i].colour;
        const std::uint32_t drawn =
            ink.ignoresPaper ? ink.colour : Combine(ink.operation, ink.colour, paper);
        row[i].colour = part == 255 ? drawn : Mix(paper, drawn, part);
    }
}

// ---------------------------------------------------------------------------------------- patterns

void PagePainter::Pattern(const FillPattern& pattern) {
    // Its ink is counted when something is filled with it: a plot can define many and use none.
    patterns_[pattern.index] = {pattern, nullptr};
}

const PatternInk* PagePainter::InkOf(KnownPattern& known) {
    if (!known.ink && IsDrawable(known.pattern)) {
        known.ink = std::make_unique<PatternInk>(known.pattern);
    }
    return known.ink.get();
}

unsigned PagePainter::PatternCoverage(const PatternInk& pattern, std::int32_t x,
                                      std::int32_t y) const {
    const Matrix& m = toDrawing_;
    const double middleX = m.a * (x + 0.5) + m.c * (y + 0.5) + m.e;
    const double middleY = m.b * (x + 0.5) + m.d * (y + 0.5) + m.f;
    const double across = middleX / kPatternDotUnits;
    const double down = -middleY / kPatternDotUnits;
    if (!settings_.smooth) return pattern.At(across, down) ? 255 : 0;
    const double side = 1.0 / settings_.dotsPerUnit / kPatternDotUnits;
    return pattern.Coverage(across - side / 2.0, down - side / 2.0, side, side);
}

}  // namespace qm::bitmap
