#include "render/cairo_image.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>

#include "render/cairo_painter.h"

namespace qm {

namespace {

constexpr double kMaxSideDots = 32767.0;  // Cairo's
constexpr double kMaxDots = 268435456.0;  // 1 GiB of memory at 4 bytes each
constexpr double kLowestDpi = 1.0;

std::string Rounded(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.0f", value);
    return text;
}

struct ImageSize {
    int width = 0;
    int height = 0;
};

[[noreturn]] void ThrowTooLarge(const PageSource& page, const PageFrame& frame, double dpi,
                                const char* format) {
    const double inchesX = frame.width / frame.unitsPerInch;
    const double inchesY = frame.height / frame.unitsPerInch;
    const double bySide = (kMaxSideDots - 1.0) / std::max(inchesX, inchesY);
    const double byArea = std::sqrt(kMaxDots / (inchesX * inchesY));
    const double possible = std::floor(std::min(bySide, byArea));
    std::string message = (page.name.empty() ? "the page" : page.name) + " is " +
                          Rounded(frame.WidthMillimetres()) + " x " +
                          Rounded(frame.HeightMillimetres()) + " mm, at " + Rounded(dpi) +
                          " dots per inch too large for " + format + "; ";
    message += possible >= kLowestDpi ? "use " + Rounded(possible) + " dots per inch or less"
                                      : "write SVG or PDF instead";
    throw PageError(message);
}

ImageSize SizeOf(const PageSource& page, const PageFrame& frame, double dpi, const char* format) {
    const double width = std::ceil(frame.width / frame.unitsPerInch * dpi);
    const double height = std::ceil(frame.height / frame.unitsPerInch * dpi);
    if (!(width <= kMaxSideDots && height <= kMaxSideDots && width * height <= kMaxDots)) {
        ThrowTooLarge(page, frame, dpi, format);
    }
    return {std::max(1, static_cast<int>(width)), std::max(1, static_cast<int>(height))};
}

}  // namespace

const std::uint8_t* PageImage::Row(int y) const {
    return cairo_image_surface_get_data(surface_.get()) +
           static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface_.get());
}

PageImage DrawPage(const PageSource& page, const PageOptions& options, const ImageLook& look) {
    const PageSummary summary = Summarise(*page.drawing);
    const PageFrame frame = FrameOf(page, summary.extent, options);
    const ImageSize size = SizeOf(page, frame, options.dpi, look.format);
    CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height));
    CheckCairo(cairo_surface_status(surface.get()));
    const CairoContext context(cairo_create(surface.get()));
    cairo_set_source_rgb(context.get(), 1.0, 1.0, 1.0);
    cairo_paint(context.get());
    PainterSettings settings;
    settings.dotsPerUnit = options.dpi / frame.unitsPerInch;
    settings.widenThinPens = true;
    settings.whiteIsClear = page.whiteIsClear;
    settings.checkpoint = options.checkpoint;
    settings.progress = options.progress;
    settings.maxPictureSide = 0.0;
    if (!look.smooth) cairo_set_antialias(context.get(), CAIRO_ANTIALIAS_NONE);
    CairoPainter painter(context.get(), frame, settings);
    Play(*page.drawing, painter);
    CheckCairo(cairo_status(context.get()));
    cairo_surface_flush(surface.get());
    return {std::move(surface), size.width, size.height};
}

}  // namespace qm
