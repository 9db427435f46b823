// WritePng: a page drawn on white at a given resolution. Test: tests/render/cairo_test.cpp.
#include <cmath>
#include <cstdio>
#include <vector>

#include "render/cairo_painter.h"
#include "render/page_writers.h"
#include "render/png_writer.h"

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

[[noreturn]] void ThrowTooLarge(const PageSource& page, const PageFrame& frame, double dpi) {
    const double inchesX = frame.width / frame.unitsPerInch;
    const double inchesY = frame.height / frame.unitsPerInch;
    const double bySide = (kMaxSideDots - 1.0) / std::max(inchesX, inchesY);
    const double byArea = std::sqrt(kMaxDots / (inchesX * inchesY));
    const double possible = std::floor(std::min(bySide, byArea));
    std::string message = (page.name.empty() ? "the page" : page.name) + " is " +
                          Rounded(frame.WidthMillimetres()) + " x " +
                          Rounded(frame.HeightMillimetres()) + " mm, at " + Rounded(dpi) +
                          " dots per inch too large for a PNG; ";
    message += possible >= kLowestDpi ? "use " + Rounded(possible) + " dots per inch or less"
                                      : "write SVG or PDF instead";
    throw ToolError(message);
}

ImageSize SizeOf(const PageSource& page, const PageFrame& frame, double dpi) {
    const double width = std::ceil(frame.width / frame.unitsPerInch * dpi);
    const double height = std::ceil(frame.height / frame.unitsPerInch * dpi);
    if (!(width <= kMaxSideDots && height <= kMaxSideDots && width * height <= kMaxDots)) {
        ThrowTooLarge(page, frame, dpi);
    }
    return {std::max(1, static_cast<int>(width)), std::max(1, static_cast<int>(height))};
}

void WriteSurface(cairo_surface_t* surface, ImageSize size, double dpi, OutputSink& sink) {
    cairo_surface_flush(surface);
    const std::uint8_t* const data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    PngHeader header;
    header.width = size.width;
    header.height = size.height;
    header.dotsPerInch = dpi;
    PngWriter writer(header, sink);
    std::vector<std::uint8_t> rgb(std::size_t{3} * static_cast<std::size_t>(size.width));
    for (int y = 0; y < size.height; ++y) {
        const std::uint8_t* source = data + static_cast<std::ptrdiff_t>(y) * stride;
        for (std::size_t x = 0; x < rgb.size(); x += 3, source += 4) {
            std::uint32_t dot = 0;
            std::memcpy(&dot, source, sizeof dot);
            rgb[x] = static_cast<std::uint8_t>(dot >> 16);
            rgb[x + 1] = static_cast<std::uint8_t>(dot >> 8);
            rgb[x + 2] = static_cast<std::uint8_t>(dot);
        }
        writer.WriteRow(rgb.data());
    }
    writer.Finish();
}

}  // namespace

void WritePng(const PageSource& page, const PageOptions& options, OutputSink& sink) {
    const PageSummary summary = Summarise(*page.drawing);
    const PageFrame frame = FrameOf(page, summary.extent, options);
    const ImageSize size = SizeOf(page, frame, options.dpi);
    const CairoSurface surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height));
    CheckCairo(cairo_surface_status(surface.get()));
    const CairoContext context(cairo_create(surface.get()));
    cairo_set_source_rgb(context.get(), 1.0, 1.0, 1.0);
    cairo_paint(context.get());
    PainterSettings settings;
    settings.dotsPerUnit = options.dpi / frame.unitsPerInch;
    settings.widenThinPens = true;
    settings.whiteIsClear = page.whiteIsClear;
    settings.maxPictureSide = 0.0;
    CairoPainter painter(context.get(), frame, settings);
    Play(*page.drawing, painter);
    CheckCairo(cairo_status(context.get()));
    WriteSurface(surface.get(), size, options.dpi, sink);
}

}  // namespace qm
