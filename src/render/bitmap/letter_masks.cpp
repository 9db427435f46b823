#include "render/bitmap/letter_masks.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include "common/numbers.h"
#include "render/bitmap/blending.h"
#include "render/bitmap/dot_quad.h"
#include "render/line_look.h"

namespace qm::bitmap {

namespace {

constexpr std::int32_t kParts = 8;  // of a dot, in each direction
constexpr std::size_t kPlaces = std::size_t{kParts} * kParts;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kBlack = 0;
// What a pen of a dot's width adds to a letter, in dots.
constexpr double kAddedByPen = 2.0;

// How far `way`, in plotter units, leads in dots.
PointD InDots(const Matrix& m, PointI way) {
    return {m.a * way.x + m.c * way.y, m.b * way.x + m.d * way.y};
}

Box<double> InDots(const Matrix& m, const BoxI& box) {
    const PointD a = InDots(m, box.a);
    const PointD b = InDots(m, box.b);
    const PointD c = InDots(m, PointI{box.a.x, box.b.y});
    const PointD d = InDots(m, PointI{box.b.x, box.a.y});
    return {{std::min({a.x, b.x, c.x, d.x}), std::min({a.y, b.y, c.y, d.y})},
            {std::max({a.x, b.x, c.x, d.x}), std::max({a.y, b.y, c.y, d.y})}};
}

std::int32_t FloorOf(double value) { return TruncateToInt32(std::floor(value)); }

// Of black on white.
std::uint8_t CoverageOf(const BandDot& dot) {
    return static_cast<std::uint8_t>(255 - (dot.colour & 255));
}

// The dots that are not white.
DotBox Covered(const Band& band) {
    DotBox box{band.Width(), band.Bottom(), 0, 0};
    for (std::int32_t y = band.Top(); y < band.Bottom(); ++y) {
        const BandDot* const dots = band.Row(y);
        for (std::int32_t x = 0; x < band.Width(); ++x) {
            if (dots[x].colour == kWhite) continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1), y + 1};
        }
    }
    if (box.right == 0) return {};
    return box;
}

}  // namespace

FrequentLetters::FrequentLetters(const LetterShapes& shapes, const Matrix& toDots)
    : numbers_(shapes.Count(), kNone) {
    std::vector<std::uint32_t> order;
    for (std::uint32_t shape = 0; shape < shapes.Count(); ++shape) {
        if (shapes.UsesOf(shape) >= kFewest) order.push_back(shape);
    }
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return shapes.UsesOf(a) > shapes.UsesOf(b);
    });
    double dots = 0.0;
    for (const std::uint32_t shape : order) {
        const Box<double> box = InDots(toDots, shapes.BoxOf(shape));
        const double width = box.b.x - box.a.x;
        const double height = box.b.y - box.a.y;
        if (!(width <= kLargest && height <= kLargest)) continue;
        dots += kPlaces * (width + kAddedByPen) * (height + kAddedByPen);
        if (dots > kMostDots) break;
        numbers_[shape] = static_cast<std::uint32_t>(boxes_.size());
        boxes_.push_back(box);
    }
}

LetterMasks::LetterMasks(const FrequentLetters& letters, const Matrix& toDots)
    : letters_(letters), toDots_(toDots), scratch_(kSide, kSide), strokes_(scratch_, true) {}

bool LetterMasks::Draw(const LetterRecord& letter, const Pen& pen, std::uint32_t colour, Band& band,
                       const DotBox& bounds) {
    const std::uint32_t number = letters_.NumberOf(letter.number);
    if (number == FrequentLetters::kNone || pen.halfWidth > kWidestPen) return false;
    const PointD at = InDots(toDots_, letter.at) + PointD{toDots_.e, toDots_.f};
    const Box<double>& box = letters_.BoxOf(number);
    const auto isOutside = [](double low, double high, std::int32_t from, std::int32_t end) {
        constexpr double kReach = 2.0 * kWidestPen + 2.0;
        return high + kReach < from || low - kReach > end;
    };
    if (isOutside(at.x + box.a.x, at.x + box.b.x, bounds.left, bounds.right) ||
        isOutside(at.y + box.a.y, at.y + box.b.y, bounds.top, bounds.bottom)) {
        return true;
    }
    const std::int32_t x = FloorOf(at.x * kParts + 0.5);
    const std::int32_t y = FloorOf(at.y * kParts + 0.5);
    const auto part = static_cast<std::uint32_t>((y & (kParts - 1)) * kParts + (x & (kParts - 1)));
    const Place place{(x - (x & (kParts - 1))) / kParts, (y - (y & (kParts - 1))) / kParts, part};
    PenMasks* const known = MasksOf(pen);
    std::uint32_t* const kept = known ? &known->masks[number * kPlaces + part] : nullptr;
    if (kept != nullptr && *kept != 0) {
        Put(masks_[*kept - 1], place, colour, band, bounds);
        return true;
    }
    const std::size_t before = coverages_.size();
    const Mask mask = MakeMask(letter, pen, box, part);
    Put(mask, place, colour, band, bounds);
    if (kept == nullptr || before > kMostBytes) {
        coverages_.resize(before);
        return true;
    }
    masks_.push_back(mask);
    *kept = static_cast<std::uint32_t>(masks_.size());
    return true;
}

