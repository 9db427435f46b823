#include "render/cairo_picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "render/fill_pattern.h"

namespace qm {

namespace {

constexpr double kMaxSide = 32767.0;
// Memory of a picture's copy, 4 bytes a dot.
constexpr double kMaxDots = 1 << 26;

// Sums of the dots that fall on one dot of the reduced row.
struct Sum {
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    std::uint32_t opaque = 0;
    std::uint32_t dots = 0;

    // Premultiplied, as Cairo keeps it.
    std::uint32_t Average() const {
        if (dots == 0) return 0;
        const auto share = [this](std::uint32_t part) { return (part + dots / 2) / dots; };
        return share(opaque * 255) << 24 | share(red) << 16 | share(green) << 8 | share(blue);
    }
};

void AddRow(const std::vector<std::uint8_t>& rgb, std::size_t factor, bool whiteIsClear,
            std::vector<Sum>& sums) {
    for (std::size_t x = 0; 3 * x < rgb.size(); ++x) {
        const std::uint8_t* const dot = &rgb[3 * x];
        Sum& sum = sums[x / factor];
        ++sum.dots;
        if (whiteIsClear && dot[0] == 255 && dot[1] == 255 && dot[2] == 255) continue;
        ++sum.opaque;
        sum.red += dot[0];
        sum.green += dot[1];
        sum.blue += dot[2];
    }
}

CairoSurface NewImage(std::int32_t width, std::int32_t height) {
    CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    CheckCairo(cairo_surface_status(surface.get()));
    return surface;
}

void PutRow(cairo_surface_t* surface, std::int32_t y, const std::uint32_t* row, std::size_t count) {
    std::uint8_t* const target =
        cairo_image_surface_get_data(surface) +
        static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface);
    std::memcpy(target, row, count * sizeof(std::uint32_t));
}

// Dots in a row that become one, so that both sides and the whole stay inside the limits.
std::size_t FactorFor(const PackedBitmapView& picture, double limit) {
    const double width = picture.Width();
    const double height = picture.Height();
    const double side = std::clamp(limit, 1.0, kMaxSide);
    // Reduced to no less than the limit where that is possible: Cairo does the rest.
    double factor = std::max(1.0, std::floor(std::max(width, height) / side));
    while (std::max(width, height) / factor > kMaxSide ||
           width / factor * (height / factor) > kMaxDots) {
        factor += 1.0;
    }
    return static_cast<std::size_t>(factor);
}

}  // namespace

ReducedPicture ReducePicture(const PackedBitmapView& picture, double limit, bool whiteIsClear) {
    const std::size_t factor = FactorFor(picture, limit);
    const auto step = static_cast<std::int32_t>(factor);
    const std::int32_t width = (picture.Width() + step - 1) / step;
    const std::int32_t height = (picture.Height() + step - 1) / step;
    ReducedPicture reduced{NewImage(width, height), static_cast<double>(picture.Width()) / step,
                           static_cast<double>(picture.Height()) / step};
    cairo_surface_flush(reduced.surface.get());
    std::vector<std::uint8_t> rgb(std::size_t{3} * static_cast<std::size_t>(picture.Width()));
    std::vector<std::uint32_t> row(static_cast<std::size_t>(width));
    for (std::int32_t y = 0; y < height; ++y) {
        std::vector<Sum> sums(row.size());
        const std::int32_t end = std::min(picture.Height(), (y + 1) * step);
        for (std::int32_t source = y * step; source < end; ++source) {
            picture.RowToRgb(source, rgb.data());
            AddRow(rgb, factor, whiteIsClear, sums);
        }
        std::transform(sums.begin(), sums.end(), row.begin(),
                       [](const Sum& sum) { return sum.Average(); });
        PutRow(reduced.surface.get(), y, row.data(), row.size());
    }
    cairo_surface_mark_dirty(reduced.surface.get());
    return reduced;
}

CairoSurface TileOf(const FillPattern& pattern, std::uint32_t colour) {
    CairoSurface tile = NewImage(pattern.width, pattern.height);
    cairo_surface_flush(tile.get());
    const std::uint32_t ink =
        0xFF000000U | (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
    std::vector<std::uint32_t> row(static_cast<std::size_t>(pattern.width));
    for (std::int32_t y = 0; y < pattern.height; ++y) {
        for (std::int32_t x = 0; x < pattern.width; ++x) {
            row[static_cast<std::size_t>(x)] = IsInk(pattern, x, y) ? ink : 0;
        }
        PutRow(tile.get(), y, row.data(), row.size());
    }
    cairo_surface_mark_dirty(tile.get());
    return tile;
}

}  // namespace qm
