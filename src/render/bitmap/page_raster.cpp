#include "render/bitmap/page_raster.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "common/numbers.h"
#include "common/tool_error.h"
#include "host/page_summary.h"

namespace qm::bitmap {

namespace {

constexpr double kMaxSideDots = 32767.0;  // what viewers and plotters take without trouble
constexpr double kLowestDpi = 1.0;

std::string Rounded(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.0f", value);
    return text;
}

[[noreturn]] void ThrowTooLarge(const PageSource& page, const PageFrame& frame, double dpi,
                                const char* format) {
    const double inchesX = frame.width / frame.unitsPerInch;
    const double inchesY = frame.height / frame.unitsPerInch;
    const double possible = std::floor((kMaxSideDots - 1.0) / std::max(inchesX, inchesY));
    std::string message = (page.name.empty() ? "the page" : page.name) + " is " +
                          Rounded(frame.WidthMillimetres()) + " x " +
                          Rounded(frame.HeightMillimetres()) + " mm, at " + Rounded(dpi) +
                          " dots per inch too large for " + format + "; ";
    message += possible >= kLowestDpi ? "use " + Rounded(possible) + " dots per inch or less"
                                      : "write SVG or PDF instead";
    throw PageError(message);
}

}  // namespace

Matrix PageRaster::ToDots() const {
    const Matrix& m = frame.toSheet;
    const double scale = dotsPerUnit;
    return {m.a * scale, m.b * scale, m.c * scale, m.d * scale, m.e * scale, m.f * scale};
}

PageRaster RasterOf(const PageSource& page, const PageOptions& options, const char* format) {
    PageRaster raster;
    raster.frame = FrameOf(page, GistOf(*page.drawing).extent, options);
    const PageFrame& frame = raster.frame;
    const double width = std::ceil(frame.width / frame.unitsPerInch * options.dpi);
    const double height = std::ceil(frame.height / frame.unitsPerInch * options.dpi);
    if (!(width <= kMaxSideDots && height <= kMaxSideDots)) {
        ThrowTooLarge(page, frame, options.dpi, format);
    }
    raster.width = std::max(1, TruncateToInt32(width));
    raster.height = std::max(1, TruncateToInt32(height));
    raster.dotsPerUnit = options.dpi / frame.unitsPerInch;
    raster.hairline =
        std::max(1.0, options.hairlineMillimetres / kMillimetresPerInch * options.dpi);
    return raster;
}

PageRaster FittingRaster(const PageSource& page, PageOptions& options, const char* format) {
    PageRaster raster = RasterOf(page, options, format);
    const auto dots = std::int64_t{raster.width} * raster.height;
    if (options.budget == nullptr || options.budget->dots.Take(dots)) return raster;
    const double part =
        static_cast<double>(options.budget->dots.Left()) / static_cast<double>(dots);
    options.dpi = std::max(1.0, std::floor(options.dpi * std::sqrt(part)));
    if (options.note) {
        options.note((page.name.empty() ? "the page" : page.name) +
                     " has too many dots for the plot's size; it is drawn with " +
                     std::to_string(RoundToInt32(options.dpi)) + " dots per inch");
    }
    raster = RasterOf(page, options, format);
    WorkBudget& left = options.budget->dots;
    left.Take(std::min(left.Left(), std::int64_t{raster.width} * raster.height));
    return raster;
}

}  // namespace qm::bitmap
