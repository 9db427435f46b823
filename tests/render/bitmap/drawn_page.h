// A page drawn dot for dot: 1016 dots per inch, so that a plotter unit is a dot, and no margin.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "host/display_list.h"
#include "render/bitmap/page_bands.h"
#include "render/page_writers.h"

namespace qm::bitmap {

struct DrawnPage {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> dots;  // 0x00RRGGBB, from the top

    // Of the dot that holds the drawing's point, y up; the page's lower left corner is (0, 0).
    std::uint32_t At(int x, int y) const {
        return dots.at(static_cast<std::size_t>((height - 1 - y) * width + x));
    }
};

inline PageOptions DotForDot() {
    PageOptions options;
    options.dpi = 1016.0;
    options.marginMillimetres = 0.0;
    options.hairlineMillimetres = 0.0;
    return options;
}

// `bandBytes` 0: as pages are drawn.
inline DrawnPage Draw(const DisplayList& list, const PageOptions& options = DotForDot(),
                      double rotation = 0.0, std::size_t bandBytes = 0) {
    PageSource page;
    page.drawing = &list;
    page.rotation = rotation;
    const PageRaster raster = RasterOf(page, options, "a test");
    DrawnPage drawn{raster.width, raster.height, {}};
    const auto take = [&](const Band& band) {
        for (std::int32_t y = band.Top(); y < band.Bottom(); ++y) {
            for (std::int32_t x = 0; x < raster.width; ++x) {
                drawn.dots.push_back(band.Row(y)[x].colour);
            }
        }
    };
    DrawBands(page, options, raster, take,
              bandBytes == 0 ? BandBytesFor(page, options, raster) : bandBytes);
    return drawn;
}

// Of a point from the line between two others.
inline double DistanceToLine(PointD p, PointD from, PointD to) {
    const PointD way = to - from;
    const PointD off = p - from;
    const double square = way.x * way.x + way.y * way.y;
    const double along = square > 0.0 ? (off.x * way.x + off.y * way.y) / square : 0.0;
    const double part = std::clamp(along, 0.0, 1.0);
    return std::hypot(off.x - part * way.x, off.y - part * way.y);
}

// White paper of `side` dots.
inline void AddSheet(DisplayList& list, std::int32_t side) {
    list.AppendColour(RecordKind::kFillColour, 0xFFFFFF);
    list.AppendRectangle({{0, 0}, {side, side}}, true);
}

}  // namespace qm::bitmap
