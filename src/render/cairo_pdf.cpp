// WritePdf: pages as sheets of their own size, texts searchable. Test: tests/render/cairo_test.cpp.
#include <cairo-pdf.h>

#include <exception>

#include "common/units.h"
#include "render/cairo_painter.h"
#include "render/page_writers.h"

namespace qm {

namespace {

constexpr double kHairlinePoints = 0.25;
// Cairo's coordinates have 24 bits in front of the point; half of it is left for what sticks out.
constexpr double kMaxSidePoints = 4000000.0;

// Cairo takes no exceptions through its callback: the first is kept for later.
struct StreamTarget {
    OutputSink& sink;
    std::exception_ptr failure;
};

cairo_status_t WriteBytes(void* closure, const unsigned char* data, unsigned int length) {
    StreamTarget& target = *static_cast<StreamTarget*>(closure);
    if (target.failure) return CAIRO_STATUS_WRITE_ERROR;
    try {
        target.sink.Write({reinterpret_cast<const char*>(data), length});
        return CAIRO_STATUS_SUCCESS;
    } catch (...) {
        target.failure = std::current_exception();
        return CAIRO_STATUS_WRITE_ERROR;
    }
}

void DrawSheet(cairo_surface_t* surface, const PageSource& page, const PageOptions& options) {
    const PageFrame frame = FrameOf(page, Summarise(*page.drawing).extent, options);
    PainterSettings settings;
    settings.dotsPerUnit = kPointsPerInch / frame.unitsPerInch;
    settings.hairline = kHairlinePoints;
    settings.texts = true;
    settings.whiteIsClear = page.whiteIsClear;
    settings.checkpoint = options.checkpoint;
    settings.progress = options.progress;
    const double width = frame.width * settings.dotsPerUnit;
    const double height = frame.height * settings.dotsPerUnit;
    if (!(width <= kMaxSidePoints && height <= kMaxSidePoints)) {
        throw PageError((page.name.empty() ? "the page" : page.name) +
                        " is too large for a PDF; write SVG instead");
    }
    cairo_pdf_surface_set_size(surface, width, height);
    const CairoContext context(cairo_create(surface));
    CairoPainter painter(context.get(), frame, settings);
    Play(*page.drawing, painter);
    cairo_show_page(context.get());
    CheckCairo(cairo_status(context.get()));
}

}  // namespace

void WritePdf(const std::vector<PageSource>& pages, const PageOptions& options, OutputSink& sink) {
    StreamTarget target{sink, nullptr};
    const CairoSurface surface(
        cairo_pdf_surface_create_for_stream(WriteBytes, &target, kPointsPerInch, kPointsPerInch));
    CheckCairo(cairo_surface_status(surface.get()));
    std::exception_ptr failure;
    try {
        for (const PageSource& page : pages) DrawSheet(surface.get(), page, options);
    } catch (...) {
        failure = std::current_exception();
    }
    // Finished in any case: the surface would write to the target from its destructor.
    cairo_surface_finish(surface.get());
    if (target.failure) std::rethrow_exception(target.failure);
    if (failure) std::rethrow_exception(failure);
    CheckCairo(cairo_surface_status(surface.get()));
}

}  // namespace qm