LetterMasks::PenMasks* LetterMasks::MasksOf(const Pen& pen) {
    for (PenMasks& each : pens_) {
        if (each.pen == pen) return &each;
    }
    if (pens_.size() == kMostPens) return nullptr;
    pens_.push_back({pen, std::vector<std::uint32_t>(letters_.Count() * kPlaces)});
    return &pens_.back();
}

LetterMasks::Mask LetterMasks::MakeMask(const LetterRecord& letter, const Pen& pen,
                                        const Box<double>& box, std::uint32_t part) {
    const std::uint32_t down = part / kParts;
    const PointD first{(part % kParts) / double{kParts}, down / double{kParts}};
    const double reach = 2.0 * pen.halfWidth + 1.0;
    const std::int32_t left = FloorOf(first.x + box.a.x - reach);
    const std::int32_t top = FloorOf(first.y + box.a.y - reach);
    scratch_.Start(0, std::min(kSide, FloorOf(first.y + box.b.y + reach) + 1 - top), kWhite);
    strokes_.SetBounds(scratch_.Bounds());
    DrawStrokes(letter.shape, pen, first - PointD{double(left), double(top)});
    const DotBox covered = Covered(scratch_);
    Mask mask;
    mask.left = static_cast<std::int16_t>(left + covered.left);
    mask.top = static_cast<std::int16_t>(top + covered.top);
    mask.fours = static_cast<std::uint16_t>((covered.right - covered.left + 3) / 4);
    mask.rows = static_cast<std::uint16_t>(covered.bottom - covered.top);
    mask.first = coverages_.size();
    const std::size_t width = std::size_t{4} * mask.fours;
    coverages_.resize(mask.first + width * mask.rows);
    std::uint8_t* row = coverages_.data() + mask.first;
    for (std::int32_t y = covered.top; y < covered.bottom; ++y, row += width) {
        const BandDot* const dots = scratch_.Row(y);
        std::transform(dots + covered.left, dots + covered.right, row, CoverageOf);
    }
    return mask;
}

// The first point lies at `first`.
void LetterMasks::DrawStrokes(const Strokes& shape, const Pen& pen, PointD first) {
    const PointI* run = shape.points;
    for (std::size_t i = 0; i < shape.runs; ++i) {
        const PointSpan points{run, shape.lengths[i]};
        run += points.count;
        strokes_.Begin(pen.halfWidth, kBlack);
        if (IsDot(points)) {
            const PointD dot = first + InDots(toDots_, points[0]);
            strokes_.Add({&dot, 1});
            continue;
        }
        path_.clear();
        for (const PointI p : points) path_.push_back(first + InDots(toDots_, p));
        const bool closed = points.count > 2 && points[0] == points[points.count - 1];
        const CapsuleStrokes::End end = closed ? CapsuleStrokes::End::kRound : pen.end;
        strokes_.Add({path_.data(), path_.size(), end, end});
    }
}

void LetterMasks::Put(const Mask& mask, const Place& place, std::uint32_t colour, Band& band,
                      const DotBox& bounds) const {
    const std::int32_t left = place.x + mask.left;
    const std::int32_t top = place.y + mask.top;
    const std::int32_t end = std::min(top + mask.rows, bounds.bottom);
    const QuadColour ink(colour);
    const std::int32_t width = 4 * mask.fours;
    const bool isInside = left >= bounds.left && left + width <= bounds.right;
    for (std::int32_t y = std::max(top, bounds.top); y < end; ++y) {
        const std::uint8_t* coverages =
            coverages_.data() + mask.first + static_cast<std::size_t>((y - top) * width);
        BandDot* const dots = band.Row(y);
        for (std::int32_t x = left; x < left + width; x += 4, coverages += 4) {
            std::uint32_t four = 0;
            std::memcpy(&four, coverages, sizeof four);
            if (four == 0) continue;
            if (isInside) {
                const DotRun run(dots + x);
                QuadDots old = run.Load();
                old.colours = ink.MixedInto(old.colours, PartsOf(Unpacked(four)));
                run.Store(old);
                continue;
            }
            for (std::int32_t i = 0; i < 4; ++i) {
                if (x + i < bounds.left || x + i >= bounds.right || coverages[i] == 0) continue;
                dots[x + i].colour = Mix(dots[x + i].colour, colour, coverages[i]);
            }
        }
    }
}

}  // namespace qm::bitmap
