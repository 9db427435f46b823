// WritePng: a page drawn on white at a given resolution. Test: tests/render/cairo_test.cpp.
#include <cstring>
#include <vector>

#include "render/cairo_image.h"
#include "render/page_writers.h"
#include "render/png_writer.h"

namespace qm {

void WritePng(const PageSource& page, const PageOptions& options, OutputSink& sink) {
    const PageImage image = DrawPage(page, options);
    PngHeader header;
    header.width = image.Width();
    header.height = image.Height();
    header.dotsPerInch = options.dpi;
    PngWriter writer(header, sink);
    std::vector<std::uint8_t> rgb(std::size_t{3} * static_cast<std::size_t>(image.Width()));
    for (int y = 0; y < image.Height(); ++y) {
        const std::uint8_t* source = image.Row(y);
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

}  // namespace qm
