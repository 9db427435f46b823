// See page_painter.h: clip regions and pictures, which take in a rectangle of dots.
#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "render/bitmap/blending.h"
#include "render/bitmap/page_painter.h"
#include "render/bitmap/picture_sampler.h"
#include "render/fill_pattern.h"

namespace qm::bitmap {

namespace {

DotBox Common(const DotBox& a, const DotBox& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

// The dots whose centres lie between the points' extremes.
DotBox DotsBetween(const std::vector<PointD>& points) {
    PointD low = points[0];
    PointD high = points[0];
    for (const PointD& p : points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    const auto edge = [](double value) { return RoundToInt32(std::clamp(value, -1e6, 1e6)); };
    return {edge(low.x), edge(low.y), edge(high.x), edge(high.y)};
}

bool IsUprightRectangle(const std::vector<PointD>& p) {
    if (p.size() != 4 && !(p.size() == 5 && p[0] == p[4])) return false;
    return (p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y) ||
           (p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x);
}

}  // namespace

void PagePainter::ClipRegion(PointSpan points) {
    EndClipRegion();
    TakePath(points);
    lookIsOld_ = true;
    if (path_.size() < 3) {
        bounds_.right = bounds_.left;
        capsules_.SetBounds(bounds_);
        return;
    }
    if (IsUprightRectangle(path_)) {
        bounds_ = Common(bounds_, DotsBetween(path_));
        bounds_.right = std::max(bounds_.left, bounds_.right);
        bounds_.bottom = std::max(bounds_.top, bounds_.bottom);
        capsules_.SetBounds(bounds_);
        return;
    }
    const auto width = static_cast<std::size_t>(band_.Width());
    mask_.assign(width * static_cast<std::size_t>(band_.Bottom() - band_.Top()), 0);
    area_.Start(bounds_);
    area_.AddRing(path_.data(), path_.size());
    area_.Sweep(FillRule::kEvenOdd, [&](std::int32_t y, std::int32_t x, std::int32_t count,
                                        unsigned coverage) {
        const auto first =
            mask_.begin() +
            static_cast<std::ptrdiff_t>(static_cast<std::size_t>(y - band_.Top()) * width) + x;
        std::fill(first, first + count, static_cast<std::uint8_t>(coverage));
    });
    masked_ = true;
}

void PagePainter::EndClipRegion() {
    bounds_ = band_.Bounds();
    capsules_.SetBounds(bounds_);
    masked_ = false;
    lookIsOld_ = true;
}

void PagePainter::Picture(const DrawingStyle&, const BoxI& box, std::int32_t rasterOperation,
                          ByteRun bitmap) {
    const auto view = PackedBitmapView::Parse(bitmap.data, bitmap.size);
    const double width = std::abs(double{1} * box.b.x - box.a.x);
    const double height = std::abs(double{1} * box.b.y - box.a.y);
    if (!view || width == 0.0 || height == 0.0) return;
    const double left = std::min(box.a.x, box.b.x);
    const double upper = std::max(box.a.y, box.b.y);
    path_ = {ToDots(left, upper), ToDots(left + width, upper), ToDots(left, upper - height),
             ToDots(left + width, upper - height)};
    DotBox dots = DotsBetween(path_);
    dots = Common({dots.left - 1, dots.top - 1, dots.right + 1, dots.bottom + 1}, bounds_);
    if (dots.left >= dots.right || dots.top >= dots.bottom) return;
    if (settings_.checkpoint) settings_.checkpoint();
    // Row 0 of the picture lies at the upper edge.
    const double perX = view->Width() / width;
    const double perY = view->Height() / height;
    const Matrix& m = toDrawing_;
    const Matrix toPicture{m.a * perX,  -m.b * perY,         m.c * perX,
                           -m.d * perY, (m.e - left) * perX, (upper - m.f) * perY};
    const PictureLook look{OperationOfPicture(rasterOperation),
                           settings_.whiteIsClear && PictureIsClear(rasterOperation)};
    if (!masked_) return DrawPicture(*view, toPicture, look, band_, dots);
    const Band before = band_;
    DrawPicture(*view, toPicture, look, band_, dots);
    for (std::int32_t y = dots.top; y < dots.bottom; ++y) {
        const std::uint8_t* const mask = &mask_[static_cast<std::size_t>(y - band_.Top()) *
                                                static_cast<std::size_t>(band_.Width())];
        for (std::int32_t x = dots.left; x < dots.right; ++x) {
            std::uint32_t& colour = band_.Row(y)[x].colour;
            colour = Mix(before.Row(y)[x].colour, colour, mask[x]);
        }
    }
}

}  // namespace qm::bitmap
