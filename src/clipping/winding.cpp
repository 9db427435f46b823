// See winding.h.
#include "clipping/winding.h"

#include <clipper.hpp>
#include <exception>
#include <utility>

#include "common/numbers.h"

namespace qm {

void ResolveWinding(std::vector<std::vector<PointI>>& contours) {
    ClipperLib::Paths paths;
    paths.reserve(contours.size());
    for (const std::vector<PointI>& contour : contours) {
        ClipperLib::Path& path = paths.emplace_back();
        for (const PointI p : contour) path.emplace_back(p.x, p.y);
    }
    try {
        ClipperLib::SimplifyPolygons(paths, paths, ClipperLib::pftNonZero);
    } catch (const std::exception&) {
        return;
    }
    std::vector<std::vector<PointI>> resolved;
    resolved.reserve(paths.size());
    for (const ClipperLib::Path& path : paths) {
        std::vector<PointI>& contour = resolved.emplace_back();
        for (const ClipperLib::IntPoint& p : path) {
            contour.push_back({static_cast<std::int32_t>(p.X), static_cast<std::int32_t>(p.Y)});
        }
    }
    contours = std::move(resolved);
}

}  // namespace qm
